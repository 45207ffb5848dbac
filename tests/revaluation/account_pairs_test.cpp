#include "revaluation/account_pairs.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace brimley::testing {

using revaluation::AccountPairs;
using revaluation::ShortNumber;

TEST(AccountPairs, AmountsOfOneAccountAndCurrencyAreAddedUpInTheOrderOfTheirFirst) {
    AccountPairs pairs;
    pairs.add("2010", "EUR", -50);
    pairs.add("2010", "THB", 1);
    pairs.add("2000", "EUR", 2);
    pairs.add("2010", "EUR", 15);
    ASSERT_EQ(pairs.count(), 3);
    EXPECT_EQ(pairs.at(0)->accno, "2010");
    EXPECT_EQ(pairs.at(0)->currency, "EUR");
    EXPECT_DOUBLE_EQ(pairs.at(0)->amount, -35);
    EXPECT_EQ(pairs.at(1)->currency, "THB");
    EXPECT_DOUBLE_EQ(pairs.at(1)->amount, 1);
    EXPECT_EQ(pairs.at(2)->accno, "2000");
    EXPECT_EQ(pairs.at(3), nullptr);
}

TEST(AccountPairs, MatchingIsExact) {
    AccountPairs pairs;
    pairs.add("2010", "EUR", 1);
    pairs.add("2010 ", "EUR", 1);
    pairs.add("2010", "eur", 1);
    EXPECT_EQ(pairs.count(), 3);
}

// Each amount of a pair without a slot is a pair of its own: nothing remembers that it was there.
TEST(AccountPairs, ThirtyHaveASlotAndEveryFurtherAmountIsCountedAndLost) {
    AccountPairs pairs;
    for (int i = 1; i <= 31; ++i)
        pairs.add(fmt::format("{}", 1000 + i), "EUR", i);
    pairs.add("1031", "EUR", 5);
    EXPECT_EQ(pairs.count(), 32);
    ASSERT_NE(pairs.at(29), nullptr);
    EXPECT_DOUBLE_EQ(pairs.at(29)->amount, 30);
    EXPECT_EQ(pairs.at(30), nullptr);
    EXPECT_EQ(pairs.at(31), nullptr);
    pairs.add("1030", "EUR", 0.5);
    EXPECT_EQ(pairs.count(), 32);
    EXPECT_DOUBLE_EQ(pairs.at(29)->amount, 30.5);
}

TEST(AccountPairs, ClearedTheyBeginAnew) {
    AccountPairs pairs;
    pairs.add("2010", "EUR", 7);
    pairs.clear();
    EXPECT_EQ(pairs.count(), 0);
    EXPECT_EQ(pairs.at(0), nullptr);
    pairs.add("2010", "EUR", 1);
    EXPECT_DOUBLE_EQ(pairs.at(0)->amount, 1);
}

TEST(AccountPairs, CountStopsWhereSixteenBitsEnd) {
    AccountPairs pairs;
    for (int i = 0; i < 33'000; ++i)
        pairs.add(std::to_string(i), "EUR", 1);
    EXPECT_EQ(pairs.count(), 32'767);
}

TEST(ShortNumber, KeepsWhatItHasWhenSixteenBitsCannotHoldTheNew) {
    ShortNumber number{7};
    number.assign(32'768);
    EXPECT_EQ(number, 7);
    number.assign(32'767);
    EXPECT_EQ(number, 32'767);
    number.assign(-32'769);
    EXPECT_EQ(number, 32'767);
    number.assign(-1);
    EXPECT_EQ(number, -1);
}

TEST(ShortNumber, IsRaisedAndNeverLowered) {
    ShortNumber number{3};
    number.raise_to(2);
    EXPECT_EQ(number, 3);
    number.raise_to(5);
    EXPECT_EQ(number, 5);
    number.raise_to(40'000);
    EXPECT_EQ(number, 5);
}

}  // namespace brimley::testing
