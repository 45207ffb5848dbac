// Current Earnings over the lines of one document.
#include "kernel/current_earnings.h"

#include "kernel/ledger_test.h"
#include "support/faulty_engine.h"
#include "support/test_server.h"

namespace brimley::testing {

using ::testing::IsEmpty;

class CurrentEarningsOfDocument : public LedgerTest {
  protected:
    // In one transaction.
    void post_all(kernel::ModuleG3& its_kernel, std::initializer_list<kernel::GlLine> lines) {
        auto balances = its_kernel.change("SELECT * FROM Balance_table");
        auto periods = its_kernel.change("SELECT * FROM Balance_period_table");
        auto accounts = its_kernel.change("SELECT * FROM Account_master_table");
        kernel::CurrentEarnings earnings;
        for (const kernel::GlLine& line : lines) {
            EXPECT_TRUE(its_kernel.post_balance(balances, line, accounts, earnings));
            EXPECT_TRUE(its_kernel.post_balance_period(periods, line, accounts, earnings));
        }
        EXPECT_TRUE(its_kernel.write_current_earnings(earnings));
    }
    void post_all(std::initializer_list<kernel::GlLine> lines) {
        company.workspace().BeginTrans();
        post_all(kernel, lines);
        company.workspace().CommitTrans();
    }
};

TEST_F(CurrentEarningsOfDocument, AreTakenAndWrittenOnce) {
    const auto faults = std::make_shared<Faults>();
    const store::OpenCompany counted = company.second_user(faulty(faults));
    kernel::ModuleG3 its_kernel(counted.database, outside);
    const auto post = [&] {
        post_all(its_kernel, {line_on("5000", 100), line_on("4000", 30), line_on("5000", 7)});
    };
    counted.workspace->BeginTrans();
    post();  // prepares the statements, those for rows that hold nulls first
    post();
    faults->only_statements_with = " SET ";
    faults->arm(0, false);
    post();
    EXPECT_EQ(faults->calls, 2 * (3 + 1));
    faults->only_statements_with = "";
    faults->only_row_locks = true;
    faults->arm(0, false);
    post();
    EXPECT_EQ(faults->calls, 2 * (3 + 1));
    counted.workspace->CommitTrans();
    EXPECT_EQ(balance("3900"), fmt::format("{} -", 4 * (-100.0 + 30 - 7)));
}

// 0.1 + 0.2 is not 0.3: what is added, and in which order, decides the last digits.
TEST_F(CurrentEarningsOfDocument, HoldTheSumThatLineAfterLineLeaves) {
    post_all({line_on("4000", 0.1), line_on("4000", 0.2), line_on("5000", 0.3)});
    const std::string sum = store::Value(0.1 + 0.2 - 0.3).text();
    EXPECT_EQ(balance("3900"), sum + " -");
    EXPECT_EQ(period("Period3, e_period3, ytd_balance", "3900"), fmt::format("{0} {0} {0}", sum));
}

TEST_F(CurrentEarningsOfDocument, LineOnTheirAccountFindsWhatWasAddedBefore) {
    post_all({line_on("5000", 100), line_on("3900", 7), line_on("4000", 30), line_on("3900", 0.5)});
    EXPECT_EQ(balance("3900"), "-62.5 7.5");
    EXPECT_EQ(period("Period3, e_period3", "3900"), "-62.5 -62.5");
}

TEST_F(CurrentEarningsOfDocument, EachYearHasItsRow) {
    for (const char* const accno : {"3900", "5000"})
        company.add(
            "Balance_period_table",
            {{"fyear", "2027"}, {"company", 1}, {"ledgertype", "A"}, {"accno", accno}, {"Currency", "USD"}});
    kernel::GlLine later = line_on("5000", 3);
    later.fyear = "2027";
    post_all({line_on("5000", 100), later, line_on("5000", 20)});
    EXPECT_EQ(period("fyear, Period3", "3900"), "2026 -120 | 2027 -3");
    EXPECT_EQ(balance("3900"), "-123 -");
}

TEST_F(CurrentEarningsOfDocument, AreHeldFromTheFirstLineThatMovesThem) {
    auto other = company.second_user();
    auto theirs = other.database->OpenRecordset("SELECT * FROM Balance_table", store::RecordsetKind::dynaset);
    company.workspace().BeginTrans();
    auto balances = kernel.change("SELECT * FROM Balance_table");
    auto accounts = kernel.change("SELECT * FROM Account_master_table");
    kernel::CurrentEarnings earnings;
    ASSERT_TRUE(kernel.post_balance(balances, line_on("5000", 100), accounts, earnings));
    EXPECT_FALSE(theirs.try_edit_first({{"accno", "3900"}}));
    company.workspace().Rollback();
    EXPECT_TRUE(theirs.try_edit_first({{"accno", "3900"}}));
}

TEST_F(CurrentEarningsOfDocument, RowHeldBySomebodyElseEndsTheLineWithoutAWait) {
    if (!tests_run_on_server()) return;
    auto other = company.second_user();
    other.workspace->BeginTrans();
    auto theirs = other.database->OpenRecordset("SELECT * FROM Balance_table", store::RecordsetKind::dynaset);
    ASSERT_TRUE(theirs.try_edit_first({{"accno", "3900"}}));
    EXPECT_FALSE(post_balance(line_on("5000", 100)));
    EXPECT_THAT(outside.waits, IsEmpty());
    EXPECT_THAT(messages(), IsEmpty());
}

}  // namespace brimley::testing
