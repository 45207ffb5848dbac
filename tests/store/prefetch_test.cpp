// Rows told ahead: what is answered early must be what a late question would have found.
#include <gtest/gtest.h>

#include "store/small_company.h"
#include "support/expect_error.h"

namespace brimley {
namespace {

using store::ErrorKind;
using store::Recordset;
using testing::expect_error;
using testing::SmallCompany;

class Prefetch : public ::testing::Test {
  protected:
    void SetUp() override {
        for (const char* const doctype : {"first", "ip", "gl", "ck"})
            company_.add("Counter_table", {{"company", 1}, {"doctype", doctype}, {"nextdocno", 5}});
    }
    // A transaction that holds a row already: before, nothing is asked ahead.
    Recordset begin() {
        company_.workspace().BeginTrans();
        Recordset rows = company_.dynaset("SELECT * FROM Counter_table");
        rows.edit_first({{"doctype", "first"}});
        rows.CancelUpdate();
        return rows;
    }
    Recordset theirs() {
        return other_.database->OpenRecordset("SELECT * FROM Counter_table", store::RecordsetKind::dynaset);
    }
    static void set_first(Recordset& rows, std::string_view doctype, int nextdocno) {
        rows.edit_first({{"doctype", doctype}});
        rows.set("nextdocno", nextdocno);
        rows.Update();
    }
    std::string numbers() { return company_.list("SELECT nextdocno FROM Counter_table"); }

