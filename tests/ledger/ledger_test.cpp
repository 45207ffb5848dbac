// The ledger's forms on half a year of documents of every kind, in three currencies: they come to what the
// balances hold.
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <map>

#include "company/check.h"
#include "company/journal_export.h"
#include "kernel/money.h"
#include "ledger/ledger_entry.h"
#include "ledger/ledger_journal.h"
#include "ledger/ledger_trial_balance.h"
#include "support/sample_host.h"

namespace brimley::testing {
namespace {

using controls::Refusal;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

using Balances = std::map<std::string, std::string>;  // by account: debit less credit

CompanyOriginal& half_year_original() {
    static CompanyOriginal original([](const std::string& company) {
        company::create_company_file(company, company::HalfYearCompany{"anna"});
    });
    return original;
}

class HalfYearLedger : public ::testing::Test {
  protected:
    HalfYearLedger() { user.desk.clock = *store::DateTime::from_ymd(2026, 6, 30); }

    // What Balance_table holds of every account, in base currency. Current Earnings without the lines of the
    // base ledger on the income statement, which posting adds to it.
    Balances held() {
        std::map<std::string, double> amounts;
        double earned = 0;
        std::string earnings;
        auto rows = company.snapshot(
            "SELECT Balance_table.accno AS no,ledgertype,amount,base_amount,debit,acctype,type FROM "
            "(Balance_table "
            "INNER JOIN Account_master_table ON Balance_table.accno = Account_master_table.accno)");
        for (; !rows.at_eof(); rows.MoveNext()) {
            const bool base = rows.text("ledgertype") == "A";
            const double side = rows.flag("debit") ? 1 : -1;
            const double debit = side * rows.number(base ? "amount" : "base_amount");
            if (base) amounts[rows.text("no")] += debit;
            if (rows.text("type") == "X")
                earnings = rows.text("no");
            else if (rows.text("acctype") == "Income Statement")
                earned += base ? debit : -debit;
        }
        amounts[earnings] -= earned;
        return texts(amounts);
    }
    static Balances texts(const std::map<std::string, double>& amounts) {
        Balances balances;
        for (const auto& [accno, amount] : amounts)
            if (kernel::Round(amount) != 0) balances[accno] = kernel::format_money(amount);
        return balances;
    }
    ledger::Ledger_trial_balance& trial_balance(const std::string& year, int period) {
        user.ap.showform_Ledger_trial_balance();
        auto& form = *user.ap.frm_trial_balance;
        EXPECT_EQ(form.cmbfyear.type(year), Refusal::none);
        EXPECT_EQ(form.cmbperiod.type(std::to_string(period)), Refusal::none);
        EXPECT_EQ(form.press(frame::command::kFind), Refusal::none);
        return form;
    }
    static double money(const controls::Grid& grid, int row, const char* column) {
        return kernel::money_value(grid.cell(row, column));
    }

