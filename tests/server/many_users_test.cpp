// Several users of one company on a server: what one holds, what the other may do meanwhile, and connections
// that break.
#include <gtest/gtest.h>

#include <chrono>

#include "store/small_company.h"
#include "support/expect_error.h"

namespace brimley {
namespace {

using store::ErrorKind;
using store::Recordset;
using testing::expect_error;
using testing::SmallCompany;

class ManyUsers : public ::testing::Test {
  protected:
    void SetUp() override {
        for (const char* const doctype : {"ip", "gl"})
            company_.add("Counter_table", {{"company", 1}, {"doctype", doctype}, {"nextdocno", 5}});
    }
    static Recordset counter(const store::OpenCompany& company, const std::string& doctype) {
        Recordset rows = company.database->OpenRecordset(
            "SELECT * FROM Counter_table WHERE doctype = '" + doctype + "'", store::RecordsetKind::dynaset);
        rows.LockEdits(true);
        return rows;
    }
    static void count_up(Recordset& rows) {
        rows.Edit();
        rows.set("nextdocno", rows.number("nextdocno") + 1);
        rows.Update();
    }
    std::string numbers() { return company_.list("SELECT nextdocno FROM Counter_table ORDER BY doctype"); }
    // Ends every connection to the company but that of the caller, as a server does that goes down.
    void break_connections() {
        testing::on_server(company_.path(),
                           "SELECT pg_terminate_backend(pid, 5000) FROM pg_stat_activity WHERE datname = "
                           "current_database() AND pid <> pg_backend_pid()");
    }

    SmallCompany company_;
    store::OpenCompany one_ = company_.second_user();
    store::OpenCompany other_ = company_.second_user();
};

TEST_F(ManyUsers, WriteDifferentRowsSideBySide) {
    one_.workspace->BeginTrans();
    other_.workspace->BeginTrans();
    Recordset mine = counter(one_, "ip");
    Recordset theirs = counter(other_, "gl");
    count_up(mine);
    count_up(theirs);
    other_.workspace->CommitTrans();
    one_.workspace->CommitTrans();
    EXPECT_EQ(numbers(), "6 6");
}

TEST_F(ManyUsers, RefusedRowLeavesTheTransactionAlive) {
    one_.workspace->BeginTrans();
    Recordset mine = counter(one_, "ip");
    count_up(mine);
    other_.workspace->BeginTrans();
    Recordset other_row = counter(other_, "gl");
    count_up(other_row);
    Recordset held = counter(other_, "ip");
    const auto start = std::chrono::steady_clock::now();
    for (int tries = 0; tries < 10; ++tries)
        EXPECT_FALSE(held.try_edit());
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500));
    one_.workspace->CommitTrans();
    ASSERT_TRUE(held.try_edit());
    EXPECT_EQ(held.number("nextdocno"), 6);  // what the other has committed, not what was read before
    held.CancelUpdate();
    count_up(held);
    other_.workspace->CommitTrans();
    EXPECT_EQ(numbers(), "6 7");
}

TEST_F(ManyUsers, ExecuteOnAHeldRowIsRefusedAndLeavesTheTransactionAlive) {
    one_.workspace->BeginTrans();
    Recordset mine = counter(one_, "ip");
    mine.Edit();
    other_.workspace->BeginTrans();
    Recordset theirs = counter(other_, "gl");
    count_up(theirs);
    const auto start = std::chrono::steady_clock::now();
    expect_error(ErrorKind::locked, [&] { other_.database->Execute("DELETE * FROM Counter_table"); });
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
    other_.workspace->CommitTrans();
    one_.workspace->Rollback();
    EXPECT_EQ(numbers(), "6 5");
}

TEST_F(ManyUsers, RowThatARuleRefusesLeavesTheTransactionAlive) {
    one_.workspace->BeginTrans();
    Recordset mine = counter(one_, "ip");
    count_up(mine);
    mine.AddNew();
    mine.set("company", 1);
    mine.set("doctype", "gl");
    expect_error(ErrorKind::constraint, [&] { mine.Update(); });
    one_.workspace->CommitTrans();
    EXPECT_EQ(numbers(), "5 6");
}

TEST_F(ManyUsers, WhoIsAloneKeepsOthersFromWritingAndNotFromReading) {
    one_.workspace->begin_alone();
    Recordset theirs = counter(other_, "ip");
    EXPECT_EQ(theirs.number("nextdocno"), 5);
    expect_error(ErrorKind::locked, [&] { theirs.Edit(); });
    expect_error(ErrorKind::locked, [&] { other_.workspace->begin_alone(); });
    EXPECT_FALSE(other_.workspace->in_transaction());
    one_.workspace->CommitTrans();
    count_up(theirs);
    other_.workspace->BeginTrans();
    theirs.Edit();
    expect_error(ErrorKind::locked, [&] { one_.workspace->begin_alone(); });
}

