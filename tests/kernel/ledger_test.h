// A small chart of accounts with its balance rows, for the tests of posting.
//
//   1000  asset, debit        2100  payables, credit
//   3900  Current Earnings, credit, type X
//   4000  revenue, credit     5000  expense, debit
//
// Base currency USD, fiscal year 2026. Each account has its "A" rows; 2100 has its "F" rows in EUR too.
#pragma once

#include "support/kernel_test.h"

namespace brimley::testing {

class LedgerTest : public KernelTest {
  protected:
    void SetUp() override {
        company.workspace().BeginTrans();
        company.add("COA_config_table", {{"Currency", "USD"}});
        company.add("Fiscalyear_table", {{"fyear", "2026"},
                                         {"StartDate", day("2026-01-01")},
                                         {"EndDate", day("2026-12-31")},
                                         {"history", false}});
        add_account("1000", "Balance Sheet", true);
        add_account("2100", "Balance Sheet", false);
        add_account("3900", "Balance Sheet", false, "X");
        add_account("4000", "Income Statement", false);
        add_account("5000", "Income Statement", true);
        add_rows("2100", "F", "EUR");
        company.add("Account_currency_table", {{"accno", "2100"}, {"Currency", "EUR"}});
        company.workspace().CommitTrans();
    }

    // An account with its "A" rows.
    void add_account(const char* accno, const char* acctype, bool debit, const char* type = "A") {
        company.add("Account_master_table", {{"accno", accno},
                                             {"type", type},
                                             {"acctype", acctype},
                                             {"debit", debit},
                                             {"acccode", accno},
                                             {"subacc", "S1"},
                                             {"subacc5", "S5"}});
        add_rows(accno, "A", "USD");
    }
    void add_rows(const char* accno, const char* ledgertype, const char* currency) {
        company.add("Balance_table",
                    {{"company", 1}, {"ledgertype", ledgertype}, {"accno", accno}, {"Currency", currency}});
        company.add("Balance_period_table", {{"fyear", "2026"},
                                             {"company", 1},
                                             {"ledgertype", ledgertype},
                                             {"accno", accno},
                                             {"Currency", currency}});
    }
    static kernel::GlLine line_on(const char* accno, double amount, const char* period = "3") {
        kernel::GlLine line;
        line.company = "1";
        line.period = period;
        line.fyear = "2026";
        line.account.accno = accno;
        line.amount = amount;
        line.base_amount = amount;
        line.Currency = "USD";
        line.ledgertype = "A";
        return line;
    }
    static kernel::GlLine foreign_line_on(const char* accno, double amount, double base_amount) {
        kernel::GlLine line = line_on(accno, amount);
        line.base_amount = base_amount;
        line.Currency = "EUR";
        line.ledgertype = "F";
        line.exchange_rate = base_amount / amount;
        return line;
    }
    [[nodiscard]] bool post_balance(const kernel::GlLine& line) {
        auto balances = company.dynaset("SELECT * FROM Balance_table");
        auto accounts = company.dynaset("SELECT * FROM Account_master_table");
        kernel::CurrentEarnings earnings;
        return kernel.post_balance(balances, line, accounts, earnings) &&
               kernel.write_current_earnings(earnings);
    }
    // After post_balance of the same line, as postings do.
    [[nodiscard]] bool post_period(const kernel::GlLine& line) {
        auto periods = company.dynaset("SELECT * FROM Balance_period_table");
        auto accounts = company.dynaset("SELECT * FROM Account_master_table");
        accounts.FindFirst("[accno] = " + store::quoted(line.account.accno));
        kernel::CurrentEarnings earnings;
        return kernel.post_balance_period(periods, line, accounts, earnings) &&
               kernel.write_current_earnings(earnings);
    }
    // "amount base_amount" of a row of Balance_table.
    std::string balance(const char* accno, const char* ledgertype = "A") {
        return company.list(fmt::format(
            "SELECT amount, base_amount FROM Balance_table WHERE accno = '{}' AND ledgertype = '{}'", accno,
            ledgertype));
    }
    // Columns of a row of Balance_period_table.
    std::string period(const char* columns, const char* accno, const char* ledgertype = "A") {
        return company.list(
            fmt::format("SELECT {} FROM Balance_period_table WHERE accno = '{}' AND ledgertype = '{}'",
                        columns, accno, ledgertype));
    }
};

}  // namespace brimley::testing
