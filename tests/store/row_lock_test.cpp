// Two users on one row.
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

class RowLock : public ::testing::Test {
  protected:
    static constexpr const char* kCounter =
        "SELECT * FROM [Counter_table] WHERE company = 1 AND doctype = 'ip'";

    void SetUp() override {
        company_.add("Counter_table", {{"company", 1}, {"doctype", "ip"}, {"nextdocno", 5}});
    }

    static Recordset counter(store::Database& database) {
        Recordset rows = database.OpenRecordset(kCounter, store::RecordsetKind::dynaset);
        rows.LockEdits(true);
        return rows;
    }
    static void count_up(Recordset& rows) {
        rows.set("nextdocno", rows.number("nextdocno") + 1);
        rows.Update();
    }

    SmallCompany company_;
    store::OpenCompany other_ = company_.second_user();
};

TEST_F(RowLock, SecondUserFailsAtOnceAndSucceedsAfterTheCommit) {
    company_.workspace().BeginTrans();
    Recordset mine = counter(company_.db());
    mine.Edit();
    count_up(mine);

    other_.workspace->BeginTrans();
    Recordset theirs = counter(*other_.database);
    EXPECT_EQ(theirs.number("nextdocno"), 5);
    const auto start = std::chrono::steady_clock::now();
    expect_error(ErrorKind::locked, [&] { theirs.Edit(); });
    EXPECT_FALSE(theirs.try_edit());
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500));

    company_.workspace().CommitTrans();
    theirs = counter(*other_.database);
    theirs.Edit();
    EXPECT_EQ(theirs.number("nextdocno"), 6);
    count_up(theirs);
    other_.workspace->CommitTrans();
    EXPECT_EQ(company_.list("SELECT nextdocno FROM Counter_table"), "7");
}

TEST_F(RowLock, RetryWithoutReopeningSeesTheCommittedValue) {
    company_.workspace().BeginTrans();
    Recordset mine = counter(company_.db());
    mine.Edit();
    Recordset theirs = counter(*other_.database);
    EXPECT_EQ(theirs.number("nextdocno"), 5);
    EXPECT_FALSE(theirs.try_edit());
    count_up(mine);
    company_.workspace().CommitTrans();
    ASSERT_TRUE(theirs.try_edit());
    EXPECT_EQ(theirs.number("nextdocno"), 6);
    theirs.CancelUpdate();
}

TEST_F(RowLock, EditFirstTakesTheRowThatIsFound) {
    company_.add("Counter_table", {{"company", 1}, {"doctype", "gl"}, {"nextdocno", 9}});
    company_.workspace().BeginTrans();
    Recordset mine = company_.dynaset("SELECT * FROM Counter_table");
    mine.edit_first({{"company", "1"}, {"doctype", "gl"}});
    EXPECT_FALSE(mine.NoMatch());
    EXPECT_EQ(mine.number("nextdocno"), 9);
    Recordset theirs =
        other_.database->OpenRecordset("SELECT * FROM Counter_table", store::RecordsetKind::dynaset);
    EXPECT_FALSE(theirs.try_edit_first({{"company", "1"}, {"doctype", "gl"}}));
    EXPECT_FALSE(theirs.NoMatch());
    EXPECT_EQ(theirs.text("doctype"), "gl");
    expect_error(ErrorKind::state, [&] { theirs.set("nextdocno", 1); });
    expect_error(ErrorKind::locked, [&] { theirs.edit_first({{"company", "1"}, {"doctype", "gl"}}); });
    count_up(mine);
    company_.workspace().CommitTrans();
    ASSERT_TRUE(theirs.try_edit_first({{"company", "1"}, {"doctype", "gl"}}));
    EXPECT_EQ(theirs.number("nextdocno"), 10);
    count_up(theirs);
    EXPECT_EQ(company_.list("SELECT nextdocno FROM Counter_table ORDER BY doctype"), "11 5");
}

