#include "kernel/ledger_test.h"

namespace brimley::testing {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Balances : public LedgerTest {
  protected:
    // The other user begins a transaction and holds the balance row of an account.
    void hold_balance(const char* accno) {
        other = company.second_user();
        other.workspace->BeginTrans();
        held = other.database->OpenRecordset(
            fmt::format("SELECT * FROM Balance_table WHERE accno = '{}'", accno),
            store::RecordsetKind::dynaset);
        held.LockEdits(true);
        held.Edit();
    }

    store::OpenCompany other;
    store::Recordset held;
};

TEST_F(Balances, BalanceSheetLineMovesItsOwnRowOnly) {
    EXPECT_TRUE(post_balance(line_on("1000", 100)));
    EXPECT_TRUE(post_balance(line_on("1000", -30.5)));
    EXPECT_EQ(balance("1000"), "69.5 69.5");
    EXPECT_EQ(balance("3900"), "- -");
    EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(Balances, DebitIncomeLineLowersCurrentEarningsInAmountOnly) {
    EXPECT_TRUE(post_balance(line_on("5000", 100)));
    EXPECT_EQ(balance("5000"), "100 100");
    EXPECT_EQ(balance("3900"), "-100 -");
}

TEST_F(Balances, CreditIncomeLineRaisesCurrentEarningsInAmountOnly) {
    EXPECT_TRUE(post_balance(line_on("4000", 100)));
    EXPECT_EQ(balance("4000"), "100 100");
    EXPECT_EQ(balance("3900"), "100 -");
}

TEST_F(Balances, ForeignLineMovesItsOwnRowAndTheBaseRowByTheBaseAmount) {
    EXPECT_TRUE(post_balance(foreign_line_on("2100", 100, 125)));
    EXPECT_EQ(balance("2100", "F"), "100 125");
    EXPECT_EQ(balance("2100", "A"), "125 -");
}

TEST_F(Balances, ForeignLineOnAnIncomeAccountNeverReachesCurrentEarnings) {
    add_rows("5000", "F", "EUR");
    EXPECT_TRUE(post_balance(foreign_line_on("5000", 100, 125)));
    EXPECT_EQ(balance("5000", "A"), "125 -");
    EXPECT_EQ(balance("3900"), "- -");
}

TEST_F(Balances, MissingBaseRowIsTold) {
    EXPECT_FALSE(post_balance(line_on("9999", 100)));
    EXPECT_THAT(messages(), ElementsAre("Error! 9999 does not exist"));
    EXPECT_EQ(outside.pumps_before_message, 1);
}

TEST_F(Balances, MissingForeignRowOfAnAccountThatLacksTheCurrencyIsTold) {
    EXPECT_FALSE(post_balance(foreign_line_on("1000", 100, 125)));
    EXPECT_THAT(messages(), ElementsAre("Error! account 1000 has not been set for EUR currency"));
}

TEST_F(Balances, MissingForeignRowOfAnAccountThatHasTheCurrencyIsRefusedSilently) {
    company.add("Account_currency_table", {{"accno", "1000"}, {"Currency", "EUR"}});
    EXPECT_FALSE(post_balance(foreign_line_on("1000", 100, 125)));
    EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(Balances, MissingRowIsRefusedSilentlyWithoutACompanyConfiguration) {
    company.db().Execute("DELETE * FROM COA_config_table");
    EXPECT_FALSE(post_balance(line_on("9999", 100)));
    EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(Balances, ForeignLineWithoutABaseRowIsTold) {
    company.db().Execute("DELETE * FROM Balance_table WHERE accno = '2100' AND ledgertype = 'A'");
    EXPECT_FALSE(post_balance(foreign_line_on("2100", 100, 125)));
    EXPECT_THAT(messages(), ElementsAre("Error! 2100 does not exist in Balance"));
}

TEST_F(Balances, AccountOutsideTheMasterIsRefusedSilently) {
    add_rows("7777", "A", "USD");
    EXPECT_FALSE(post_balance(line_on("7777", 100)));
    EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(Balances, EveryIncomeLineTellsThatTheEarningsAccountIsNotSet) {
    company.db().Execute("UPDATE Account_master_table SET type = 'A' WHERE accno = '3900'");
    for (int i = 0; i < 2; ++i) {
        EXPECT_FALSE(post_balance(line_on("5000", 100)));
        EXPECT_THAT(messages(), ElementsAre("Current Earnings account (account type X) has not been set in "
                                            "Account Master"));
    }
}

TEST_F(Balances, EarningsAccountWithoutABalanceRowIsTold) {
    company.db().Execute("DELETE * FROM Balance_table WHERE accno = '3900'");
    EXPECT_FALSE(post_balance(line_on("4000", 100)));
    EXPECT_THAT(messages(),
                ElementsAre("Error : No Current Retained Earning account 3900 in Account Balance"));
}

TEST_F(Balances, EarningsAccountIsLookedUpOnceAndKept) {
    EXPECT_TRUE(post_balance(line_on("4000", 100)));
    company.db().Execute("UPDATE Account_master_table SET type = 'A' WHERE accno = '3900'");
    EXPECT_TRUE(post_balance(line_on("4000", 100)));
    EXPECT_EQ(balance("3900"), "200 -");
}

TEST_F(Balances, HeldBalanceRowIsTriedFiveTimesMoreWithoutAMessage) {
    hold_balance("1000");
    EXPECT_FALSE(post_balance(line_on("1000", 100)));
    EXPECT_EQ(outside.waits.size(), 5U);
    EXPECT_THAT(outside.waits, Each(std::chrono::milliseconds(432)));
    EXPECT_THAT(messages(), IsEmpty());
    other.workspace->Rollback();
    EXPECT_EQ(balance("1000"), "- -");
}

TEST_F(Balances, BalanceRowReleasedAtAnyWaitTakesWhatTheOtherUserCommitted) {
    double expected = 0;
    for (int release_at = 1; release_at <= 5; ++release_at) {
        outside.waits.clear();
        hold_balance("1000");
        outside.on_wait = [&](int wait) {
            if (wait != release_at) return;
            held.set("amount", held.number("amount") + 1000);
            held.Update();
            other.workspace->CommitTrans();
        };
        EXPECT_TRUE(post_balance(line_on("1000", 1)));
        EXPECT_EQ(outside.waits.size(), static_cast<std::size_t>(release_at));
        expected += 1001;
        EXPECT_EQ(balance("1000"), fmt::format("{} {}", expected, release_at));
    }
}

TEST_F(Balances, QuoteInAnAccountIsRefusedAndChangesNothing) {
    EXPECT_FALSE(post_balance(line_on("1000' OR '1' = '1", 100)));
    EXPECT_EQ(company.list("SELECT amount FROM Balance_table WHERE amount <> 0"), "");
}

}  // namespace brimley::testing
