#include "kernel/user_dates.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/recording_outside.h"

namespace brimley::testing {

using kernel::DateFormatRow;
using kernel::parse_user_date;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class UserDates : public ::testing::Test {
  protected:
    RecordingOutside outside;

    // The date as "yyyymmdd", or the message, or "no date".
    std::string read(const char* text, const char* format = "dd/mm/yyyy") {
        const auto date = parse_user_date(text, format, outside);
        const auto told = outside.take_messages();
        if (date) return told.empty() ? date->yyyymmdd() : "a date with a message";
        return told.empty() ? "no date" : told.front();
    }
};

TEST_F(UserDates, EachFormatTellsWhereDayMonthAndYearStand) {
    EXPECT_EQ(read("05/01/2006", "dd/mm/yyyy"), "20060105");
    EXPECT_EQ(read("2006/01/05", "yyyy/mm/dd"), "20060105");
    EXPECT_EQ(read("01/05/2006", "mm/dd/yyyy"), "20060105");
    EXPECT_EQ(read("01/2006/05", "mm/yyyy/dd"), "20060105");
    EXPECT_EQ(read("2006/05/01", "yyyy/dd/mm"), "20060105");
}

TEST_F(UserDates, FormatIsReadInAnyCase) { EXPECT_EQ(read("05/01/2006", "DD/MM/YYYY"), "20060105"); }

TEST_F(UserDates, FormatWithoutSlashedPartsIsRefused) {
    for (const char* format : {"yyyymmdd", "", "dd-mm-yyyy", "yyyy"})
        EXPECT_EQ(read("05/01/2006", format), "Error : User_Form_Dateformat:date_format is not valid");
}

TEST_F(UserDates, FormatThatBeginsWithDayAndEndsWithMonthTakesYearInTheMiddle) {
    // Only "/dd/" and "mm/" and "/mm/" are looked for, and this format has none of them.
    EXPECT_EQ(read("05/2006/01", "dd/yyyy/mm"), "Error : User_Form_Dateformat:date_format is not valid");
}

TEST_F(UserDates, ImpossibleDayIsToldWithTheComposedText) {
    EXPECT_EQ(read("31/02/2006"), "Date is invalid (Feb 31, 2006)");
    EXPECT_EQ(read("00/02/2006"), "Date is invalid (Feb 00, 2006)");
    EXPECT_EQ(read("29/02/2023"), "Date is invalid (Feb 29, 2023)");
    EXPECT_EQ(read("29/02/2024"), "20240229");
}

TEST_F(UserDates, MonthAboveTwelveIsToldAsTyped) {
    EXPECT_EQ(read("13/01/2006", "mm/dd/yyyy"), "Month is invalid (13)");
}

TEST_F(UserDates, MonthThatIsNoneOfTwelveIsToldAfterDayAndYear) {
    EXPECT_EQ(read("01/00/2006"), "Month is invalid (00)");
    EXPECT_EQ(read("01/xx/2006"), "Month is invalid (xx)");
    EXPECT_EQ(read("01//2006"), "Month is invalid ()");
    EXPECT_EQ(read("32/00/2006"), "date is invalid (32)");
    EXPECT_EQ(read("01/00/1989"), "year is invalid (1989)");
}

TEST_F(UserDates, FaultsAreToldInTheOrderMonthDayYear) {
    EXPECT_EQ(read("32/13/1989"), "Month is invalid (13)");
    EXPECT_EQ(read("32/12/1989"), "date is invalid (32)");
    EXPECT_EQ(read("31/12/1989"), "year is invalid (1989)");
}

TEST_F(UserDates, YearsAreTakenFrom1990To2030AndFrom2530) {
    EXPECT_EQ(read("01/01/06"), "year is invalid (06)");
    EXPECT_EQ(read("01/01/1989"), "year is invalid (1989)");
    EXPECT_EQ(read("01/01/1990"), "19900101");
    EXPECT_EQ(read("31/12/2030"), "20301231");
    EXPECT_EQ(read("01/01/2031"), "year is invalid (2031)");
    EXPECT_EQ(read("31/12/2529"), "year is invalid (2529)");
    EXPECT_EQ(read("01/01/2530"), "25300101");
    EXPECT_EQ(read("01/01/2549"), "25490101");
}

TEST_F(UserDates, TextWithoutTwoSlashesIsNoDateAndHasNoMessage) {
    for (const char* text : {"01-01-2006", "01/012006", "", "01012006", "/"})
        EXPECT_EQ(read(text), "no date") << text;
}

TEST_F(UserDates, OneDigitPartsAreTaken) { EXPECT_EQ(read("5/1/2006"), "20060105"); }

TEST_F(UserDates, HostBreathesBeforeTheMessage) {
    static_cast<void>(read("13/13/2006"));
    EXPECT_EQ(outside.pumps_before_message, 1);
}

TEST_F(UserDates, ReadingWhileTypingIsSilent) {
    EXPECT_FALSE(kernel::try_user_date("31/02/2006", "dd/mm/yyyy"));
    EXPECT_FALSE(kernel::try_user_date("05/01/2006", "nonsense"));
    EXPECT_EQ(kernel::try_user_date("05/01/2006", "dd/mm/yyyy"), store::DateTime::from_ymd(2006, 1, 5));
    EXPECT_THAT(outside.messages, IsEmpty());
}

TEST_F(UserDates, EightDigitTextHasTwoDigitsForDayAndMonth) {
    const DateFormatRow row{"dd/mm/yyyy"};
    EXPECT_EQ(kernel::user_date_to_yyyymmdd("5/1/2006", row, outside), "20060105");
    EXPECT_EQ(kernel::user_date_to_yyyymmdd("5/13/2006", row, outside), std::nullopt);
    EXPECT_THAT(outside.messages, ElementsAre("Month is invalid (13)"));
}

TEST_F(UserDates, RequiredDateHasAMessageOfTheCallersForAnEmptyTextAndOneWithoutTwoSlashes) {
    const auto read_required = [&](const char* text, const char* format) {
        const auto date = kernel::required_user_date(text, format, "please specify date", outside);
        const auto told = outside.take_messages();
        return date ? date->yyyymmdd() : told.size() == 1 ? told.front() : "no message, or several";
    };
    EXPECT_EQ(read_required("05/01/2006", "dd/mm/yyyy"), "20060105");
    for (const char* text : {"", "  ", "01-01-2006", "01/012006", "next week"})
        EXPECT_EQ(read_required(text, "dd/mm/yyyy"), "please specify date");
    EXPECT_EQ(read_required("05/13/2006", "dd/mm/yyyy"), "Month is invalid (13)");
    // The format is looked at before the text, and an empty text before the format.
    for (const char* text : {"05/01/2006", "01-01-2006"})
        EXPECT_EQ(read_required(text, "dd.mm.yyyy"), "Error : User_Form_Dateformat:date_format is not valid");
    EXPECT_EQ(read_required("", "dd.mm.yyyy"), "please specify date");
}

TEST_F(UserDates, UnusableFormatHasItsMessageAlsoForATextWithoutSlashes) {
    EXPECT_EQ(read("16.03.2026", "dd.mm.yyyy"), "Error : User_Form_Dateformat:date_format is not valid");
}

TEST_F(UserDates, EightDigitTextReturnsInTheUsersFormat) {
    const auto shown = [&](const char* format) {
        return kernel::yyyymmdd_to_user_date("20060105", DateFormatRow{format}, outside);
    };
    EXPECT_EQ(shown("dd/mm/yyyy"), "05/01/2006");
    EXPECT_EQ(shown("yyyy/mm/dd"), "2006/01/05");
    EXPECT_EQ(shown("mm/dd/yyyy"), "01/05/2006");
    EXPECT_EQ(shown("mm/yyyy/dd"), "01/2006/05");
    EXPECT_EQ(shown("yyyy/dd/mm"), "2006/05/01");
    EXPECT_EQ(shown("DD/MM/YYYY"), "05/01/2006");
}

TEST_F(UserDates, EmptyEightDigitTextIsEmptyWithoutMessage) {
    EXPECT_EQ(kernel::yyyymmdd_to_user_date("", DateFormatRow{"dd/mm/yyyy"}, outside), "");
    EXPECT_THAT(outside.messages, IsEmpty());
}

TEST_F(UserDates, EightDigitTextIsToldWhenItIsNoDate) {
    const DateFormatRow row{"dd/mm/yyyy"};
    EXPECT_EQ(kernel::yyyymmdd_to_user_date("20061305", row, outside), "");
    EXPECT_EQ(kernel::yyyymmdd_to_user_date("20060231", row, outside), "");
    EXPECT_EQ(kernel::yyyymmdd_to_date_text("20060001", outside), "");
    EXPECT_THAT(outside.messages, ElementsAre("Month is invalid (13)", "Date is invalid (Feb 31, 2006)",
                                              "Month is invalid (00)"));
}

TEST_F(UserDates, EightDigitTextBecomesAQueryDateWithTheDayAsItStands) {
    EXPECT_EQ(kernel::yyyymmdd_to_date_text("20060105", outside), "Jan 05, 2006");
    EXPECT_EQ(kernel::yyyymmdd_to_date_text("20261231", outside), "Dec 31, 2026");
    EXPECT_THAT(outside.messages, IsEmpty());
}

TEST_F(UserDates, EveryDayOfAcceptedYearsReturnsAsItWasShown) {
    for (const char* format : {"dd/mm/yyyy", "yyyy/mm/dd", "mm/dd/yyyy", "mm/yyyy/dd", "yyyy/dd/mm"}) {
        auto date = store::DateTime::from_ymd(1990, 1, 1).value();
        for (; date.year() <= 2030; date = date.plus_days(1)) {
            const std::string shown = kernel::user_date_text(date, format);
            ASSERT_EQ(kernel::try_user_date(shown, format), date) << shown;
        }
    }
}

}  // namespace brimley::testing
