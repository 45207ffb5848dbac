#include "kernel/store/value.h"

#include <gtest/gtest.h>

#include <array>
#include <charconv>
#include <cmath>
#include <random>

#include <cmath>
#include <limits>

#include "support/expect_error.h"

namespace brimley {
namespace {

using store::DateTime;
using store::parse_query_date;
using store::shortest_number;
using store::Value;
using store::whole_number_text;

// The standard library searches for the digits; those of few decimals are known without.
TEST(Number, TextOfFewDecimalsIsTheOneThatASearchFinds) {
    const auto searched = [](double number) {
        std::array<char, 400> text{};
        return std::string(
            text.data(),
            std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed).ptr);
    };
    std::mt19937_64 chance(7);
    for (int i = 0; i < 50'000; ++i) {
        const double cut = std::pow(10, static_cast<double>(chance() % 9));
        const double range = std::pow(10, static_cast<double>(chance() % 12));
        const double any = range * (static_cast<double>(chance() % 2'000'001) / 1e6 - 1);
        for (const double number : {any, std::nearbyint(any * cut) / cut, any / 3e9})
            if (number != std::trunc(number)) {
                ASSERT_EQ(shortest_number(number), searched(number)) << i;
            }
    }
}

TEST(Number, TextIsTheShortestThatReadsBackTheSame) {
    EXPECT_EQ(shortest_number(3), "3");
    EXPECT_EQ(shortest_number(12.35), "12.35");
    EXPECT_EQ(shortest_number(-0.5), "-0.5");
    EXPECT_EQ(shortest_number(0.1 + 0.2), "0.30000000000000004");
    EXPECT_EQ(shortest_number(-0.0), "0");
}

TEST(Number, TextHasNoExponentBelowTenToTheFifteenth) {
    EXPECT_EQ(shortest_number(100000), "100000");
    EXPECT_EQ(shortest_number(123456789012345.0), "123456789012345");
    EXPECT_EQ(shortest_number(999999999999999.0), "999999999999999");
    EXPECT_EQ(shortest_number(0.0000001), "0.0000001");
    for (const double number : {1e15, 1.5e300, std::numeric_limits<double>::denorm_min(), 1e-300})
        EXPECT_EQ(whole_number_text(shortest_number(number)), number) << shortest_number(number);
}

TEST(Number, WholeTextMustBeTheNumber) {
    EXPECT_EQ(whole_number_text(" 12.5 "), 12.5);
    EXPECT_EQ(whole_number_text("-3"), -3);
    EXPECT_EQ(whole_number_text("+3"), 3);
    EXPECT_EQ(whole_number_text(".5"), 0.5);
    EXPECT_EQ(whole_number_text("01"), 1);
    EXPECT_EQ(whole_number_text("1e3"), 1000);
    for (const char* const text :
         {"", " ", "1,000", "12a", "inf", "nan", "-", "+-1", "--1", "1 2", "0x10", "e5"})
        EXPECT_FALSE(whole_number_text(text)) << text;
}

TEST(Date, CalendarDaysRoundTrip) {
    for (int day = -719162; day <= 2932896; day += 37) {
        const DateTime date{day, 0};
        EXPECT_EQ(DateTime::from_ymd(date.year(), date.month(), date.day_of_month()), date);
    }
    EXPECT_EQ(DateTime::from_ymd(1970, 1, 1)->day, 0);
    EXPECT_EQ(DateTime::from_ymd(2000, 3, 1)->day - DateTime::from_ymd(2000, 2, 28)->day, 2);
}

TEST(Date, NoDayOfTheCalendarIsNothing) {
    EXPECT_FALSE(DateTime::from_ymd(2026, 2, 29));
    EXPECT_FALSE(DateTime::from_ymd(2026, 13, 1));
    EXPECT_FALSE(DateTime::from_ymd(2026, 0, 1));
    EXPECT_FALSE(DateTime::from_ymd(2026, 4, 31));
    EXPECT_FALSE(DateTime::from_ymd(0, 1, 1));
}

TEST(Date, IsoTextIsReadStrictly) {
    const auto noon = DateTime::from_iso("2026-01-15 12:00:01");
    ASSERT_TRUE(noon);
    EXPECT_EQ(noon->second_of_day, 43201);
    EXPECT_EQ(noon->iso(), "2026-01-15 12:00:01");
    EXPECT_EQ(noon->time_text(), "12:00:01");
    EXPECT_EQ(DateTime::from_iso("2026-01-15")->iso(), "2026-01-15");
    for (const char* const text :
         {"", "2026-1-15", "2026-01-15 24:00:00", "2026-01-15T12:00:00", "2026-01-15 ", "20260115",
          "2026-02-30", "+026-01-01", "2026-01-15 12:60:00", "2026-01-15 1a:00:00"})
        EXPECT_FALSE(DateTime::from_iso(text)) << text;
}

TEST(Date, QueryTextReadsBack) {
    const DateTime date = *DateTime::from_ymd(2026, 1, 5);
    EXPECT_EQ(date.query_text(), "Jan 05, 2026");
    EXPECT_EQ(parse_query_date(date.query_text()), date);
    EXPECT_EQ(date.yyyymmdd(), "20260105");
    EXPECT_EQ(date.plus_days(30).iso(), "2026-02-04");
}

TEST(Date, QueryTextTakesBlanksAndCaseAsFormsWriteThem) {
    const auto date = DateTime::from_ymd(2006, 1, 5);
    for (const char* const text : {"Jan 5, 2006", "Jan 05,2006", "jan  5,   2006", "JAN 5,2006"})
        EXPECT_EQ(parse_query_date(text), date) << text;
    for (const char* const text :
         {"", "January 5, 2006", "Jan 5 2006", "Jan , 2006", "Jan 32, 2006", "Jan 005, 2006", "Jan 5, 06",
          "5 Jan, 2006", "Jan5, 2006", "Jan 5, 2006x", "Jan -5, 2006", "Ja", ","})
        EXPECT_FALSE(parse_query_date(text)) << text;
}

TEST(Value, NullCountsAsNothing) {
    EXPECT_EQ(Value().text(), "");
    EXPECT_EQ(Value().number(), 0);
    EXPECT_FALSE(Value().flag());
    EXPECT_FALSE(Value().date());
    EXPECT_EQ(Value(), Value());
}

TEST(Value, TextOfEveryKind) {
    EXPECT_EQ(Value(3).text(), "3");
    EXPECT_EQ(Value(true).text(), "TRUE");
    EXPECT_EQ(Value(*DateTime::from_iso("2026-01-15")).text(), "2026-01-15");
}

TEST(Value, NumberOfTextMustBeANumber) {
    EXPECT_EQ(Value("12.5").number(), 12.5);
    EXPECT_EQ(Value(true).number(), 1);
    testing::expect_error(store::ErrorKind::conversion, [] { (void)Value("x").number(); });
    testing::expect_error(store::ErrorKind::conversion, [] { (void)Value("").number(); });
    testing::expect_error(store::ErrorKind::conversion, [] { (void)Value(DateTime{}).number(); });
}

TEST(Value, WordsForYesAreTrue) {
    for (const char* const word : {"TRUE", "True", "yes", "-1", "1"})
        EXPECT_TRUE(Value(word).flag()) << word;
    for (const char* const word : {"FALSE", "no", "0", "", "2", "maybe"})
        EXPECT_FALSE(Value(word).flag()) << word;
    EXPECT_TRUE(Value(-1).flag());
    EXPECT_FALSE(Value(0).flag());
}

}  // namespace
}  // namespace brimley