    CompanyCopy company{half_year_original()};
    DeskOfUser user{company.open()};
};

TEST_F(HalfYearLedger, TrialBalanceOfTheLastPeriodIsWhatTheBalancesHold) {
    const auto& form = trial_balance("2026", 12);
    std::map<std::string, double> shown;
    for (int row = 0; row < form.dbgrid1.array.used_rows(); ++row)
        shown[form.dbgrid1.cell(row, "Account")] =
            money(form.dbgrid1, row, "Debit") - money(form.dbgrid1, row, "Credit");
    EXPECT_EQ(texts(shown), held());
    EXPECT_GT(shown.size(), 40U);
}

TEST_F(HalfYearLedger, TrialBalanceBalancesInEveryPeriod) {
    std::string last;
    for (int period = 1; period <= 6; ++period) {
        const auto& form = trial_balance("2026", period);
        EXPECT_EQ(form.txtdebit.text(), form.txtcredit.text()) << period;
        EXPECT_EQ(form.txtdifference.text(), "0.00") << period;
        EXPECT_NE(form.txtdebit.text(), last) << period;
        last = form.txtdebit.text();
    }
}

TEST_F(HalfYearLedger, JournalOfEachAccountEndsAtWhatItsBalanceHolds) {
    for (const auto& [accno, balance] : held()) {
        user.ap.showform_Ledger_journal(accno);
        const auto& grid = user.ap.frm_journal->dbgrid1;
        const int last = grid.array.used_rows() - 1;
        ASSERT_GE(last, 0) << accno;
        const bool debit =
            company.list("SELECT debit FROM Account_master_table WHERE accno = '" + accno + "'") == "TRUE";
        EXPECT_EQ(kernel::format_money((debit ? 1 : -1) * money(grid, last, "Balance")), balance) << accno;
    }
}

TEST_F(HalfYearLedger, JournalOfAllAccountsHasEqualSides) {
    user.ap.showform_Ledger_journal();
    auto& form = *user.ap.frm_journal;
    EXPECT_EQ(form.txtfrom.type("01/01/2026"), Refusal::none);
    EXPECT_EQ(form.press(frame::command::kFind), Refusal::none);
    EXPECT_EQ(form.txtdebit.text(), form.txtcredit.text());
    EXPECT_EQ(form.dbgrid1.array.used_rows(),
              company.snapshot("SELECT fkey FROM GL_transaction_table").RecordCount());
}

// hledger is a reader that knows nothing of this program.
TEST_F(HalfYearLedger, ExportedJournalComesToTheSameInHledger) {
    const std::string journal = company.folder().file("half year.journal");
    company::export_journal(company.db(), journal);
    const std::string told = company.folder().file("told.csv");
    ASSERT_EQ(std::system(fmt::format("hledger -f '{0}' check && hledger -f '{0}' balance --flat --no-total "
                                      "-O csv > '{1}'",
                                      journal, told)
                              .c_str()),
              0);
    // "1000 Petty cash","350.00 USD"
    std::map<std::string, double> balances;
    std::ifstream lines(told);
    std::string line;
    for (std::getline(lines, line); std::getline(lines, line);)
        balances[line.substr(1, line.find(' ') - 1)] = std::stod(line.substr(line.find("\",\"") + 3));
    EXPECT_EQ(texts(balances), held());
}

// --- journal entries ---

class JournalEntry : public ::testing::Test {
  protected:
    JournalEntry() {
        user.desk.clock = *store::DateTime::from_ymd(2026, 3, 16);
        user.ap.showform_Ledger_entry();
    }
    ledger::Ledger_entry& form() { return *user.ap.frm_entry; }
    void enter(const char* text, const char* amount) {
        EXPECT_EQ(form().press(frame::command::kNew), Refusal::none);
        EXPECT_EQ(form().txtremark.type(text), Refusal::none);
        cell(0, "Account", "1050");
        cell(0, "Debit", amount);
        cell(1, "Account", "3000");
        cell(1, "Credit", amount);
    }
    void cell(int row, const char* column, const char* text) {
        auto& grid = form().dbgrid1;
        EXPECT_EQ(grid.edit_cell(row, grid.get_column(column), text), Refusal::none) << column;
    }
    void save(const char* text, const char* amount) {
        enter(text, amount);
        EXPECT_EQ(form().press(frame::command::kSave), Refusal::none);
    }
    void reverse() {
        user.desk.answers = {true};
        EXPECT_EQ(form().press(ledger::kReverse), Refusal::none);
    }
    // Of the books as they would be after this statement.
    company::Findings findings_after(const std::string& statement) {
        company.workspace().BeginTrans();
        EXPECT_GT(company.db().Execute(statement), 0) << statement;
        const auto findings = company::check_books(company.db());
        company.workspace().Rollback();
        return findings;
    }

