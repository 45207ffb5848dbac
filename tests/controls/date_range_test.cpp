#include "controls/date_range.h"

#include <gtest/gtest.h>

#include "presentation/user_days.h"

namespace brimley::testing {

using controls::Day;
using controls::Refusal;

namespace {

Day day(int year, int month, int day_of_month) {
    return store::DateTime::from_ymd(year, month, day_of_month).value().day;
}

}  // namespace

class DateRanges : public ::testing::Test {
  protected:
    void SetUp() override {
        range.on_change = [&] { ++changes; };
    }

    controls::ControlSet set;
    controls::DateRange range{
        set, "cal1", presentation::user_day_texts("mm/dd/yyyy"), {day(2028, 1, 1), day(2028, 12, 31)}};
    int changes = 0;
};

TEST_F(DateRanges, ShownInTheUsersFormat) {
    EXPECT_EQ(range.shown(), "01/01/2028 - 12/31/2028");
    EXPECT_EQ(range.from(), day(2028, 1, 1));
    EXPECT_EQ(range.to(), day(2028, 12, 31));
}

TEST_F(DateRanges, TypingFiresOneChangeForBothDates) {
    EXPECT_EQ(range.type("3/4/2026", "12/25/2026"), Refusal::none);
    EXPECT_EQ(range.from(), day(2026, 3, 4));
    EXPECT_EQ(range.to(), day(2026, 12, 25));
    EXPECT_EQ(changes, 1);
}

TEST_F(DateRanges, TextThatIsNoDateLeavesTheDayThatStands) {
    EXPECT_EQ(range.type("02/30/2026", "06/30/2028"), Refusal::none);
    EXPECT_EQ(range.shown(), "01/01/2028 - 06/30/2028");
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(range.type("", "soon"), Refusal::none);
    EXPECT_EQ(changes, 1);
}

TEST_F(DateRanges, LastDayMayStandBeforeTheFirst) {
    EXPECT_EQ(range.type("12/31/2026", "01/01/2026"), Refusal::none);
    EXPECT_EQ(range.shown(), "12/31/2026 - 01/01/2026");
}

TEST_F(DateRanges, AssignmentFromCodeFiresNothingAndIsShown) {
    int shown = 0;
    range.on_shown_change = [&] { ++shown; };
    range.set({day(2026, 1, 1), day(2026, 1, 31)});
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(shown, 1);
}

TEST_F(DateRanges, TypingIntoALockedHiddenOrDisabledRangeIsRefused) {
    range.set_locked(true);
    EXPECT_EQ(range.type("03/04/2026", "12/25/2026"), Refusal::locked);
    range.set_enabled(false);
    EXPECT_EQ(range.type("03/04/2026", "12/25/2026"), Refusal::disabled);
    range.set_visible(false);
    EXPECT_EQ(range.type("03/04/2026", "12/25/2026"), Refusal::hidden);
    EXPECT_EQ(range.shown(), "01/01/2028 - 12/31/2028");
    EXPECT_EQ(changes, 0);
}

TEST(YearUpTo, EndsWithTheDayAndBeginsAfterTheSameDayAYearBefore) {
    const auto year_up_to = [](int year, int month, int day_of_month) {
        return presentation::year_up_to(store::DateTime::from_ymd(year, month, day_of_month).value());
    };
    EXPECT_EQ(year_up_to(2026, 6, 30), (controls::DaySpan{day(2025, 7, 1), day(2026, 6, 30)}));
    EXPECT_EQ(year_up_to(2026, 12, 31), (controls::DaySpan{day(2026, 1, 1), day(2026, 12, 31)}));
    EXPECT_EQ(year_up_to(2028, 2, 29), (controls::DaySpan{day(2027, 3, 1), day(2028, 2, 29)}));
    EXPECT_EQ(year_up_to(2029, 2, 28), (controls::DaySpan{day(2028, 2, 29), day(2029, 2, 28)}));
}

}  // namespace brimley::testing