    SmallCompany company_;
    store::OpenCompany other_ = company_.second_user();
};

TEST_F(Prefetch, RowsAreFoundAndTakenInWhateverOrderTheyAreWanted) {
    Recordset mine = begin();
    Recordset read = company_.dynaset("SELECT nextdocno FROM Counter_table");
    mine.prefetch_edit_first({{"doctype", "ip"}});
    mine.prefetch_edit_first({{"doctype", "gl"}});
    read.prefetch_first({{"doctype", "ck"}});
    read.FindFirst({{"doctype", "ck"}});
    EXPECT_EQ(read.number("nextdocno"), 5);
    set_first(mine, "gl", 7);
    EXPECT_EQ(mine.text("doctype"), "gl");
    set_first(mine, "ip", 6);
    EXPECT_EQ(mine.text("doctype"), "ip");
    company_.workspace().CommitTrans();
    EXPECT_EQ(numbers(), "5 6 7 5");
}

TEST_F(Prefetch, ChangesNeitherTheCurrentRowNorTheRowBeingEdited) {
    Recordset mine = begin();
    mine.edit_first({{"doctype", "ip"}});
    mine.set("nextdocno", 6);
    mine.prefetch_edit_first({{"doctype", "gl"}});
    mine.prefetch_first({{"doctype", "ck"}});
    EXPECT_EQ(mine.text("doctype"), "ip");
    EXPECT_EQ(mine.number("nextdocno"), 6);
    mine.Update();
    company_.workspace().CommitTrans();
    EXPECT_EQ(numbers(), "5 6 5 5");
}

TEST_F(Prefetch, WhatIsWrittenInBetweenIsSeen) {
    Recordset mine = begin();
    Recordset also_mine = company_.dynaset("SELECT nextdocno FROM Counter_table");
    mine.prefetch_edit_first({{"doctype", "ip"}});
    mine.prefetch_first({{"doctype", "gl"}});
    set_first(also_mine, "ip", 8);
    set_first(also_mine, "gl", 9);
    mine.edit_first({{"doctype", "ip"}});
    EXPECT_EQ(mine.number("nextdocno"), 8);
    mine.FindFirst({{"doctype", "gl"}});
    EXPECT_EQ(mine.number("nextdocno"), 9);
    company_.workspace().Rollback();
}

TEST_F(Prefetch, RowToldTwiceIsSeenAsItIsEachTime) {
    Recordset mine = begin();
    mine.prefetch_edit_first({{"doctype", "ip"}});
    set_first(mine, "ip", 6);
    mine.prefetch_edit_first({{"doctype", "ip"}});
    mine.edit_first({{"doctype", "ip"}});
    EXPECT_EQ(mine.number("nextdocno"), 6);
    mine.set("nextdocno", 7);
    mine.Update();
    mine.edit_first({{"doctype", "ip"}});
    EXPECT_EQ(mine.number("nextdocno"), 7);
    company_.workspace().Rollback();
}

TEST_F(Prefetch, WhatAStatementChangesInBetweenIsSeen) {
    Recordset mine = begin();
    mine.prefetch_edit_first({{"doctype", "ip"}});
    mine.prefetch_first({{"doctype", "gl"}});
    company_.db().Execute("UPDATE Counter_table SET nextdocno = 11 WHERE company = 1");
    mine.edit_first({{"doctype", "ip"}});
    EXPECT_EQ(mine.number("nextdocno"), 11);
    mine.FindFirst({{"doctype", "gl"}});
    EXPECT_EQ(mine.number("nextdocno"), 11);
    company_.workspace().Rollback();
}

TEST_F(Prefetch, RowThatIsAddedInBetweenIsTaken) {
    Recordset mine = begin();
    mine.prefetch_edit_first({{"doctype", "pp"}});
    company_.add("Counter_table", {{"company", 1}, {"doctype", "pp"}, {"nextdocno", 3}});
    mine.edit_first({{"doctype", "pp"}});
    ASSERT_FALSE(mine.NoMatch());
    EXPECT_EQ(mine.number("nextdocno"), 3);
    company_.workspace().Rollback();
}

TEST_F(Prefetch, RowThatARuleRefusesInBetweenCostsNothing) {
    Recordset mine = begin();
    mine.prefetch_edit_first({{"doctype", "ip"}});
    mine.prefetch_first({{"doctype", "gl"}});
    Recordset added = company_.dynaset("SELECT * FROM Counter_table WHERE 1 = 2");
    added.AddNew();
    added.set("company", 1);
    added.set("doctype", "ip");
    expect_error(ErrorKind::constraint, [&] { added.Update(); });
    mine.FindFirst({{"doctype", "gl"}});
    EXPECT_EQ(mine.number("nextdocno"), 5);
    set_first(mine, "ip", 6);
    company_.workspace().CommitTrans();
    EXPECT_EQ(numbers(), "5 6 5 5");
}

TEST_F(Prefetch, MoreThanGoOnOneJourneyAreAllAnswered) {
    Recordset mine = begin();
    for (int i = 0; i < 700; ++i) {
        mine.prefetch_edit_first({{"doctype", "ip"}});
        mine.prefetch_first({{"doctype", "gl"}});
    }
    for (int i = 0; i < 3; ++i) {
        set_first(mine, "ip", 6 + i);
        mine.FindFirst({{"doctype", "gl"}});
        EXPECT_EQ(mine.text("doctype"), "gl");
    }
    company_.workspace().CommitTrans();
    EXPECT_EQ(numbers(), "5 8 5 5");
}

// A file holds such a text; a server tells so when it is asked for the row.
TEST_F(Prefetch, ValueThatNoServerHoldsIsToldByTheCallItIsFor) {
    Recordset mine = begin();
    mine.prefetch_edit_first({{"doctype", "\xff"}});
    mine.prefetch_edit_first({{"doctype", "ip"}});
    if (testing::tests_run_on_server())
        expect_error(ErrorKind::conversion, [&] { mine.edit_first({{"doctype", "\xff"}}); });
    set_first(mine, "ip", 6);
    company_.workspace().CommitTrans();
    EXPECT_EQ(numbers(), "5 6 5 5");
}

TEST_F(Prefetch, RowThatIsNotThereIsNoMatch) {
    Recordset mine = begin();
    mine.prefetch_first({{"doctype", "xx"}});
    mine.prefetch_edit_first({{"doctype", "xx"}});
    mine.FindFirst({{"doctype", "xx"}});
    EXPECT_TRUE(mine.NoMatch());
    mine.edit_first({{"doctype", "xx"}});
    EXPECT_TRUE(mine.NoMatch());
    company_.workspace().Rollback();
}

TEST_F(Prefetch, AnswersEndWithTheirTransaction) {
    Recordset mine = begin();
    mine.prefetch_edit_first({{"doctype", "ip"}});
    mine.prefetch_first({{"doctype", "gl"}});
    company_.workspace().Rollback();
    Recordset rows = theirs();
    set_first(rows, "ip", 6);
    set_first(rows, "gl", 7);
    mine = begin();
    mine.edit_first({{"doctype", "ip"}});
    EXPECT_EQ(mine.number("nextdocno"), 6);
    mine.FindFirst({{"doctype", "gl"}});
    EXPECT_EQ(mine.number("nextdocno"), 7);
    company_.workspace().Rollback();
}

// In a file whoever writes holds every row: there nobody is refused by one row alone.
TEST_F(Prefetch, OnAServerTheRowIsHeldFromThenOn) {
    if (!testing::tests_run_on_server()) return;
    Recordset mine = begin();
    mine.prefetch_edit_first({{"doctype", "ip"}});
    mine.prefetch_edit_first({{"doctype", "gl"}});
    mine.edit_first({{"doctype", "gl"}});
    Recordset rows = theirs();
    expect_error(ErrorKind::locked, [&] { rows.edit_first({{"doctype", "ip"}}); });
    company_.workspace().Rollback();
    set_first(rows, "ip", 6);
    EXPECT_EQ(numbers(), "5 6 5 5");
}

TEST_F(Prefetch, OnAServerARowHeldByAnotherIsRefusedUntilItIsFree) {
    if (!testing::tests_run_on_server()) return;
    other_.workspace->BeginTrans();
    Recordset rows = theirs();
    set_first(rows, "ip", 6);
    Recordset mine = begin();
    mine.prefetch_edit_first({{"doctype", "ip"}});
    EXPECT_FALSE(mine.try_edit_first({{"doctype", "ip"}}));
    EXPECT_FALSE(mine.NoMatch());
    mine.prefetch_edit_first({{"doctype", "ip"}});
    mine.edit_first({{"doctype", "gl"}});
    other_.workspace->CommitTrans();
    mine.edit_first({{"doctype", "ip"}});
    EXPECT_EQ(mine.number("nextdocno"), 6);
    company_.workspace().Rollback();
}

TEST_F(Prefetch, OnAServerRowsToldTogetherAreHeldAllOrNone) {
    if (!testing::tests_run_on_server()) return;
    other_.workspace->BeginTrans();
    Recordset rows = theirs();
    set_first(rows, "ip", 6);
    Recordset mine = begin();
    for (const char* const doctype : {"gl", "ip", "ck"})
        mine.prefetch_edit_first({{"doctype", doctype}});
    EXPECT_FALSE(mine.try_edit_first({{"doctype", "ip"}}));
    set_first(rows, "gl", 7);
    set_first(rows, "ck", 8);
    other_.workspace->CommitTrans();
    mine.edit_first({{"doctype", "ck"}});
    EXPECT_EQ(mine.number("nextdocno"), 8);
    company_.workspace().Rollback();
}

TEST_F(Prefetch, OnAServerWhatWasReadAheadDoesNotUndoWhatWasTakenSince) {
    if (!testing::tests_run_on_server()) return;
    Recordset mine = begin();
    mine.prefetch_first({{"doctype", "gl"}});
    mine.FindFirst({{"doctype", "ip"}});  // by now both are answered
    Recordset rows = theirs();
    set_first(rows, "gl", 7);
    mine.edit_first({{"doctype", "gl"}});
    EXPECT_EQ(mine.number("nextdocno"), 7);
    mine.CancelUpdate();
    mine.FindFirst({{"doctype", "gl"}});
    EXPECT_EQ(mine.number("nextdocno"), 7);
    company_.workspace().Rollback();
}

TEST_F(Prefetch, OnAServerTheRowStaysHeldUntilTheCommitWhateverIsRefusedMeanwhile) {
    if (!testing::tests_run_on_server()) return;
    other_.workspace->BeginTrans();
    Recordset rows = theirs();
    set_first(rows, "ck", 8);
    Recordset mine = begin();
    const auto expect_held = [&](const char* doctype) {
        EXPECT_FALSE(rows.try_edit_first({{"doctype", doctype}})) << doctype;
    };
    mine.prefetch_edit_first({{"doctype", "ip"}});
    mine.edit_first({{"doctype", "ip"}});
    // What was written or taken since a prefetch that is refused must not go with it.
    mine.prefetch_edit_first({{"doctype", "ck"}});
    mine.set("nextdocno", 6);
    mine.Update();
    mine.prefetch_edit_first({{"doctype", "ck"}});
    mine.edit_first({{"doctype", "gl"}});
    EXPECT_FALSE(mine.try_edit_first({{"doctype", "ck"}}));
    expect_held("ip");
    expect_held("gl");
    other_.workspace->Rollback();
    expect_held("ip");
    company_.workspace().CommitTrans();
    EXPECT_TRUE(rows.try_edit_first({{"doctype", "ip"}}));
    EXPECT_EQ(rows.number("nextdocno"), 6);
}

TEST_F(Prefetch, OnAServerTheRowThatWasReadAheadIsTakenAsItStandsWhenItIsEdited) {
    if (!testing::tests_run_on_server()) return;
    Recordset mine = begin();
    mine.prefetch_first({{"doctype", "gl"}});
    mine.FindFirst({{"doctype", "gl"}});
    Recordset rows = theirs();
    set_first(rows, "gl", 7);
    mine.Edit();
    EXPECT_EQ(mine.number("nextdocno"), 7);
    EXPECT_FALSE(rows.try_edit_first({{"doctype", "gl"}}));
    company_.workspace().Rollback();
}

TEST_F(Prefetch, OutsideATransactionNothingIsHeld) {
    Recordset mine = company_.dynaset("SELECT * FROM Counter_table");
    mine.prefetch_edit_first({{"doctype", "ip"}});
    Recordset rows = theirs();
    set_first(rows, "ip", 6);
    mine.edit_first({{"doctype", "ip"}});
    EXPECT_EQ(mine.number("nextdocno"), 6);
    mine.CancelUpdate();
}

}  // namespace
}  // namespace brimley
