#include "kernel/money.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <random>
#include <string>

namespace brimley::testing {

using kernel::format_money;
using kernel::is_numeric;
using kernel::money_value;
using kernel::Round;
using kernel::shown_amount;
using kernel::whole_number;

TEST(Money, RoundTakesATieToTheEvenDigit) {
    EXPECT_EQ(Round(2.125), 2.12);
    EXPECT_EQ(Round(2.375), 2.38);
    EXPECT_EQ(Round(-2.125), -2.12);
    EXPECT_EQ(Round(0.005), 0.0);
    EXPECT_EQ(Round(0.015), 0.02);
    EXPECT_EQ(Round(7.354), 7.35);
    EXPECT_EQ(Round(1e9 + 0.126), 1e9 + 0.13);
}

TEST(Money, FormatTakesATieAwayFromZero) {
    EXPECT_EQ(format_money(2.125), "2.13");
    EXPECT_EQ(format_money(-2.125), "-2.13");
    EXPECT_EQ(format_money(0.005), "0.01");
}

TEST(Money, FormatGroupsThousands) {
    EXPECT_EQ(format_money(0), "0.00");
    EXPECT_EQ(format_money(999.994), "999.99");
    EXPECT_EQ(format_money(999.995), "1,000.00");
    EXPECT_EQ(format_money(1234.5), "1,234.50");
    EXPECT_EQ(format_money(-123456.7), "-123,456.70");
    EXPECT_EQ(format_money(1234567890.12), "1,234,567,890.12");
}

TEST(Money, FormatRoundsTheCentsLikeTheLibrary) {
    std::mt19937_64 chance(5);
    for (int i = 0; i < 20'000; ++i) {
        const double range = std::pow(10, static_cast<double>(chance() % 12));
        const double any = range * (static_cast<double>(chance() % 2'000'001) / 1e6 - 1);
        const double tie = (std::trunc(any) + 0.5) / 100;
        for (const double value : {any, tie, std::nextafter(tie, 0), std::nextafter(tie, 1e15)})
            EXPECT_EQ(money_value(format_money(value)), std::round(value * 100) / 100) << value;
    }
}

TEST(Money, NegativeZeroShowsWithoutSign) {
    EXPECT_EQ(format_money(-0.0), "0.00");
    EXPECT_EQ(format_money(-0.004), "0.00");
    EXPECT_EQ(format_money(-0.006), "-0.01");
}

TEST(Money, ShownAmountIsWhatTheTextReadsAs) {
    std::mt19937_64 chance(11);
    for (int i = 0; i < 20'000; ++i) {
        const double range = std::pow(10, static_cast<double>(chance() % 17));
        const double any = range * (static_cast<double>(chance() % 2'000'001) / 1e6 - 1);
        EXPECT_EQ(shown_amount(any), money_value(format_money(any))) << any;
    }
    EXPECT_EQ(shown_amount(2.125), 2.13);
    EXPECT_EQ(shown_amount(-2.125), -2.13);
    EXPECT_EQ(shown_amount(1e20), money_value(format_money(1e20)));
}

TEST(Money, ValueDropsCommasAndReadsTheLeadingDigits) {
    EXPECT_EQ(money_value("1,234.50"), 1234.5);
    EXPECT_EQ(money_value("-1,234.50"), -1234.5);
    EXPECT_EQ(money_value("12 pieces"), 12);
    EXPECT_EQ(money_value("12.5.7"), 12.5);
    EXPECT_EQ(money_value("+3"), 3);
    EXPECT_EQ(money_value(".5"), 0.5);
    EXPECT_EQ(money_value("  7"), 7);
    EXPECT_EQ(money_value("5-2"), 5);
}

// Long texts go another way than short ones; both end at the number that the text says.
TEST(Money, ValueIsTheDoubleNextToTheText) {
    std::mt19937_64 chance(11);
    for (int i = 0; i < 20'000; ++i) {
        std::string text = std::to_string(chance() >> (chance() % 60));
        if (chance() % 4 != 0) text.insert(chance() % (text.size() + 1), ".");
        if (chance() % 3 == 0) text.insert(0, "-");
        double expected = 0;
        std::from_chars(text.data(), text.data() + text.size(), expected);
        ASSERT_EQ(money_value(text), expected) << text;
    }
}

TEST(Money, ValueOfAWordOrOfNothingIsZero) {
    for (const char* text : {"", "word", "-", ".", ",", "x12", "-.", "--1", ".-1"})
        EXPECT_EQ(money_value(text), 0) << text;
}

TEST(Money, FormattedAmountsReadBackAsTheyWere) {
    for (long long cents = -250000; cents <= 250000; cents += 37) {
        const double amount = static_cast<double>(cents) / 100;
        ASSERT_EQ(Round(money_value(format_money(amount))), Round(amount)) << amount;
    }
}

TEST(Money, WholeNumbersAreCutAndStayWithinTheirLimits) {
    EXPECT_EQ(whole_number(3.9, 0, 10), 3);
    EXPECT_EQ(whole_number(-3.9, -10, 10), -3);
    EXPECT_EQ(whole_number(1e300, 0, 9007199254740992), 9007199254740992);
    EXPECT_EQ(whole_number(-1e300, 0, 10), 0);
    EXPECT_EQ(whole_number(std::nan(""), 1, 10), 1);
}

TEST(Money, NumericTextsMayHaveSignCommasAndDecimals) {
    for (const char* text : {"5", "-5", "+5", "1,234.50", " 12 ", ".5", "5.", "0"})
        EXPECT_TRUE(is_numeric(text)) << text;
}

TEST(Money, AmountsBeyondTheCentAreNotNumeric) {
    EXPECT_TRUE(is_numeric("9,999,999,999,999.99"));
    EXPECT_TRUE(is_numeric("0000000000000000001"));
    EXPECT_FALSE(is_numeric("10000000000000"));
    EXPECT_FALSE(is_numeric("-" + std::string(400, '9')));
}

TEST(Money, OtherTextsAreNotNumeric) {
    for (const char* text : {"", " ", "abc", "12a", "1.2.3", "-", ".", ",5", "1.5,0", "1 2", "--5"})
        EXPECT_FALSE(is_numeric(text)) << text;
}

}  // namespace brimley::testing
