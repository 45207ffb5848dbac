#include "kernel/ledger_test.h"

namespace brimley::testing {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ForeignBalanceRows : public LedgerTest {
  protected:
    void add_open_year(const store::Value& fyear, bool history = false) {
        company.add("Fiscalyear_table", {{"fyear", fyear}, {"history", history}});
    }
    // The years of the "A" rows decide how far the new rows reach.
    void add_base_year(const char* fyear) {
        company.add(
            "Balance_period_table",
            {{"fyear", fyear}, {"company", 1}, {"ledgertype", "A"}, {"accno", "1000"}, {"Currency", "USD"}});
    }
    std::string period_rows(const char* accno) {
        return company.list(
            fmt::format("SELECT fyear, ledgertype FROM Balance_period_table WHERE accno = '{}' "
                        "AND Currency = 'EUR' ORDER BY fyear",
                        accno));
    }
    std::string balance_rows(const char* accno) {
        return company.list(fmt::format(
            "SELECT company, ledgertype, Currency FROM Balance_table WHERE accno = '{}' AND Currency = 'EUR'",
            accno));
    }
};

TEST_F(ForeignBalanceRows, EachYearFromTheFirstOpenToTheLastOfTheLedgerHasTwoRows) {
    add_open_year("2025", true);
    add_open_year("2027");
    add_base_year("2028");
    EXPECT_TRUE(kernel.create_foreign_balance_rows("1000", "EUR"));
    EXPECT_EQ(period_rows("1000"), "2026 F | 2026 E | 2027 F | 2027 E | 2028 F | 2028 E");
    EXPECT_EQ(balance_rows("1000"), "1 F EUR");
    EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(ForeignBalanceRows, NewRowsHaveTheAccountsSegmentsAndNoNumbers) {
    EXPECT_TRUE(kernel.create_foreign_balance_rows("1000", "EUR"));
    EXPECT_EQ(company.list("SELECT company, acccode, subacc, subacc2, subacc5, amount, base_amount FROM "
                           "Balance_table WHERE accno = '1000' AND ledgertype = 'F'"),
              "1 1000 S1 - S5 - -");
    EXPECT_EQ(company.list("SELECT company, acccode, subacc, subacc5, opening_balance, period1, ytd_balance "
                           "FROM Balance_period_table WHERE accno = '1000' AND ledgertype = 'E'"),
              "1 1000 S1 S5 - - -");
}

TEST_F(ForeignBalanceRows, NoOpenYearMakesNothing) {
    company.db().Execute("UPDATE Fiscalyear_table SET history = TRUE");
    EXPECT_FALSE(kernel.create_foreign_balance_rows("1000", "EUR"));
    EXPECT_EQ(period_rows("1000") + balance_rows("1000"), "");
    EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(ForeignBalanceRows, LedgerWithoutYearsStillOpensTheBalanceRow) {
    company.db().Execute("DELETE * FROM Balance_period_table");
    EXPECT_TRUE(kernel.create_foreign_balance_rows("1000", "EUR"));
    EXPECT_EQ(period_rows("1000"), "");
    EXPECT_EQ(balance_rows("1000"), "1 F EUR");
    EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(ForeignBalanceRows, OpenYearWithoutAYearTakesTheLastOfTheLedger) {
    company.db().Execute("DELETE * FROM Fiscalyear_table");
    add_open_year({});
    EXPECT_TRUE(kernel.create_foreign_balance_rows("1000", "EUR"));
    EXPECT_EQ(period_rows("1000"), "2026 F | 2026 E");
}

TEST_F(ForeignBalanceRows, ExistingBalanceRowGivesFalseAndMissingPeriodRowsAreStillMade) {
    company.db().Execute("DELETE * FROM Balance_period_table WHERE accno = '2100' AND ledgertype = 'F'");
    EXPECT_FALSE(kernel.create_foreign_balance_rows("2100", "EUR"));
    EXPECT_EQ(period_rows("2100"), "2026 F | 2026 E");
    EXPECT_EQ(balance_rows("2100"), "1 F EUR");
    EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(ForeignBalanceRows, ExistingPeriodRowsAreLeftAsTheyAre) {
    company.db().Execute("DELETE * FROM Balance_table WHERE accno = '2100' AND ledgertype = 'F'");
    EXPECT_TRUE(kernel.create_foreign_balance_rows("2100", "EUR"));
    EXPECT_EQ(period_rows("2100"), "2026 F");
    EXPECT_EQ(balance_rows("2100"), "1 F EUR");
}

// --- account currencies

class AccountCurrency : public ForeignBalanceRows {
  protected:
    std::string currencies(const char* accno) {
        return company.list(fmt::format(
            "SELECT Currency, Description, revalue FROM Account_currency_table WHERE accno = '{}'", accno));
    }
};

TEST_F(AccountCurrency, ExistsWhenTheAccountHasARowForTheCurrency) {
    EXPECT_TRUE(kernel.account_currency_exists("2100", "EUR"));
    EXPECT_FALSE(kernel.account_currency_exists("2100", "THB"));
    EXPECT_FALSE(kernel.account_currency_exists("1000", "EUR"));
    EXPECT_FALSE(kernel.account_currency_exists("2100' OR '1' = '1", "THB"));
}

TEST_F(AccountCurrency, NewCurrencyGetsItsRowAndItsBalanceRows) {
    EXPECT_TRUE(kernel.add_account_currency("1000", "EUR"));
    EXPECT_EQ(currencies("1000"), "EUR   TRUE");
    EXPECT_EQ(balance_rows("1000"), "1 F EUR");
    EXPECT_EQ(period_rows("1000"), "2026 F | 2026 E");
}

TEST_F(AccountCurrency, SecondUseAddsNoRowAndRefreshesTheFirst) {
    company.db().Execute("UPDATE Account_currency_table SET Description = 'Payables in euro'");
    EXPECT_EQ(currencies("2100"), "EUR Payables in euro FALSE");
    EXPECT_TRUE(kernel.add_account_currency("2100", "EUR"));
    EXPECT_TRUE(kernel.add_account_currency("2100", "EUR"));
    EXPECT_EQ(currencies("2100"), "EUR   TRUE");
}

TEST_F(AccountCurrency, BalanceRowWithoutACurrencyRowCanNeverBeRepaired) {
    company.db().Execute("DELETE * FROM Account_currency_table");
    EXPECT_FALSE(kernel.add_account_currency("2100", "EUR"));
    EXPECT_EQ(currencies("2100"), "");
}

TEST_F(AccountCurrency, EmptyAccountIsRefused) {
    EXPECT_FALSE(kernel.add_account_currency("", "EUR"));
    EXPECT_EQ(company.list("SELECT accno FROM Account_currency_table"), "2100");
}

}  // namespace brimley::testing
