#include <gtest/gtest.h>

#include "store/small_company.h"

namespace brimley {
namespace {

using store::ErrorKind;
using store::Recordset;
using testing::first_column;
using testing::SmallCompany;

class Keyset : public ::testing::Test {
  protected:
    void SetUp() override {
        for (const char* const docno : {"b", "a", "c"})
            company_.add("Header_table", {{"docno", docno}, {"company", "1"}, {"amount", 10}});
    }

    SmallCompany company_;
};

TEST_F(Keyset, RowsComeInInsertionOrderWithoutOrderBy) {
    Recordset rows = company_.dynaset("SELECT * FROM Header_table");
    EXPECT_EQ(first_column(rows), "- - -");
    EXPECT_EQ(company_.list("SELECT docno FROM Header_table"), "b a c");
}

TEST_F(Keyset, AddedRowsStandAtTheEndEvenOutsideTheWhere) {
    Recordset rows = company_.dynaset("SELECT docno FROM Header_table WHERE docno <> 'x' ORDER BY docno");
    rows.AddNew();
    rows.set("docno", "x");
    rows.Update();
    EXPECT_EQ(rows.text("docno"), "a");
    EXPECT_EQ(first_column(rows), "a b c x");
    EXPECT_EQ(rows.RecordCount(), 4);
}

TEST_F(Keyset, EmptyIdiomHoldsTheRowsAddedToIt) {
    Recordset rows = company_.dynaset("SELECT * FROM Header_table WHERE 1 = 2");
    EXPECT_TRUE(rows.at_eof());
    rows.AddNew();
    rows.set("docno", "n");
    EXPECT_EQ(rows.text("DOCNO"), "n");
    EXPECT_FALSE(rows.flag("paid"));
    EXPECT_TRUE(rows.field("amount").is_null());
    rows.Update();
    rows.Bookmark(rows.LastModified());
    EXPECT_EQ(rows.text("docno"), "n");
}

TEST_F(Keyset, FindFirstOnWholeTableFindsAndEdits) {
    Recordset rows = company_.dynaset("SELECT * FROM Header_table");
    rows.FindFirst("[docno] = 'c' and [company] = 1");
    ASSERT_FALSE(rows.NoMatch());
    rows.Edit();
    rows.set("amount", 12.5);
    rows.Update();
    EXPECT_EQ(rows.number("amount"), 12.5);
    EXPECT_EQ(company_.list("SELECT amount FROM Header_table"), "10 10 12.5");
    rows.FindFirst("[docno] = 'nowhere'");
    EXPECT_TRUE(rows.NoMatch());
    EXPECT_EQ(rows.text("docno"), "c");
}

TEST_F(Keyset, SecondUserIsRefusedAtOnceUntilCommit) {
    auto other = company_.second_user();
    company_.workspace().BeginTrans();
    Recordset rows = company_.dynaset("SELECT * FROM Header_table WHERE docno = 'a'");
    rows.LockEdits(true);
    rows.Edit();
    rows.set("amount", 11);
    rows.Update();
    Recordset theirs = other.database->OpenRecordset("SELECT * FROM Header_table WHERE docno = 'a'",
                                                     store::RecordsetKind::dynaset);
    theirs.LockEdits(true);
    EXPECT_FALSE(theirs.try_edit());
    company_.workspace().CommitTrans();
    ASSERT_TRUE(theirs.try_edit());
    EXPECT_EQ(theirs.number("amount"), 11);
    theirs.CancelUpdate();
}

TEST_F(Keyset, RollbackRestores) {
    company_.workspace().BeginTrans();
    EXPECT_EQ(company_.db().Execute("DELETE * FROM Header_table WHERE docno = 'a'"), 1);
    EXPECT_EQ(company_.db().Execute("UPDATE Header_table SET amount = 3, paid = TRUE"), 2);
    company_.workspace().Rollback();
    EXPECT_EQ(company_.list("SELECT amount FROM Header_table WHERE paid = False"), "10 10 10");
}

}  // namespace
}  // namespace brimley