    CompanyCopy company{sample_original()};
    DeskOfUser user{company.open()};
};

TEST_F(JournalEntry, FailedSaveLeavesNothingAndKeepsWhatWasEntered) {
    company.db().Execute("DELETE * FROM Balance_table WHERE accno = '3000'");
    const std::string counters =
        company.list("SELECT nextdocno FROM Docno_master_table ORDER BY doctype, fiscalyear");
    enter("Owner pays in", "100");
    EXPECT_EQ(form().press(frame::command::kSave), Refusal::none);
    EXPECT_THAT(user.messages(), ::testing::Contains("The journal entry was not saved."));
    EXPECT_EQ(company.list("SELECT fkey FROM GL_header_table"), "");
    EXPECT_EQ(company.list("SELECT fkey FROM GL_transaction_table"), "");
    EXPECT_EQ(company.list("SELECT nextdocno FROM Docno_master_table ORDER BY doctype, fiscalyear"),
              counters);
    EXPECT_EQ(form().mode(), frame::Mode::new_entry);
    EXPECT_EQ(form().txtremark.text(), "Owner pays in");
}

TEST_F(JournalEntry, IsReversedOnce) {
    save("Owner pays in", "100");
    // Another desk is faster.
    company.db().Execute("UPDATE GL_header_table SET Reverse = TRUE");
    (void)user.messages();
    reverse();
    EXPECT_THAT(user.messages(), ElementsAre("The journal entry is reversed already.",
                                             "The journal entry GL-26-00001 was not reversed."));
    EXPECT_EQ(company.list("SELECT docno FROM GL_header_table"), "GL-26-00001");
}

TEST_F(JournalEntry, LinesOnOneAccountAreStoredAsOne) {
    enter("Owner pays in, twice", "100");
    cell(2, "Account", "1050");
    cell(2, "Debit", "50");
    cell(3, "Account", "3000");
    cell(3, "Credit", "50");
    EXPECT_EQ(form().press(frame::command::kSave), Refusal::none);
    EXPECT_EQ(company.list("SELECT accno, amount FROM GL_transaction_table ORDER BY lineno"),
              "1050 150 | 3000 150");
}

TEST_F(JournalEntry, ChangedByOtherMeansIsFound) {
    save("Owner pays in", "100");
    user.desk.clock = user.desk.clock.plus_days(30);
    reverse();
    save("Owner pays in again", "80");
    ASSERT_THAT(company::check_books(company.db()), IsEmpty());
    const std::string headers = "UPDATE GL_header_table SET ";
    const std::string lines = "UPDATE GL_transaction_table SET ";
    const std::string first = " WHERE docno = 'GL-26-00001'";
    const std::string reverse = " WHERE docno = 'GL-26-00002'";
    const std::string third = " WHERE docno = 'GL-26-00003'";
    for (const std::string& statement :
         {headers + "Reverse = FALSE" + first, headers + "Description = 'Reversed by GL-26-00003'" + first,
          headers + "Description = ''" + first, headers + "Reverse = TRUE" + third,
          headers + "Description = 'Reverse journal entry GL-26-00003'" + reverse,
          headers + "source_docno = 'GL-26-00003'" + reverse, headers + "Description = 'paid'" + third,
          headers + "source_form = 'APform_invoice'" + third, headers + "source_docno = 'X'" + third,
          headers + "user_created = 'ben'" + third, headers + "period = '5'" + third,
          lines + "gldate = Datevalue('Apr 20, 2026')" + third, lines + "vendor_no = 'V1001'" + third,
          lines + "Currency = 'EUR'" + third + " AND lineno = 1",
          lines + "base_amount = 79" + third + " AND lineno = 1",
          lines + "accno = '1060'" + reverse + " AND accno = '1050'",
          lines + "Source = 'AP-INVOICE'" + third + " AND lineno = 2",
          "DELETE * FROM GL_header_table" + reverse})
        EXPECT_THAT(findings_after(statement), ::testing::Contains(HasSubstr("Journal entry"))) << statement;
}

}  // namespace
}  // namespace brimley::testing