TEST_F(RowLock, EditFirstWithoutAMatchEditsNothing) {
    for (const char* const query :
         {"SELECT * FROM Counter_table", "SELECT * FROM Counter_table ORDER BY doctype",
          "SELECT * FROM Counter_table WHERE company = 1"}) {
        Recordset rows = company_.dynaset(query);
        rows.edit_first({{"doctype", "gl"}});
        EXPECT_TRUE(rows.NoMatch());
        expect_error(ErrorKind::state, [&] { rows.set("nextdocno", 1); });
        EXPECT_FALSE(rows.try_edit_first({{"doctype", "gl"}}));
        ASSERT_TRUE(rows.try_edit_first({{"doctype", "ip"}}));
        EXPECT_FALSE(rows.NoMatch());
        rows.CancelUpdate();
        expect_error(ErrorKind::syntax, [&] { rows.edit_first({{"doctype", "i'p"}}); });
    }
    // Nothing is held by any of them.
    Recordset theirs = counter(*other_.database);
    EXPECT_TRUE(theirs.try_edit());
}

// Of several that meet the criteria the first one is meant, held or not.
TEST_F(RowLock, EditFirstSkipsNoHeldRow) {
    company_.add("Counter_table", {{"company", 1}, {"doctype", "gl"}, {"nextdocno", 9}});
    company_.workspace().BeginTrans();
    Recordset mine = counter(company_.db());
    mine.Edit();
    Recordset theirs =
        other_.database->OpenRecordset("SELECT * FROM Counter_table", store::RecordsetKind::dynaset);
    EXPECT_FALSE(theirs.try_edit_first({{"company", "1"}}));
    EXPECT_EQ(theirs.text("doctype"), "ip");
    company_.workspace().Rollback();
    ASSERT_TRUE(theirs.try_edit_first({{"company", "1"}}));
    EXPECT_EQ(theirs.text("doctype"), "ip");
}

TEST_F(RowLock, RefusedEditChangesNothing) {
    company_.workspace().BeginTrans();
    Recordset mine = counter(company_.db());
    mine.Edit();
    Recordset theirs = counter(*other_.database);
    EXPECT_FALSE(theirs.try_edit());
    expect_error(ErrorKind::state, [&] { theirs.Update(); });
    expect_error(ErrorKind::state, [&] { theirs.set("nextdocno", 1); });
    EXPECT_EQ(theirs.number("nextdocno"), 5);
    company_.workspace().Rollback();
}

TEST_F(RowLock, OutsideATransactionTheRowIsHeldUntilUpdate) {
    Recordset mine = counter(company_.db());
    mine.Edit();
    Recordset theirs = counter(*other_.database);
    EXPECT_FALSE(theirs.try_edit());
    count_up(mine);
    ASSERT_TRUE(theirs.try_edit());
    EXPECT_EQ(theirs.number("nextdocno"), 6);
}

TEST_F(RowLock, OutsideATransactionCancelMoveAndCloseLetGo) {
    Recordset theirs = counter(*other_.database);
    const auto taken_by_others = [&] {
        const bool taken = theirs.try_edit();
        if (taken) theirs.CancelUpdate();
        return taken;
    };
    Recordset mine = counter(company_.db());
    mine.Edit();
    EXPECT_FALSE(taken_by_others());
    mine.CancelUpdate();
    EXPECT_TRUE(taken_by_others());
    mine.Edit();
    EXPECT_FALSE(taken_by_others());
    mine.MoveFirst();
    EXPECT_TRUE(taken_by_others());
    mine.Edit();
    mine.Close();
    EXPECT_TRUE(taken_by_others());
    {
        Recordset dropped = counter(company_.db());
        dropped.Edit();
        EXPECT_FALSE(taken_by_others());
    }
    EXPECT_TRUE(taken_by_others());
}

TEST_F(RowLock, CancelKeepsWhatOthersOfTheSameUserWroteMeanwhile) {
    Recordset mine = counter(company_.db());
    mine.Edit();
    company_.add("Header_table", {{"docno", "n"}});
    mine.CancelUpdate();
    EXPECT_EQ(other_.database->OpenRecordset("SELECT * FROM Header_table", store::RecordsetKind::snapshot)
                  .RecordCount(),
              1);
}