TEST_F(ManyUsers, RowsOfLaterTransactionsComeLaterWhoeverAddsThem) {
    const auto add = [](const store::OpenCompany& company, const std::string& docno, int times) {
        company.workspace->BeginTrans();
        Recordset rows = company.database->OpenRecordset("SELECT * FROM Header_table WHERE 1 = 2",
                                                         store::RecordsetKind::dynaset);
        for (int i = 0; i < times; ++i) {
            rows.AddNew();
            rows.set("docno", docno + std::to_string(i));
            rows.Update();
        }
        company.workspace->CommitTrans();
    };
    add(one_, "a", 2);
    add(other_, "b", 2);
    add(one_, "c", 1);
    EXPECT_EQ(company_.list("SELECT docno FROM Header_table"), "a0 a1 b0 b1 c0");
}

TEST_F(ManyUsers, BrokenConnectionIsToldAndStaysBroken) {
    break_connections();
    expect_error(ErrorKind::lost, [&] { (void)counter(one_, "ip"); });
    expect_error(ErrorKind::lost, [&] { (void)counter(one_, "ip"); });
    expect_error(ErrorKind::lost, [&] { one_.workspace->BeginTrans(); });
}

TEST_F(ManyUsers, ConnectionThatBreaksWithinATransactionTakesItAlong) {
    one_.workspace->BeginTrans();
    Recordset mine = counter(one_, "ip");
    count_up(mine);
    break_connections();
    expect_error(ErrorKind::lost, [&] { (void)counter(one_, "gl"); });
    expect_error(ErrorKind::state, [&] { one_.workspace->CommitTrans(); });
    one_.workspace->Rollback();
    EXPECT_FALSE(one_.workspace->in_transaction());
    company_.reopen({});
    EXPECT_EQ(numbers(), "5 5");
}

TEST_F(ManyUsers, RowBeingEditedIsLostWithItsConnectionThoughThatIsMadeAgain) {
    for (const bool in_transaction : {false, true}) {
        SCOPED_TRACE(in_transaction);
        Recordset mine = counter(one_, "ip");
        if (in_transaction) one_.workspace->BeginTrans();
        mine.Edit();
        mine.set("nextdocno", 99);
        break_connections();
        expect_error(ErrorKind::lost, [&] { (void)counter(one_, "gl"); });
        one_.workspace->Rollback();
        ASSERT_TRUE(one_.workspace->reconnect());
        ASSERT_TRUE(other_.workspace->reconnect());
        Recordset theirs = counter(other_, "ip");
        count_up(theirs);
        if (in_transaction) one_.workspace->BeginTrans();
        expect_error(ErrorKind::lost, [&] { mine.Update(); });
        count_up(mine);
        if (in_transaction) one_.workspace->CommitTrans();
    }
    company_.reopen({});
    EXPECT_EQ(numbers(), "5 9");
}

// The commit was not sent: nothing is in doubt.
TEST_F(ManyUsers, ConnectionThatBreaksUnderRowsToldAheadIsLost) {
    one_.workspace->BeginTrans();
    Recordset mine =
        one_.database->OpenRecordset("SELECT * FROM Counter_table", store::RecordsetKind::dynaset);
    mine.edit_first({{"doctype", "ip"}});
    mine.set("nextdocno", 6);
    mine.Update();
    mine.prefetch_edit_first({{"doctype", "gl"}});
    break_connections();
    expect_error(ErrorKind::lost, [&] { one_.workspace->CommitTrans(); });
    EXPECT_EQ(one_.workspace->connection_state(), store::ConnectionState::lost);
    one_.workspace->Rollback();
    company_.reopen({});
    EXPECT_EQ(numbers(), "5 5");
}

TEST_F(ManyUsers, CommitWithoutAnAnswerIsInDoubtAndNeverRepeated) {
    one_.workspace->BeginTrans();
    Recordset mine = counter(one_, "ip");
    count_up(mine);
    break_connections();
    expect_error(ErrorKind::commit_in_doubt, [&] { one_.workspace->CommitTrans(); });
    expect_error(ErrorKind::state, [&] { one_.workspace->CommitTrans(); });
    one_.workspace->Rollback();
    expect_error(ErrorKind::lost, [&] { one_.workspace->BeginTrans(); });
}

TEST_F(ManyUsers, ChangeOfItsOwnWithoutAnAnswerIsInDoubt) {
    break_connections();
    expect_error(ErrorKind::commit_in_doubt, [&] { one_.database->Execute("DELETE * FROM Counter_table"); });
}

}  // namespace
}  // namespace brimley
