// Changeable recordsets: which rows they hold, where they stand, what is written.
#include <gtest/gtest.h>

#include "store/small_company.h"
#include "support/expect_error.h"

namespace brimley {
namespace {

using store::ErrorKind;
using store::Recordset;
using testing::expect_error;
using testing::first_column;
using testing::SmallCompany;

class Keyset : public ::testing::Test {
  protected:
    void SetUp() override {
        for (const char* const docno : {"b", "a", "c"})
            company_.add("Header_table", {{"docno", docno}, {"company", "1"}, {"amount", 10}});
    }

    Recordset dynaset(const std::string& query) { return company_.dynaset(query); }
    static void add(Recordset& rows, const std::string& docno) {
        rows.AddNew();
        rows.set("docno", docno);
        rows.Update();
    }

    SmallCompany company_;
};

TEST_F(Keyset, FirstRowIsCurrentAfterOpening) {
    EXPECT_EQ(dynaset("SELECT docno FROM Header_table").text("docno"), "b");
    EXPECT_EQ(dynaset("SELECT docno FROM Header_table ORDER BY docno").text("docno"), "a");
    EXPECT_EQ(dynaset("SELECT docno FROM Header_table WHERE amount = 10").text("docno"), "b");
}

TEST_F(Keyset, EmptyRecordsetIsAtItsEnd) {
    for (const char* const where : {"WHERE 1 = 2", "WHERE docno = 'nowhere'"}) {
        Recordset rows = dynaset("SELECT * FROM Header_table " + std::string(where));
        EXPECT_TRUE(rows.at_eof());
        EXPECT_EQ(rows.RecordCount(), 0);
        rows.MoveFirst();
        rows.MoveLast();
        rows.MoveNext();
        EXPECT_TRUE(rows.at_eof());
        EXPECT_EQ(rows.Bookmark().position, -1);
        expect_error(ErrorKind::state, [&] { (void)rows.field("docno"); });
        expect_error(ErrorKind::state, [&] { rows.Edit(); });
    }
    company_.db().Execute("DELETE * FROM Header_table");
    EXPECT_TRUE(dynaset("SELECT * FROM Header_table").at_eof());
}

TEST_F(Keyset, WalksBothWaysToItsEnds) {
    Recordset rows = dynaset("SELECT docno FROM Header_table");
    EXPECT_EQ(rows.RecordCount(), 3);
    EXPECT_EQ(rows.text("docno"), "b");
    rows.MoveLast();
    EXPECT_EQ(rows.text("docno"), "c");
    rows.MoveNext();
    EXPECT_TRUE(rows.at_eof());
    expect_error(ErrorKind::state, [&] { (void)rows.field("docno"); });
    rows.MoveNext();
    EXPECT_TRUE(rows.at_eof());
    rows.MoveFirst();
    EXPECT_EQ(first_column(rows), "b a c");
}

TEST_F(Keyset, MembershipIsFixedAtOpeningThoughFieldsAreFresh) {
    Recordset rows = dynaset("SELECT docno FROM Header_table WHERE amount = 10 ORDER BY docno DESC");
    company_.db().Execute("UPDATE Header_table SET docno = 'z' WHERE docno = 'a'");
    company_.db().Execute("UPDATE Header_table SET amount = 0 WHERE docno = 'b'");
    company_.add("Header_table", {{"docno", "n"}, {"amount", 10}});
    EXPECT_EQ(first_column(rows), "c b z");
}

TEST_F(Keyset, DeletedRowsAreSkipped) {
    Recordset rows = dynaset("SELECT docno FROM Header_table WHERE amount = 10");
    company_.db().Execute("DELETE * FROM Header_table WHERE docno = 'a'");
    EXPECT_EQ(first_column(rows), "b c");
    company_.db().Execute("DELETE * FROM Header_table WHERE docno = 'c'");
    rows.MoveFirst();
    rows.MoveLast();
    EXPECT_EQ(rows.text("docno"), "b");
    rows.MoveNext();
    EXPECT_TRUE(rows.at_eof());
}

TEST_F(Keyset, WalkGoesOnBehindARowThatIsDeletedUnderIt) {
    for (const char* const order : {"", " ORDER BY docno"}) {
        Recordset rows = dynaset("SELECT docno FROM Header_table" + std::string(order));
        company_.workspace().BeginTrans();
        rows.FindFirst("docno = 'a'");
        company_.db().Execute("DELETE * FROM Header_table WHERE docno = 'a'");
        rows.MoveNext();
        EXPECT_TRUE(rows.at_eof() || rows.text("docno") == "c");
        company_.workspace().Rollback();
    }
}

TEST_F(Keyset, WalkOfAnOrderedTableGoesOnWhereTheChangedRowStood) {
    Recordset rows = dynaset("SELECT * FROM Header_table ORDER BY docno");
    EXPECT_EQ(rows.text("docno"), "a");
    rows.Edit();
    rows.set("docno", "z");
    rows.Update();
    rows.MoveNext();
    EXPECT_EQ(rows.text("docno"), "b");
    rows.MoveFirst();
    EXPECT_EQ(rows.text("docno"), "z");
    EXPECT_EQ(rows.RecordCount(), 3);
    EXPECT_EQ(company_.list("SELECT docno FROM Header_table ORDER BY docno"), "b c z");
}

TEST_F(Keyset, EveryRowOfAnOrderedTableIsChangedOnceInOneWalk) {
    Recordset rows = dynaset("SELECT * FROM Header_table ORDER BY amount, docno");
    for (; !rows.at_eof(); rows.MoveNext()) {
        rows.Edit();
        rows.set("amount", rows.number("amount") + 1);
        rows.Update();
    }
    EXPECT_EQ(company_.list("SELECT amount FROM Header_table"), "11 11 11");
}

TEST_F(Keyset, AddedRowsStandAtTheEndEvenOutsideTheWhere) {
    Recordset rows = dynaset("SELECT docno FROM Header_table WHERE docno <> 'x' ORDER BY docno");
    add(rows, "x");
    add(rows, "0");
    EXPECT_EQ(rows.text("docno"), "a");
    EXPECT_EQ(first_column(rows), "a b c x 0");
    EXPECT_EQ(rows.RecordCount(), 5);
}

TEST_F(Keyset, AddedRowsStandAtTheEndOfAnOrderedTableToo) {
    Recordset rows = dynaset("SELECT docno FROM Header_table ORDER BY docno");
    add(rows, "0");
    add(rows, "bb");
    rows.FindFirst("docno >= '0'");
    EXPECT_EQ(rows.text("docno"), "a");
    EXPECT_EQ(first_column(rows), "a b c 0 bb");
}

TEST_F(Keyset, EmptyIdiomHoldsTheRowsAddedToIt) {
    Recordset rows = dynaset("SELECT * FROM Header_table WHERE 1 = 2");
    add(rows, "n");
    add(rows, "m");
    EXPECT_TRUE(rows.at_eof());
    EXPECT_EQ(rows.RecordCount(), 2);
    rows.MoveFirst();
    EXPECT_EQ(rows.text("docno"), "n");
    rows.FindFirst("[docno] = 'm'");
    EXPECT_FALSE(rows.NoMatch());
    rows.FindFirst("[docno] = 'a'");
    EXPECT_TRUE(rows.NoMatch());
}

TEST_F(Keyset, RowBeingAddedIsReadableBeforeUpdate) {
    Recordset header = dynaset("SELECT * FROM Header_table WHERE 1 = 2");
    header.AddNew();
    header.set("docno", "n");
    header.set("amount", "5");
    EXPECT_EQ(header.text("DOCNO"), "n");
    EXPECT_EQ(header.number("amount"), 5);
    EXPECT_FALSE(header.flag("paid"));
    EXPECT_FALSE(header.field("paid").is_null());
    EXPECT_TRUE(header.field("vendor_no").is_null());
    Recordset lines = dynaset("SELECT * FROM Line_table WHERE 1 = 2");
    lines.AddNew();
    lines.set("docno", header.field("docno"));
    lines.Update();
    EXPECT_EQ(header.text("docno"), "n");
    header.Update();
    EXPECT_EQ(company_.list("SELECT docno FROM Line_table"), "n");
    EXPECT_EQ(company_.count("Header_table WHERE docno = 'n'"), 1);
}

TEST_F(Keyset, LastModifiedFindsTheRowJustWritten) {
    Recordset rows = dynaset("SELECT * FROM Header_table WHERE docno = 'a'");
    add(rows, "n");
    EXPECT_EQ(rows.text("docno"), "a");
    rows.Bookmark(rows.LastModified());
    EXPECT_EQ(rows.text("docno"), "n");
    rows.MoveFirst();
    rows.Edit();
    rows.set("amount", 11);
    rows.Update();
    rows.MoveLast();
    rows.Bookmark(rows.LastModified());
    EXPECT_EQ(rows.text("docno"), "a");
}

TEST_F(Keyset, BookmarkComesBackToItsRow) {
    for (const char* const query :
         {"SELECT docno FROM Header_table", "SELECT docno FROM Header_table WHERE amount = 10"}) {
        Recordset rows = dynaset(query);
        rows.FindFirst("docno = 'a'");
        const auto here = rows.Bookmark();
        rows.MoveLast();
        rows.Bookmark(here);
        EXPECT_EQ(rows.text("docno"), "a");
        rows.MoveNext();
        EXPECT_EQ(rows.text("docno"), "c");
        expect_error(ErrorKind::state, [&] { rows.Bookmark(store::Bookmark{}); });
    }
}

TEST_F(Keyset, EditShowsItsChangesAtOnceAndDropsThemOnCancel) {
    Recordset rows = dynaset("SELECT * FROM Header_table WHERE docno = 'a'");
    rows.Edit();
    rows.set("amount", 11);
    EXPECT_EQ(rows.number("amount"), 11);
    rows.CancelUpdate();
    EXPECT_EQ(rows.number("amount"), 10);
    expect_error(ErrorKind::state, [&] { rows.Update(); });
    expect_error(ErrorKind::state, [&] { rows.set("amount", 1); });
    rows.Edit();
    rows.set("amount", 12);
    rows.Update();
    EXPECT_EQ(rows.number("amount"), 12);
    EXPECT_EQ(company_.list("SELECT amount FROM Header_table WHERE docno = 'a'"), "12");
}

TEST_F(Keyset, MoveDropsAnUnfinishedEdit) {
    Recordset rows = dynaset("SELECT * FROM Header_table");
    rows.Edit();
    rows.set("amount", 11);
    rows.MoveNext();
    expect_error(ErrorKind::state, [&] { rows.Update(); });
    rows.AddNew();
    rows.set("docno", "n");
    rows.FindFirst("docno = 'c'");
    expect_error(ErrorKind::state, [&] { rows.Update(); });
    EXPECT_EQ(company_.count("Header_table WHERE amount = 10"), 3);
}

TEST_F(Keyset, UpdateWritesOnlyWhatChanged) {
    Recordset rows = dynaset("SELECT * FROM Header_table WHERE docno = 'a'");
    rows.Edit();
    rows.set("amount", 11);
    rows.set("vendor_no", store::Value());
    rows.set("company", "1");
    company_.db().Execute("UPDATE Header_table SET vendor_no = 'theirs', company = '2' WHERE docno = 'a'");
    rows.Update();
    auto row = company_.snapshot("SELECT * FROM Header_table WHERE docno = 'a'");
    EXPECT_EQ(row.number("amount"), 11);
    EXPECT_EQ(row.text("vendor_no"), "theirs");
    EXPECT_EQ(row.text("company"), "2");
}

TEST_F(Keyset, EditSeesWhatOthersHaveWrittenSinceTheMove) {
    Recordset rows = dynaset("SELECT * FROM Header_table WHERE docno = 'a'");
    EXPECT_EQ(rows.number("amount"), 10);
    company_.db().Execute("UPDATE Header_table SET amount = 20 WHERE docno = 'a'");
    rows.Edit();
    EXPECT_EQ(rows.number("amount"), 20);
    rows.set("amount", 10);
    rows.Update();
    EXPECT_EQ(company_.list("SELECT amount FROM Header_table WHERE docno = 'a'"), "10");
}

TEST_F(Keyset, EditInATransactionSeesTheTransactionsOwnWrites) {
    company_.workspace().BeginTrans();
    Recordset first = dynaset("SELECT * FROM Header_table WHERE docno = 'a'");
    Recordset second = dynaset("SELECT * FROM Header_table WHERE docno = 'a'");
    for (Recordset* rows : {&first, &second, &first}) {
        rows->Edit();
        rows->set("amount", rows->number("amount") + 1);
        rows->Update();
    }
    company_.workspace().CommitTrans();
    EXPECT_EQ(company_.list("SELECT amount FROM Header_table WHERE docno = 'a'"), "13");
}

TEST_F(Keyset, RowThatIsGoneCannotBeEditedNorUpdated) {
    Recordset rows = dynaset("SELECT * FROM Header_table WHERE docno = 'a'");
    rows.Edit();
    rows.set("amount", 11);
    company_.db().Execute("DELETE * FROM Header_table WHERE docno = 'a'");
    expect_error(ErrorKind::state, [&] { rows.Update(); });
    expect_error(ErrorKind::state, [&] { rows.Edit(); });
}

TEST_F(Keyset, OnlyPlainRowsOfOneTableCanBeChanged) {
    company_.add("Line_table", {{"docno", "a"}});
    for (const char* const query :
         {"SELECT MAX(docno) AS docno FROM Header_table", "SELECT * FROM (SELECT * FROM Header_table)",
          "SELECT Header_table.* FROM Header_table, Line_table"}) {
        Recordset rows = dynaset(query);
        EXPECT_FALSE(rows.text("docno").empty());
        expect_error(ErrorKind::state, [&] { rows.AddNew(); });
        expect_error(ErrorKind::state, [&] { rows.Edit(); });
    }
    Recordset snapshot = company_.snapshot("SELECT * FROM Header_table");
    expect_error(ErrorKind::state, [&] { snapshot.AddNew(); });
    expect_error(ErrorKind::state, [&] { snapshot.Edit(); });
}

TEST_F(Keyset, ComputedColumnsAreFreshToo) {
    Recordset rows = dynaset("SELECT docno, -1 * amount AS back FROM Header_table WHERE amount = 10");
    rows.MoveNext();
    EXPECT_EQ(rows.number("back"), -10);
    Recordset whole = dynaset("SELECT docno, -1 * amount AS back FROM Header_table ORDER BY amount * 2");
    whole.FindFirst("docno = 'c'");
    EXPECT_EQ(whole.number("back"), -10);
    whole.MoveNext();
    EXPECT_TRUE(whole.at_eof());
}

TEST_F(Keyset, LiteralsInTheSelectListComeWithEveryRow) {
    for (int i = 0; i < 20; ++i)
        company_.add("Header_table", {{"docno", "more"}, {"amount", 10}});
    for (const char* const query : {"SELECT 'x' AS mark, docno FROM Header_table",
                                    "SELECT 'x' AS mark, docno FROM Header_table WHERE amount = 10"}) {
        Recordset rows = dynaset(query);
        rows.FindFirst("docno = 'c'");
        EXPECT_EQ(rows.text("mark"), "x");
        rows.MoveNext();
        EXPECT_EQ(rows.text("mark") + rows.text("docno"), "xmore");
        EXPECT_EQ(rows.RecordCount(), 23);
    }
}

TEST_F(Keyset, LargeKeysetHoldsEveryKeyOnce) {
    company_.workspace().BeginTrans();
    Recordset rows = dynaset("SELECT docno, amount FROM Header_table WHERE amount = 10 ORDER BY docno");
    for (int i = 0; i < 1000; ++i)
        company_.add("Header_table", {{"docno", std::to_string(1000 + i)}, {"amount", 77}});
    Recordset large = dynaset("SELECT docno, amount FROM Header_table WHERE amount = 77 ORDER BY docno DESC");
    EXPECT_EQ(large.RecordCount(), 1000);
    int expected = 1999;
    for (; !large.at_eof(); large.MoveNext())
        EXPECT_EQ(large.text("docno"), std::to_string(expected--));
    EXPECT_EQ(expected, 999);
    EXPECT_EQ(rows.RecordCount(), 3);
}

// Recordsets of one query work in the same memory one after the other, but never two at a time.
TEST_F(Keyset, RecordsetsOfOneQueryKeepTheirRowsApart) {
    const std::string query = "SELECT * FROM Header_table ORDER BY docno";
    Recordset first = company_.dynaset(query);
    Recordset second = company_.dynaset(query);
    second.MoveLast();
    const std::string last = second.text("docno");
    ASSERT_NE(first.text("docno"), last);
    first.AddNew();
    first.set("docno", "new1");
    second.AddNew();
    second.set("docno", "new2");
    EXPECT_EQ(first.text("docno"), "new1");
    EXPECT_EQ(second.text("docno"), "new2");
    second.CancelUpdate();
    EXPECT_EQ(second.text("docno"), last);
    first.Update();
    EXPECT_EQ(company_.count("Header_table WHERE docno = 'new1'"), 1);
    EXPECT_EQ(company_.count("Header_table WHERE docno = 'new2'"), 0);
}

TEST_F(Keyset, NewRecordsetKnowsNothingOfTheOneBeforeIt) {
    const std::string query = "SELECT * FROM Header_table WHERE 1 = 2";
    {
        Recordset given_up = company_.dynaset(query);
        given_up.AddNew();
        given_up.set("docno", "a number too long for any short text");
        given_up.set("amount", 5.0);
    }
    Recordset rows = company_.dynaset(query);
    EXPECT_TRUE(rows.at_eof());
    rows.AddNew();
    EXPECT_TRUE(rows.field("docno").is_null());
    EXPECT_TRUE(rows.field("amount").is_null());
    rows.set("fkey", "k");
    rows.Update();
    const Recordset stored = company_.snapshot("SELECT * FROM Header_table WHERE fkey = 'k'");
    EXPECT_TRUE(stored.field("docno").is_null());
    EXPECT_TRUE(stored.field("amount").is_null());
}

TEST_F(Keyset, ClosedRecordsetAnswersNothing) {
    Recordset rows = dynaset("SELECT * FROM Header_table");
    EXPECT_TRUE(rows.is_open());
    rows.Close();
    rows.Close();
    EXPECT_FALSE(rows.is_open());
    expect_error(ErrorKind::state, [&] { (void)rows.at_eof(); });
    expect_error(ErrorKind::state, [&] { rows.MoveFirst(); });
    rows = dynaset("SELECT docno FROM Header_table");
    EXPECT_EQ(first_column(rows), "b a c");
    expect_error(ErrorKind::name, [&] { (void)rows.column(1); });
    expect_error(ErrorKind::name, [&] { (void)rows.column(-1); });
}

}  // namespace
}  // namespace brimley
