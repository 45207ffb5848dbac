// What is prepared, how often, and when rows are read.
#include <gtest/gtest.h>

#include "kernel/store/connection.h"
#include "store/small_company.h"
#include "support/faulty_engine.h"

namespace brimley {
namespace {

using store::Recordset;
using store::RecordsetKind;
using testing::Faults;
using testing::SmallCompany;

class Plan : public ::testing::Test {
  protected:
    void SetUp() override {
        company_.workspace().BeginTrans();
        for (int i = 0; i < 300; ++i)
            company_.add("Header_table",
                         {{"docno", "d" + std::to_string(i)}, {"company", "1"}, {"amount", i}});
        company_.workspace().CommitTrans();
    }
    Recordset open(const std::string& query, RecordsetKind kind = RecordsetKind::dynaset) {
        return database_.OpenRecordset(query, kind);
    }
    std::int64_t prepared() const { return connection_->prepared_count(); }
    // Calls of the engine that the action needs.
    template <class Action>
    int calls(const Action& action) {
        faults_->arm(0, false);
        action();
        return faults_->calls;
    }

    SmallCompany company_;
    std::shared_ptr<Faults> faults_ = std::make_shared<Faults>();
    std::shared_ptr<store::Connection> connection_ =
        std::make_shared<store::Connection>(testing::faulty(faults_)(testing::engine_of(company_.path())),
                                            testing::small_catalog(), company_.path());
    store::Database database_{connection_};
};

TEST_F(Plan, TextsOfOneShapeArePreparedOnce) {
    for (int i = 0; i < 50; ++i) {
        Recordset rows =
            open("SELECT * FROM Header_table WHERE docno = 'd" + std::to_string(i) + "' AND company = 1");
        EXPECT_EQ(rows.number("amount"), i);
    }
    EXPECT_EQ(prepared(), 1);
    for (int i = 0; i < 50; ++i)
        database_.Execute("UPDATE Header_table SET paid = TRUE WHERE amount = " + std::to_string(i));
    EXPECT_EQ(prepared(), 2);
}

TEST_F(Plan, TextsThatMeanTheSameSqlSharePreparation) {
    (void)open("SELECT * FROM Header_table WHERE docno = 'a'");
    (void)open("select  *  from [header_table] where [DOCNO]='a'");
    (void)open("SELECT * FROM Header_table WHERE docno = 'a'", RecordsetKind::snapshot);
    // On a server a dynaset asks for the first rows only, and a snapshot for all of them.
    EXPECT_EQ(prepared(), testing::tests_run_on_server() ? 2 : 1);
}

TEST_F(Plan, LiteralsOfTwoKindsInOnePlaceKeepTheirKinds) {
    EXPECT_EQ(open("SELECT 'a' AS x FROM Header_table WHERE docno = 'd1'").field("x"), store::Value("a"));
    EXPECT_EQ(open("SELECT 5 AS x FROM Header_table WHERE docno = 'd1'").field("x"), store::Value(5));
}

TEST_F(Plan, LiteralOfAnotherKindIsAnotherShape) {
    EXPECT_TRUE(open("SELECT * FROM Header_table WHERE docno = 'd1' AND company = '01'").at_eof());
    EXPECT_FALSE(open("SELECT * FROM Header_table WHERE docno = 'd1' AND company = 1").at_eof());
    EXPECT_EQ(prepared(), 2);
}

TEST_F(Plan, FindsOfOneShapeArePreparedOnce) {
    Recordset rows = open("SELECT * FROM Header_table");
    for (int i = 0; i < 50; ++i)
        rows.FindFirst("[docno] = 'd" + std::to_string(i) + "'");
    Recordset again = open("SELECT * FROM Header_table");
    again.FindFirst("[docno] = 'x'");
    EXPECT_EQ(prepared(), 1);
}

TEST_F(Plan, UpdatesOfEqualFieldsArePreparedOnce) {
    Recordset rows = open("SELECT * FROM Header_table WHERE amount < 50");
    const auto before = prepared();
    for (; !rows.at_eof(); rows.MoveNext()) {
        rows.Edit();
        rows.set("amount", rows.number("amount") + 1000);
        rows.set("vendor_no", "v");
        rows.Update();
    }
    // Reading a row by its key, the UPDATE, and on a server reading a row while it is taken.
    EXPECT_EQ(prepared(), before + (testing::tests_run_on_server() ? 3 : 2));
    EXPECT_EQ(company_.count("Header_table WHERE vendor_no = 'v' AND amount >= 1000"), 50);
}

TEST_F(Plan, CacheForgetsNoShapeInUse) {
    Recordset kept = open("SELECT docno AS kept FROM Header_table WHERE docno = 'd7'");
    for (int i = 0; i < 2000; ++i)
        (void)open("SELECT docno AS name" + std::to_string(i) + " FROM Header_table WHERE 1 = 2");
    kept.MoveFirst();
    EXPECT_EQ(kept.text("kept"), "d7");
    EXPECT_EQ(open("SELECT docno AS name1 FROM Header_table").text("NAME1"), "d0");
}

TEST_F(Plan, WholeTableIsNotReadUntilItIsWalked) {
    EXPECT_EQ(calls([&] { (void)open("SELECT * FROM Header_table"); }), 0);
    EXPECT_EQ(calls([&] { (void)open("SELECT * FROM Header_table WHERE 1 = 2"); }), 0);
    Recordset rows = open("SELECT * FROM Header_table");
    rows.FindFirst("docno = 'd1'");
    EXPECT_EQ(calls([&] { rows.FindFirst("docno = 'd250'"); }), 1);
    EXPECT_EQ(calls([&] { EXPECT_EQ(rows.number("amount"), 250); }), 0);
}

TEST_F(Plan, OneRowIsOpenedInOneCall) {
    (void)open("SELECT * FROM Header_table WHERE docno = 'd1'");
    EXPECT_EQ(calls([&] {
                  Recordset rows = open("SELECT * FROM Header_table WHERE docno = 'd2'");
                  EXPECT_FALSE(rows.at_eof());
                  EXPECT_EQ(rows.number("amount"), 2);
                  EXPECT_EQ(rows.RecordCount(), 1);
              }),
              1);
}

// A file has one writer, who holds every row. On a server a row is read once more while it is taken.
TEST_F(Plan, EditInATransactionReadsNothingTwice) {
    const int taking = testing::tests_run_on_server() ? 1 : 0;
    store::Workspace workspace(connection_);
    workspace.BeginTrans();
    database_.Execute("UPDATE Header_table SET paid = TRUE WHERE docno = 'd1'");
    Recordset rows = open("SELECT * FROM Header_table WHERE docno = 'd2'");
    EXPECT_EQ(calls([&] { rows.Edit(); }), taking * 2);  // prepared for the first time
    rows.set("amount", 7);
    rows.Update();
    EXPECT_EQ(calls([&] { rows.Edit(); }), 0);
    rows.CancelUpdate();
    database_.Execute("UPDATE Header_table SET paid = TRUE WHERE docno = 'd1'");
    EXPECT_EQ(calls([&] { rows.Edit(); }), taking + (1 - taking) * 2);  // prepared for the first time
    workspace.Rollback();
}

TEST_F(Plan, RowIsFoundAndTakenInOneCall) {
    store::Workspace workspace(connection_);
    workspace.BeginTrans();
    Recordset rows = open("SELECT * FROM Header_table");
    // The first one begins the transaction, the second one is prepared.
    rows.edit_first({{"docno", "d1"}});
    rows.edit_first({{"docno", "d2"}});
    EXPECT_EQ(calls([&] { rows.edit_first({{"docno", "d250"}}); }), 1);
    EXPECT_EQ(rows.number("amount"), 250);
    workspace.Rollback();
}

TEST_F(Plan, OwnNewRowNeedNotBeTaken) {
    store::Workspace workspace(connection_);
    workspace.BeginTrans();
    Recordset rows = open("SELECT * FROM Header_table WHERE 1 = 2");
    rows.AddNew();
    rows.set("docno", "new");
    rows.Update();
    rows.Bookmark(rows.LastModified());
    EXPECT_EQ(calls([&] { rows.Edit(); }), 0);
    rows.set("amount", 3);
    rows.Update();
    workspace.CommitTrans();
    EXPECT_EQ(company_.list("SELECT amount FROM Header_table WHERE docno = 'new'"), "3");
}

TEST_F(Plan, OwnNewRowNeedNotBeRead) {
    store::Workspace workspace(connection_);
    workspace.BeginTrans();
    Recordset rows = open("SELECT * FROM Line_table WHERE 1 = 2");
    rows.AddNew();
    rows.set("docno", "new");
    rows.set("Currency", "");
    rows.set("lineno", "12");
    rows.set("due_date", store::Value(*store::DateTime::from_ymd(2026, 3, 16)));
    rows.set("created", store::Value(*store::DateTime::from_ymd(2026, 3, 17)));
    rows.set("open_amount", 0.1 + 0.2);
    rows.set("pay_item", store::Value());
    rows.Update();
    EXPECT_EQ(calls([&] {
                  rows.Bookmark(rows.LastModified());
                  rows.Edit();
              }),
              0);
    rows.CancelUpdate();
    const Recordset stored = open("SELECT * FROM Line_table WHERE docno = 'new'", RecordsetKind::snapshot);
    for (int column = 0; column < stored.column_count(); ++column)
        EXPECT_EQ(rows.column(column), stored.column(column)) << stored.column_name(column);
    workspace.CommitTrans();
}

TEST_F(Plan, OwnNewRowIsReadWhenItMayHaveBeenWritten) {
    store::Workspace workspace(connection_);
    const auto add = [&](Recordset& rows) {
        rows.AddNew();
        rows.set("docno", "new");
        rows.Update();
    };
    const auto shown = [](Recordset& rows) {
        rows.Bookmark(rows.LastModified());
        return rows.text("docno");
    };
    for (const bool by_statement : {true, false}) {
        workspace.BeginTrans();
        Recordset rows = open("SELECT * FROM Header_table WHERE 1 = 2");
        add(rows);
        if (by_statement) {
            database_.Execute("UPDATE Header_table SET docno = 'other' WHERE docno = 'new'");
        } else {
            Recordset same = open("SELECT docno FROM Header_table WHERE docno = 'new'");
            same.Edit();
            same.set("docno", "other");
            same.Update();
        }
        EXPECT_EQ(shown(rows), "other");
        workspace.Rollback();
    }
    Recordset rows = open("SELECT * FROM Header_table WHERE 1 = 2");
    workspace.BeginTrans();
    add(rows);
    workspace.CommitTrans();
    company_.db().Execute("UPDATE Header_table SET docno = 'other' WHERE docno = 'new'");
    EXPECT_EQ(shown(rows), "other");
    workspace.BeginTrans();
    database_.Execute("UPDATE Counter_table SET nextdocno = 1");
    EXPECT_EQ(shown(rows), "other");
    workspace.Rollback();
}

TEST_F(Plan, OwnNewRowIsNotTakenForAnother) {
    store::Workspace workspace(connection_);
    workspace.BeginTrans();
    Recordset rows = open("SELECT * FROM Header_table WHERE 1 = 2");
    const auto add = [&](const char* docno) {
        rows.AddNew();
        rows.set("docno", docno);
        rows.Update();
        return rows.LastModified();
    };
    const auto first = add("first");
    const auto second = add("second");
    rows.Bookmark(first);
    EXPECT_EQ(rows.text("docno"), "first");
    rows.Edit();
    rows.set("amount", 3);
    rows.CancelUpdate();
    rows.Bookmark(second);
    EXPECT_EQ(rows.text("docno"), "second");
    EXPECT_EQ(rows.text("amount"), "");
    const auto third = add("third");
    rows.AddNew();
    rows.set("docno", "dropped");
    rows.CancelUpdate();
    rows.Bookmark(third);
    EXPECT_EQ(rows.text("docno"), "third");
    workspace.Rollback();
}

TEST_F(Plan, UpdateWithoutAChangeRunsNoStatement) {
    store::Workspace workspace(connection_);
    workspace.BeginTrans();
    Recordset rows = open("SELECT * FROM Header_table WHERE docno = 'd2'");
    rows.Edit();
    rows.set("amount", 2);
    rows.set("docno", "d2");
    EXPECT_EQ(calls([&] { rows.Update(); }), 0);
}

TEST_F(Plan, TransactionWithoutAWriteReachesTheEngineNotAtAll) {
    store::Workspace workspace(connection_);
    EXPECT_EQ(calls([&] {
                  workspace.BeginTrans();
                  workspace.CommitTrans();
                  workspace.BeginTrans();
                  workspace.Rollback();
              }),
              0);
}

}  // namespace
}  // namespace brimley
