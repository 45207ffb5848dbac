#include "kernel/summaries.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "kernel/carry_on.h"

namespace brimley::testing {

using kernel::add_to_account_summary;
using kernel::add_to_currency_summary;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(Summaries, AmountsOfAnAccountAddUpAndAreRoundedAtEachStep) {
    std::vector<kernel::AccountSum> summary;
    add_to_account_summary(summary, "5000", 1.005);
    EXPECT_EQ(summary.at(0).amount, 1.0);
    add_to_account_summary(summary, "2000", 7);
    add_to_account_summary(summary, "5000", 0.004);
    add_to_account_summary(summary, "5000", 0.004);
    ASSERT_EQ(summary.size(), 2U);
    EXPECT_EQ(summary[0].accno, "5000");
    EXPECT_EQ(summary[0].amount, 1.0);
    EXPECT_EQ(summary[1].amount, 7.0);
}

TEST(Summaries, AccountAndCurrencyTogetherMakeAnEntry) {
    std::vector<kernel::CurrencySum> summary;
    add_to_currency_summary(summary, "2000", 100, 125, "EUR", kernel::kSummaryEntriesMax);
    add_to_currency_summary(summary, "2000", 10, 10, "USD", kernel::kSummaryEntriesMax);
    add_to_currency_summary(summary, "2000", 1.006, 1.254, "EUR", kernel::kSummaryEntriesMax);
    ASSERT_EQ(summary.size(), 2U);
    EXPECT_EQ(summary[0].amount, 101.01);
    EXPECT_EQ(summary[0].base_amount, 126.25);
    EXPECT_EQ(summary[1].currency, "USD");
    EXPECT_EQ(summary[1].base_amount, 10);
}

TEST(Summaries, FiftyEntriesFitAndTheNextIsAnError) {
    std::vector<kernel::AccountSum> accounts;
    std::vector<kernel::CurrencySum> currencies;
    for (int i = 1; i <= 50; ++i) {
        add_to_account_summary(accounts, std::to_string(i), 1);
        add_to_currency_summary(currencies, std::to_string(i), 1, 1, "USD", kernel::kSummaryEntriesMax);
    }
    EXPECT_THROW(add_to_account_summary(accounts, "51", 1), kernel::SummaryFull);
    EXPECT_THROW(add_to_currency_summary(currencies, "51", 1, 1, "USD", kernel::kSummaryEntriesMax),
                 kernel::SummaryFull);
    add_to_account_summary(accounts, "50", 1);
    add_to_currency_summary(currencies, "50", 1, 1, "USD", kernel::kSummaryEntriesMax);
    EXPECT_EQ(accounts.size(), 50U);
    EXPECT_EQ(accounts.back().amount, 2);
    EXPECT_EQ(currencies.back().amount, 2);
}

// --- carrying on

TEST(CarryOn, FailureIsNotedAndTheNextStatementRuns) {
    kernel::Reasons log;
    EXPECT_FALSE(kernel::carry_on(log, "first", [] { throw std::runtime_error("no table"); }));
    bool ran = false;
    EXPECT_TRUE(kernel::carry_on(log, "second", [&] { ran = true; }));
    EXPECT_TRUE(ran);
    EXPECT_THAT(log.since(0), ElementsAre(kernel::Reason{"first", "no table"}));
}

TEST(CarryOn, OwnMistakesGoThrough) {
    kernel::Reasons log;
    EXPECT_THROW(kernel::carry_on(log, "mistake", [] { throw std::logic_error("ours"); }), std::logic_error);
    EXPECT_THROW(kernel::carry_on(log, "memory", [] { throw std::bad_alloc(); }), std::bad_alloc);
}

TEST(CarryOn, LastFiftyFailuresAreKept) {
    kernel::Reasons log;
    for (int i = 1; i <= 60; ++i)
        log.failed("step", std::to_string(i));
    const std::vector<kernel::Reason> kept = log.since(0);
    ASSERT_EQ(kept.size(), 50U);
    EXPECT_EQ(kept.front(), (kernel::Reason{"step", "11"}));
    EXPECT_EQ(kept.back(), (kernel::Reason{"step", "60"}));
    EXPECT_EQ(log.failures(), 60);
    EXPECT_EQ(log.last_failure(), "60");
}

TEST(CarryOn, RefusalIsAReasonButNoFailure) {
    kernel::Reasons log;
    log.failed("step", "before");
    const std::int64_t before = log.count();
    EXPECT_THAT(log.since(before), IsEmpty());
    log.refused("no account");
    EXPECT_THAT(log.since(before), ElementsAre(kernel::Reason{"", "no account"}));
    EXPECT_EQ(log.failures(), 1);
    EXPECT_EQ(log.last_failure(), "before");
}

}  // namespace brimley::testing
