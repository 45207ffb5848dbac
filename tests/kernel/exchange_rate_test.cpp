#include "kernel/exchange_rate.h"

#include <gtest/gtest.h>

namespace brimley::kernel {

TEST(ExchangeRate, EqualAmountsHaveTheRateOne) {
    EXPECT_EQ(get_exchange_rate(100, 100), 1);
    EXPECT_EQ(get_exchange_rate(0, 0), 1);
}

TEST(ExchangeRate, IsToldInAsFewDecimalsAsItCanBe) {
    EXPECT_EQ(get_exchange_rate(-980, -1225), 1.25);
    EXPECT_EQ(get_exchange_rate(1000, 1300), 1.3);
    EXPECT_EQ(get_exchange_rate(1000, 1181), 1.181);
    EXPECT_EQ(get_exchange_rate(10000, 317.2), 0.03172);
}

TEST(ExchangeRate, OneDecimalThatDoesNotChangeItIsEnough) {
    // 1.1004..: two decimals and three are the same, whatever comes behind.
    EXPECT_EQ(get_exchange_rate(10000, 11004), 1.1);
}

TEST(ExchangeRate, WhatNeverEndsHasSevenDecimals) { EXPECT_EQ(get_exchange_rate(3, 4.1), 1.3666667); }

TEST(ExchangeRate, BaseAmountWithoutAnAmountHasNone) {
    EXPECT_THROW(static_cast<void>(get_exchange_rate(0, 0.01)), std::runtime_error);
}

}  // namespace brimley::kernel
