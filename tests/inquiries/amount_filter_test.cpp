#include "inquiries/amount_filter.h"

#include <gtest/gtest.h>

namespace brimley::testing {

using inquiries::parse_amount_filter;

namespace {

// What a query gets for "gross_amount" from the text.
std::string condition(std::string_view text) {
    const auto filter = parse_amount_filter(text);
    return filter ? filter->further_condition("gross_amount") : "invalid";
}

}  // namespace

TEST(AmountFilter, BlankTextAsksForNothing) {
    EXPECT_EQ(condition(""), "");
    EXPECT_EQ(condition("   "), "");
}

TEST(AmountFilter, BareAmountAndEqualSignAreEqual) {
    for (const char* text : {"100", "=100", " 100 ", "= 100", "100.00", "0100", "100."})
        EXPECT_EQ(condition(text), " AND gross_amount = 100") << text;
    EXPECT_EQ(condition("7"), " AND gross_amount = 7");
    EXPECT_EQ(condition("0.05"), " AND gross_amount = 0.05");
}

TEST(AmountFilter, ComparisonStandsBeforeTheAmount) {
    EXPECT_EQ(condition("<100"), " AND gross_amount < 100");
    EXPECT_EQ(condition(">100"), " AND gross_amount > 100");
    EXPECT_EQ(condition("<=100.5"), " AND gross_amount <= 100.5");
    EXPECT_EQ(condition(">=100"), " AND gross_amount >= 100");
    EXPECT_EQ(condition(" >=  100 "), " AND gross_amount >= 100");
}

TEST(AmountFilter, ComparisonAloneIsInvalid) {
    for (const char* text : {"=", "<", ">", "<=", ">=", "> ", ">= "})
        EXPECT_EQ(condition(text), "invalid") << text;
}

TEST(AmountFilter, SignIsReadAfterAComparisonOnly) {
    EXPECT_EQ(condition("-5"), "invalid");
    EXPECT_EQ(condition("+5"), "invalid");
    EXPECT_EQ(condition("=-5"), " AND gross_amount = -5");
    EXPECT_EQ(condition("< -5"), " AND gross_amount < -5");
    EXPECT_EQ(condition(">+5"), " AND gross_amount > 5");
    EXPECT_EQ(condition("=- 5"), "invalid");
}

TEST(AmountFilter, PointBeginsAnAmountAfterAComparisonOnly) {
    EXPECT_EQ(condition(".5"), "invalid");
    EXPECT_EQ(condition(">.5"), " AND gross_amount > 0.5");
    EXPECT_EQ(condition("."), "invalid");
    EXPECT_EQ(condition(">."), "invalid");
}

TEST(AmountFilter, ThousandsCommasAreNotRead) {
    EXPECT_EQ(condition("1,000"), "invalid");
    EXPECT_EQ(condition(">=1,000.00"), "invalid");
    EXPECT_EQ(condition("1000,"), "invalid");
}

TEST(AmountFilter, OtherTextIsInvalid) {
    for (const char* text :
         {"a",    "abc", "12a", "1 2",   "1e5",      "0x10",        "$5",  "5%",  "5-",   "1.2.3", "!5",
          "<>5",  "=<5", "=>5", "==5",   "> =5",     "< =5",        ">>5", "\t5", ">\t5", "5\n",   "NaN",
          "=inf", "'",   "5'",  ">='5'", "5 OR 1=1", "100; DELETE", "((5", "5--", "5/*"})
        EXPECT_EQ(condition(text), "invalid") << text;
    EXPECT_EQ(condition(std::string("5\0", 2)), "invalid");
}

// A blank that does not break a line comes with a pasted amount; the others are what Thai and wide keys type.
TEST(AmountFilter, OnlyPlainBlanksAndDigitsAreRead) {
    for (const char* text :
         {"\u00a0100", "100\u00a0", "1\u00a0000", "\u00a0", "๑๐๐", "1๐๐", "１００", "1００"}) {
        EXPECT_EQ(condition(text), "invalid") << text;
        EXPECT_EQ(condition(std::string(">=") + text), "invalid") << text;
    }
    EXPECT_EQ(condition("＞100"), "invalid");
}

TEST(AmountFilter, AmountsThatAreNotHeldToTheCentAreInvalid) {
    EXPECT_EQ(condition("9999999999999.99"), " AND gross_amount = 9999999999999.99");
    EXPECT_EQ(condition("10000000000000"), "invalid");
    EXPECT_EQ(condition(std::string(1000, '9')), "invalid");
}

TEST(AmountFilter, LongFractionsComeOutAsTheNumberThatTheyAre) {
    EXPECT_EQ(condition("0.30000000000000000000001"), " AND gross_amount = 0.3");
    EXPECT_EQ(condition("0.00000001"), " AND gross_amount = 0.00000001");
}

}  // namespace brimley::testing