TEST_F(RowLock, TwoLocksOfOneUserEndOneByOne) {
    company_.add("Counter_table", {{"company", 1}, {"doctype", "gl"}, {"nextdocno", 1}});
    Recordset first = counter(company_.db());
    Recordset second = company_.dynaset("SELECT * FROM Counter_table WHERE doctype = 'gl' AND company = 1");
    second.LockEdits(true);
    first.Edit();
    second.Edit();
    count_up(first);
    Recordset theirs = counter(*other_.database);
    EXPECT_FALSE(theirs.try_edit());
    count_up(second);
    EXPECT_TRUE(theirs.try_edit());
    EXPECT_EQ(theirs.number("nextdocno"), 6);
}

TEST_F(RowLock, PlainEditOutsideATransactionFailsAtOnceWhileAnotherUserWrites) {
    other_.workspace->BeginTrans();
    Recordset theirs = other_.database->OpenRecordset(kCounter, store::RecordsetKind::dynaset);
    theirs.Edit();
    Recordset mine = company_.dynaset(kCounter);
    expect_error(ErrorKind::locked, [&] { mine.Edit(); });
    EXPECT_FALSE(mine.try_edit());
    count_up(theirs);
    other_.workspace->CommitTrans();
    mine.Edit();
    EXPECT_EQ(mine.number("nextdocno"), 6);
}

TEST_F(RowLock, PlainEditOutsideATransactionHoldsUntilUpdateOrCancel) {
    Recordset mine = company_.dynaset(kCounter);
    Recordset theirs = other_.database->OpenRecordset(kCounter, store::RecordsetKind::dynaset);
    mine.Edit();
    EXPECT_FALSE(theirs.try_edit());
    mine.CancelUpdate();
    EXPECT_TRUE(theirs.try_edit());
    theirs.CancelUpdate();
    mine.Edit();
    EXPECT_FALSE(theirs.try_edit());
    count_up(mine);
    ASSERT_TRUE(theirs.try_edit());
    EXPECT_EQ(theirs.number("nextdocno"), 6);
}

TEST_F(RowLock, PlainEditInsideATransactionTakesItsPlaceAtOnce) {
    company_.workspace().BeginTrans();
    Recordset mine = company_.dynaset(kCounter);
    mine.Edit();
    EXPECT_FALSE(counter(*other_.database).try_edit());
    expect_error(ErrorKind::locked,
                 [&] { other_.database->Execute("UPDATE Counter_table SET nextdocno = 0"); });
    company_.workspace().CommitTrans();
    EXPECT_TRUE(counter(*other_.database).try_edit());
}

TEST_F(RowLock, RollbackAndCommitLetGo) {
    for (const bool commit : {true, false}) {
        company_.workspace().BeginTrans();
        Recordset mine = counter(company_.db());
        mine.Edit();
        EXPECT_FALSE(counter(*other_.database).try_edit());
        if (commit)
            company_.workspace().CommitTrans();
        else
            company_.workspace().Rollback();
        EXPECT_TRUE(counter(*other_.database).try_edit());
        mine.CancelUpdate();
    }
}

TEST_F(RowLock, LockTakenBeforeBeginTransBelongsToTheTransaction) {
    Recordset mine = counter(company_.db());
    mine.Edit();
    company_.workspace().BeginTrans();
    count_up(mine);
    EXPECT_FALSE(counter(*other_.database).try_edit());
    company_.workspace().Rollback();
    EXPECT_TRUE(counter(*other_.database).try_edit());
    EXPECT_EQ(company_.list("SELECT nextdocno FROM Counter_table"), "5");
}

TEST_F(RowLock, RowThatWasDeletedMeanwhileIsRefusedAndNothingIsHeld) {
    Recordset theirs = counter(*other_.database);
    company_.db().Execute("DELETE * FROM Counter_table");
    expect_error(ErrorKind::state, [&] { theirs.Edit(); });
    EXPECT_EQ(company_.db().Execute("DELETE * FROM Header_table"), 0);
}

TEST_F(RowLock, ManyUsersInTurnLoseNoNumber) {
    for (int round = 0; round < 50; ++round) {
        auto& database = round % 2 == 0 ? company_.db() : *other_.database;
        auto& workspace = round % 2 == 0 ? company_.workspace() : *other_.workspace;
        workspace.BeginTrans();
        Recordset rows = counter(database);
        rows.Edit();
        count_up(rows);
        workspace.CommitTrans();
    }
    EXPECT_EQ(company_.list("SELECT nextdocno FROM Counter_table"), "55");
}

}  // namespace
}  // namespace brimley
