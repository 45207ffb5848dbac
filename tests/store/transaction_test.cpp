// BeginTrans, CommitTrans, Rollback.
#include <gtest/gtest.h>

#include "store/small_company.h"
#include "support/expect_error.h"

namespace brimley {
namespace {

using store::ErrorKind;
using store::Recordset;
using testing::expect_error;
using testing::SmallCompany;

class Transaction : public ::testing::Test {
  protected:
    void SetUp() override {
        for (const char* const docno : {"b", "a", "c"})
            company_.add("Header_table", {{"docno", docno}, {"amount", 10}});
    }
    std::string seen_by_others(const std::string& query) {
        Recordset rows = other_.database->OpenRecordset(query, store::RecordsetKind::snapshot);
        return testing::first_column(rows);
    }

    SmallCompany company_;
    store::OpenCompany other_ = company_.second_user();
};

TEST_F(Transaction, RollbackRestoresEverything) {
    company_.workspace().BeginTrans();
    EXPECT_EQ(company_.db().Execute("DELETE * FROM Header_table WHERE docno = 'a'"), 1);
    EXPECT_EQ(company_.db().Execute("UPDATE Header_table SET amount = 3, paid = TRUE"), 2);
    company_.add("Header_table", {{"docno", "n"}});
    Recordset rows = company_.dynaset("SELECT * FROM Header_table WHERE docno = 'b'");
    rows.Edit();
    rows.set("vendor_no", "v");
    rows.Update();
    EXPECT_EQ(company_.list("SELECT amount FROM Header_table"), "3 3 -");
    company_.workspace().Rollback();
    EXPECT_EQ(company_.list("SELECT docno FROM Header_table WHERE paid = FALSE AND vendor_no IS NULL"),
              "b a c");
    EXPECT_EQ(company_.list("SELECT amount FROM Header_table"), "10 10 10");
}

TEST_F(Transaction, OthersSeeNothingBeforeTheCommit) {
    company_.workspace().BeginTrans();
    EXPECT_TRUE(company_.workspace().in_transaction());
    company_.add("Header_table", {{"docno", "n"}});
    EXPECT_EQ(seen_by_others("SELECT docno FROM Header_table"), "b a c");
    EXPECT_EQ(company_.list("SELECT docno FROM Header_table"), "b a c n");
    company_.workspace().CommitTrans();
    EXPECT_FALSE(company_.workspace().in_transaction());
    EXPECT_EQ(seen_by_others("SELECT docno FROM Header_table"), "b a c n");
}

TEST_F(Transaction, WithoutOneEachUpdateStandsAlone) {
    company_.add("Header_table", {{"docno", "n"}});
    EXPECT_EQ(seen_by_others("SELECT docno FROM Header_table"), "b a c n");
    company_.db().Execute("DELETE * FROM Header_table WHERE docno = 'n'");
    EXPECT_EQ(seen_by_others("SELECT docno FROM Header_table"), "b a c");
    company_.workspace().Rollback();
    EXPECT_EQ(seen_by_others("SELECT docno FROM Header_table"), "b a c");
}

TEST_F(Transaction, WithoutOneAStatementThatFailsAtItsSecondRowIsUndoneAndKeepsNobodyFromWriting) {
    for (const char* const doctype : {"ip", "gl"})
        company_.add("Counter_table", {{"company", 1}, {"doctype", doctype}});
    expect_error(ErrorKind::constraint,
                 [&] { company_.db().Execute("UPDATE Counter_table SET doctype = 'ck'"); });
    EXPECT_EQ(company_.list("SELECT doctype FROM Counter_table"), "ip gl");
    testing::add_row(*other_.database, "Header_table", {{"docno", "o"}});
    company_.add("Header_table", {{"docno", "n"}});
    EXPECT_EQ(seen_by_others("SELECT docno FROM Header_table"), "b a c o n");
}

TEST_F(Transaction, CallsOutOfOrderAreRefused) {
    expect_error(ErrorKind::state, [&] { company_.workspace().CommitTrans(); });
    company_.workspace().Rollback();
    company_.workspace().BeginTrans();
    expect_error(ErrorKind::state, [&] { company_.workspace().BeginTrans(); });
    company_.workspace().Rollback();
    company_.workspace().Rollback();
    EXPECT_FALSE(company_.workspace().in_transaction());
    expect_error(ErrorKind::state, [&] { company_.workspace().CommitTrans(); });
}

TEST_F(Transaction, ReadingTakesNothingFromOthers) {
    company_.workspace().BeginTrans();
    Recordset rows = company_.dynaset("SELECT * FROM Header_table WHERE docno = 'a'");
    EXPECT_EQ(rows.number("amount"), 10);
    other_.database->Execute("UPDATE Header_table SET amount = 20");
    rows.MoveFirst();
    EXPECT_EQ(rows.number("amount"), 20);
    company_.workspace().CommitTrans();
}

TEST_F(Transaction, WriteAfterReadingAndAForeignCommitRestsOnTheNewState) {
    company_.workspace().BeginTrans();
    Recordset rows = company_.dynaset("SELECT * FROM Header_table");
    rows.FindFirst("docno = 'a'");
    EXPECT_EQ(rows.number("amount"), 10);
    other_.database->Execute("UPDATE Header_table SET amount = 20");
    rows.LockEdits(true);
    rows.Edit();
    EXPECT_EQ(rows.number("amount"), 20);
    rows.set("amount", rows.number("amount") + 1);
    rows.Update();
    company_.workspace().CommitTrans();
    EXPECT_EQ(seen_by_others("SELECT amount FROM Header_table"), "20 21 20");
}

TEST_F(Transaction, RefusedStatementLeavesTheRestStanding) {
    company_.add("Counter_table", {{"company", 1}, {"doctype", "ip"}});
    company_.workspace().BeginTrans();
    company_.add("Header_table", {{"docno", "n"}});
    expect_error(ErrorKind::constraint, [&] {
        company_.add("Counter_table", {{"company", 1}, {"doctype", "ip"}});
    });
    expect_error(ErrorKind::syntax, [&] { company_.db().Execute("DELETE"); });
    company_.add("Header_table", {{"docno", "m"}});
    company_.workspace().CommitTrans();
    EXPECT_EQ(seen_by_others("SELECT docno FROM Header_table"), "b a c n m");
}

TEST_F(Transaction, SnapshotSeesOneMomentWhileOthersWrite) {
    company_.workspace().begin_snapshot();
    EXPECT_TRUE(company_.workspace().in_transaction());
    Recordset rows = company_.dynaset("SELECT * FROM Header_table WHERE docno = 'a'");
    other_.database->Execute("UPDATE Header_table SET amount = 20");
    other_.workspace->BeginTrans();
    other_.database->Execute("DELETE * FROM Header_table WHERE docno = 'b'");
    other_.workspace->CommitTrans();
    EXPECT_EQ(company_.list("SELECT amount FROM Header_table"), "10 10 10");
    rows.MoveFirst();
    EXPECT_EQ(rows.number("amount"), 10);
    company_.workspace().CommitTrans();
    EXPECT_FALSE(company_.workspace().in_transaction());
    EXPECT_EQ(company_.list("SELECT amount FROM Header_table"), "20 20");
}

TEST_F(Transaction, SnapshotBeginsWhileAnotherUserWritesAndSeesNothingOfIt) {
    other_.workspace->BeginTrans();
    other_.database->Execute("DELETE * FROM Header_table");
    company_.workspace().begin_snapshot();
    EXPECT_EQ(company_.count("Header_table"), 3);
    other_.workspace->CommitTrans();
    EXPECT_EQ(company_.count("Header_table"), 3);
    company_.workspace().Rollback();
    EXPECT_EQ(company_.count("Header_table"), 0);
}

TEST_F(Transaction, NothingIsWrittenWithinASnapshot) {
    company_.workspace().begin_snapshot();
    expect_error(ErrorKind::state, [&] { company_.db().Execute("DELETE * FROM Header_table"); });
    expect_error(ErrorKind::state, [&] { company_.add("Header_table", {{"docno", "n"}}); });
    Recordset rows = company_.dynaset("SELECT * FROM Header_table");
    expect_error(ErrorKind::state, [&] { rows.Edit(); });
    rows.LockEdits(true);
    expect_error(ErrorKind::state, [&] { (void)rows.try_edit(); });
    company_.workspace().CommitTrans();
    rows.Edit();
    EXPECT_EQ(company_.list("SELECT docno FROM Header_table"), "b a c");
}

TEST_F(Transaction, SnapshotStandsNeitherInATransactionNorBesideAnEdit) {
    company_.workspace().BeginTrans();
    expect_error(ErrorKind::state, [&] { company_.workspace().begin_snapshot(); });
    company_.workspace().Rollback();
    Recordset rows = company_.dynaset("SELECT * FROM Header_table");
    rows.Edit();
    expect_error(ErrorKind::state, [&] { company_.workspace().begin_snapshot(); });
    rows.CancelUpdate();
    company_.workspace().begin_snapshot();
    expect_error(ErrorKind::state, [&] { company_.workspace().BeginTrans(); });
    expect_error(ErrorKind::state, [&] { company_.workspace().begin_snapshot(); });
}

TEST_F(Transaction, WorkspaceThatGoesAwayRollsBack) {
    other_.workspace->BeginTrans();
    other_.database->Execute("DELETE * FROM Header_table");
    other_.workspace.reset();
    EXPECT_EQ(company_.count("Header_table"), 3);
    company_.db().Execute("UPDATE Header_table SET amount = 1");
    other_.database.reset();
    EXPECT_EQ(company_.list("SELECT amount FROM Header_table"), "1 1 1");
}

TEST_F(Transaction, RecordsetOutlivesWorkspaceAndDatabase) {
    Recordset rows =
        other_.database->OpenRecordset("SELECT docno FROM Header_table", store::RecordsetKind::dynaset);
    other_ = {};
    EXPECT_EQ(testing::first_column(rows), "b a c");
}

}  // namespace
}  // namespace brimley
