// GL documents and balances: each check on books that agree, and on books broken in one place.
#include "company/books_fixture.h"
#include "company/transaction.h"
#include "kernel/tables/company_tables.h"

namespace brimley {
namespace {

using company::Findings;
using store::Value;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;
using ::testing::Not;

class CheckLedger : public testing::BooksTest {};

TEST_F(CheckLedger, BooksThatAgreeHaveNoFindings) { EXPECT_THAT(findings(), IsEmpty()); }

TEST_F(CheckLedger, SaveSucceedsWhileACheckIsReadingAndTheCheckSeesTheBooksBefore) {
    const store::OpenCompany reader = store::open_company(path(), kernel::company_tables());
    {
        const company::ReadingMoment moment(reader);
        in_transaction([&](store::Database&) { raise(balance("2000"), "amount", 1); });
        EXPECT_THAT(company::check_sums(*reader.database), IsEmpty());
    }
    EXPECT_THAT(company::check_sums(*reader.database),
                ElementsAre("Balance_table A 2000 USD: amount is 153.35, expected 152.35"));
}

TEST_F(CheckLedger, DifferenceBelowAHundredthIsNone) {
    raise(balance("2000"), "amount", 0.004);
    EXPECT_THAT(findings(), IsEmpty());
    raise(balance("2000"), "amount", 0.006);
    EXPECT_THAT(findings(), ElementsAre("Balance_table A 2000 USD: amount is 152.36, expected 152.35"));
}

TEST_F(CheckLedger, RepairWritesWhatTheLinesComeToAndNamesEachField) {
    const std::string period = "SELECT * FROM Balance_period_table WHERE accno = '2000' AND ledgertype = 'A'";
    raise(balance("2000"), "amount", 1);
    raise(balance("1300"), "base_amount", -2);
    raise(period, "period3", 5);
    raise(period, "balperiod7", 0.5);
    ASSERT_THAT(findings(), Not(IsEmpty()));
    std::vector<std::string> repaired;
    in_transaction([&](store::Database& database) { repaired = company::repair_balances(database); });
    EXPECT_THAT(repaired,
                IsSupersetOf({HasSubstr("Balance_table A 2000 USD: amount was 153.35, is 152.35 now"),
                              HasSubstr("Balance_table A 1300 USD: base_amount was"),
                              HasSubstr("A 2000 USD: Period3 was 5.00, is 0.00 now"),
                              HasSubstr("A 2000 USD: balperiod7 was 0.50, is 0.00 now")}));
    EXPECT_THAT(findings(), IsEmpty());
    in_transaction([&](store::Database& database) { repaired = company::repair_balances(database); });
    EXPECT_THAT(repaired, IsEmpty());
}

TEST_F(CheckLedger, RepairMakesNoRowThatIsMissing) {
    db().Execute("DELETE * FROM Balance_table WHERE accno = '2000'");
    in_transaction(
        [&](store::Database& database) { EXPECT_THAT(company::repair_balances(database), IsEmpty()); });
    EXPECT_THAT(findings(), Contains(HasSubstr("is missing")));
}

TEST_F(CheckLedger, UnbalancedGlDocumentIsFound) {
    add("GL_header_table", {{"company", 1}, {"doctype", "gl"}, {"fkey", "1gl9"}, {"fyear", "2026"}});
    add_gl_line("1gl9", 1, "1200", 10, 10, "3");
    add_gl_line("1gl9", 2, "2000", 9.99, 9.99, "3");
    EXPECT_THAT(findings(), Contains("GL document 1gl9 does not balance: debit less credit is 0.01"));
}

TEST_F(CheckLedger, AccountOutsideTheChartIsFound) {
    change("SELECT * FROM Account_master_table WHERE accno = '1300'", {{"accno", "1399"}});
    EXPECT_THAT(findings(), ElementsAre("GL document 1gl-1: account 1300 is not in the chart"));
}

TEST_F(CheckLedger, GapInLineNumbersIsFound) {
    change("SELECT * FROM GL_transaction_table WHERE fkey = '1gl-1' AND lineno = 3", {{"lineno", 4}});
    EXPECT_THAT(findings(), ElementsAre("GL document 1gl-1: line 4 is in the place of line 3"));
}

TEST_F(CheckLedger, LineNumberThatStandsTwiceIsFound) {
    change("SELECT * FROM GL_transaction_table WHERE fkey = '1gl-1' AND lineno = 3", {{"lineno", 2}});
    EXPECT_THAT(findings(), ElementsAre("GL document 1gl-1: line 2 is in the place of line 3"));
}

TEST_F(CheckLedger, KeyWithoutADashMayComeAgainInAnotherYear) {
    for (const char* fyear : {"2026", "2027"}) {
        add("GL_header_table", {{"company", 1}, {"doctype", "gl"}, {"fkey", "1gl1"}});
        for (const int number : {1, 2}) {
            add("GL_transaction_table", {{"company", 1},
                                         {"fkey", "1gl1"},
                                         {"lineno", number},
                                         {"accno", "1200"},
                                         {"amount", number == 1 ? 7.0 : -7.0},
                                         {"period", "5"},
                                         {"fiscalyear", fyear},
                                         {"Currency", "USD"},
                                         {"ledgertype", "A"}});
        }
    }
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(CheckLedger, LinesWithoutAHeaderAreFound) {
    change("SELECT * FROM GL_header_table WHERE fkey = '1gl-3'", {{"fkey", "1gl-2"}});
    EXPECT_THAT(findings(), ElementsAre("GL document 1gl-3 has no header",
                                        "Invoice 1vcn-1: its GL document 1gl-3 does not exist",
                                        "Two documents have the key 1gl-2"));
}

TEST_F(CheckLedger, HeaderWithoutLinesIsFoundWhenItsInvoiceComesToSomething) {
    db().Execute("DELETE * FROM GL_transaction_table WHERE fkey = '1gl-3'");
    const Findings found = findings();
    ASSERT_FALSE(found.empty());
    EXPECT_EQ(found[0], "GL document 1gl-3 has no lines, but its invoice comes to 40.00");
    EXPECT_THAT(found, Contains("Balance_table A 1210 USD: amount is 21155.35, expected 21115.35"));
    change("SELECT * FROM AP_transaction_table WHERE fkey = '1vcn-1'",
           {{"gross_amount", 0.0}, {"paid_amount", 0.0}});
    EXPECT_THAT(findings(), Not(Contains(HasSubstr("has no lines"))));
}

// Two lines of half a cent are posted one after the other, and each is rounded to nothing.
TEST_F(CheckLedger, LinesOfHalfACentPostNothing) {
    db().Execute("DELETE * FROM GL_transaction_table WHERE fkey = '1gl-3'");
    change("SELECT * FROM AP_transaction_table WHERE fkey = '1vcn-1'",
           {{"gross_amount", 0.005}, {"paid_amount", 0.005}});
    const auto second_line = [&](double gross) {
        in_transaction([&](store::Database&) {
            add("AP_transaction_table",
                {{"fkey", "1vcn-1"}, {"doctype", "vcn"}, {"pay_item", "2"}, {"gross_amount", gross}});
        });
    };
    second_line(0.005);
    EXPECT_THAT(findings(), Not(Contains(HasSubstr("has no lines"))));
    second_line(0.006);
    EXPECT_THAT(findings(), Contains("GL document 1gl-3 has no lines, but its invoice comes to 0.01"));
}

TEST_F(CheckLedger, BaseAmountOfABalanceIsCompared) {
    raise(balance("1200", "F"), "base_amount", 1);
    EXPECT_THAT(findings(), ElementsAre("Balance_table F 1200 EUR: base_amount is 126.00, expected 125.00"));
}

TEST_F(CheckLedger, ForeignLinesMoveTheBaseRowByTheirBaseAmount) {
    raise(balance("2010"), "amount", -125);
    EXPECT_THAT(findings(), ElementsAre("Balance_table A 2010 USD: amount is 0.00, expected 125.00"));
}

TEST_F(CheckLedger, CurrentEarningsFollowTheIncomeStatement) {
    raise(balance("3900"), "amount", 107.35);
    raise(year("3900"), "e_period1", 107.35);
    EXPECT_THAT(findings(),
                IsSupersetOf({"Balance_table A 3900 USD: amount is 0.00, expected -107.35",
                              "Balance_period_table 2026 A 3900 USD: e_period1 is 0.00, expected -107.35"}));
}

TEST_F(CheckLedger, MissingBalanceRowIsFoundOnce) {
    db().Execute("DELETE * FROM Balance_table WHERE accno = '5000'");
    EXPECT_THAT(findings(),
                ElementsAre("Balance_table A 5000 USD is missing, though GL document 1gl-1 was posted to it",
                            "Balance_table A 3900 USD: amount is -107.35, expected 0.00"));
}

TEST_F(CheckLedger, BalanceRowThatStandsTwiceIsFound) {
    add("Balance_table", {{"company", 1}, {"ledgertype", "A"}, {"accno", "1300"}, {"Currency", "USD"}});
    EXPECT_THAT(findings(), ElementsAre("Balance_table A 1300 USD is there twice"));
}

TEST_F(CheckLedger, PeriodColumnIsTheSumOfItsLines) {
    raise(year("2000"), "period1", -1);
    raise(year("2000"), "Period2", 1);
    raise(year("2000"), "balperiod1", -1);
    EXPECT_THAT(findings(),
                ElementsAre("Balance_period_table 2026 A 2000 USD: period1 is 111.35, expected 112.35",
                            "Balance_period_table 2026 A 2000 USD: Period2 is 1.00, expected 0.00"));
}

TEST_F(CheckLedger, ForeignPeriodColumnsAreComparedInBothFamilies) {
    raise(year("1200", "F"), "Period2", 1);
    raise(year("1200", "F"), "e_period2", 2);
    const Findings found = findings();
    EXPECT_THAT(found,
                IsSupersetOf({"Balance_period_table 2026 F 1200 EUR: Period2 is 101.00, expected 100.00",
                              "Balance_period_table 2026 F 1200 EUR: e_period2 is 127.00, expected 125.00"}));
}

TEST_F(CheckLedger, AdjustmentColumnIsCompared) {
    raise(year("1210"), "adjust", -40);
    raise(year("1210"), "closing", 40);
    EXPECT_THAT(findings(),
                ElementsAre("Balance_period_table 2026 A 1210 USD: adjust is 0.00, expected 40.00",
                            "Balance_period_table 2026 A 1210 USD: closing is 40.00, expected 0.00"));
}

TEST_F(CheckLedger, PeriodThatNamesNoColumnMovesNone) {
    for (const int number : {1, 2}) {
        add_gl_line("1gl9", number, "1200", number == 1 ? 3 : -3, number == 1 ? 3 : -3,
                    number == 1 ? "14" : "01");
    }
    add("GL_header_table", {{"company", 1}, {"doctype", "gl"}, {"fkey", "1gl9"}});
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(CheckLedger, MissingPeriodRowIsFound) {
    db().Execute("DELETE * FROM Balance_period_table WHERE accno = '1300' AND fyear = '2026'");
    EXPECT_THAT(
        findings(),
        ElementsAre(
            "Balance_period_table 2026 A 1300 USD is missing, though GL document 1gl-1 was posted to it"));
}

TEST_F(CheckLedger, ForeignLineNeedsNoBaseRowInThePeriods) {
    db().Execute("DELETE * FROM Balance_period_table WHERE accno = '2010' AND ledgertype = 'A'");
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(CheckLedger, RunningBalanceFollowsFromItsColumns) {
    raise(year("2000"), "balperiod7", 1);
    raise(year("2000"), "e_ytd_balance", -1);
    EXPECT_THAT(
        findings(),
        ElementsAre("Balance_period_table 2026 A 2000 USD: balperiod7 is 113.35, expected 112.35",
                    "Balance_period_table 2026 A 2000 USD: e_ytd_balance is 151.35, expected 152.35"));
}

TEST_F(CheckLedger, RunningBalancesMayBeNullUntilSomethingIsPosted) {
    change(year("1050"), {{"balperiod1", Value()}, {"ytd_balance", Value()}});
    EXPECT_THAT(findings(), IsEmpty());
    change(year("2000"), {{"ytd_balance", Value()}});
    EXPECT_THAT(findings(),
                ElementsAre("Balance_period_table 2026 A 2000 USD: ytd_balance is 0.00, expected 152.35"));
}

}  // namespace
}  // namespace brimley
