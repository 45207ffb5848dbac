// Recordsets for reading.
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

class Snapshot : public ::testing::Test {
  protected:
    void SetUp() override {
        for (const char* const docno : {"b", "a", "c"})
            company_.add("Header_table", {{"docno", docno}, {"vendor_no", std::string(docno) + " vendor"}});
    }

    SmallCompany company_;
};

TEST_F(Snapshot, HoldsTheRowsAsTheyWereWhenItWasOpened) {
    Recordset rows = company_.snapshot("SELECT docno FROM Header_table");
    company_.db().Execute("UPDATE Header_table SET docno = 'z' WHERE docno = 'a'");
    company_.db().Execute("DELETE * FROM Header_table WHERE docno = 'b'");
    company_.add("Header_table", {{"docno", "n"}});
    EXPECT_EQ(rows.RecordCount(), 3);
    EXPECT_EQ(first_column(rows), "b a c");
    EXPECT_EQ(company_.list("SELECT docno FROM Header_table"), "z c n");
}

TEST_F(Snapshot, PausesWhileALongOneIsReadInWhichAnythingMayBeAsked) {
    for (int i = 0; i < 1'000; ++i)
        company_.add("Line_table", {{"fkey", "k"}, {"pay_item", std::to_string(i)}});
    const std::string query = "SELECT * FROM Header_table, Line_table";
    int pauses = 0;
    std::int64_t nested = 0;
    const auto rows = company_.db().OpenRecordset(query, store::RecordsetKind::snapshot, [&] {
        // The same statement, in the midst of its own rows; and a change of what is being read.
        if (++pauses == 1) nested = company_.snapshot(query).RecordCount();
        company_.db().Execute("UPDATE Header_table SET vendor_no = 'changed' WHERE docno = 'a'");
    });
    EXPECT_EQ(pauses, 3);
    EXPECT_EQ(nested, 3'000);
    EXPECT_EQ(rows.RecordCount(), 3'000);
    EXPECT_EQ(company_.snapshot(query).RecordCount(), 3'000);
}

TEST_F(Snapshot, WalksToItsEnds) {
    Recordset rows = company_.snapshot("SELECT docno FROM Header_table ORDER BY docno");
    EXPECT_EQ(rows.text("docno"), "a");
    rows.MoveLast();
    EXPECT_EQ(rows.text("docno"), "c");
    rows.MoveNext();
    EXPECT_TRUE(rows.at_eof());
    EXPECT_EQ(rows.Bookmark().position, -1);
    expect_error(ErrorKind::state, [&] { (void)rows.field("docno"); });
    rows.MoveNext();
    rows.MoveFirst();
    EXPECT_EQ(rows.text("docno"), "a");
}

TEST_F(Snapshot, EmptyOneStaysAtItsEnd) {
    for (const char* const where : {"1 = 2", "docno = 'nowhere'"}) {
        Recordset rows = company_.snapshot("SELECT * FROM Header_table WHERE " + std::string(where));
        EXPECT_TRUE(rows.at_eof());
        rows.MoveFirst();
        rows.MoveLast();
        rows.MoveNext();
        EXPECT_TRUE(rows.at_eof());
        EXPECT_EQ(rows.RecordCount(), 0);
    }
}

TEST_F(Snapshot, BookmarkComesBackToItsRow) {
    Recordset rows = company_.snapshot("SELECT docno FROM Header_table");
    rows.FindFirst("docno = 'a'");
    const auto here = rows.Bookmark();
    rows.MoveLast();
    rows.Bookmark(here);
    EXPECT_EQ(rows.text("docno"), "a");
    expect_error(ErrorKind::state, [&] { rows.Bookmark(store::Bookmark{}); });
    expect_error(ErrorKind::state, [&] { rows.Bookmark(store::Bookmark{3}); });
    expect_error(ErrorKind::state, [&] { rows.Bookmark(rows.LastModified()); });
    EXPECT_EQ(rows.text("docno"), "a");
}

TEST_F(Snapshot, FindLooksAtTheColumnsOfAJoin) {
    company_.add("Line_table", {{"docno", "c"}, {"open_amount", 5}});
    Recordset rows = company_.snapshot(
        "SELECT vendor_no AS who, Line_table.* FROM Header_table, Line_table WHERE Header_table.docno = "
        "Line_table.docno");
    rows.FindFirst("[who] = 'c vendor' and [open_amount] = 5");
    EXPECT_FALSE(rows.NoMatch());
    expect_error(ErrorKind::name, [&] { rows.FindFirst("vendor_no = 'c vendor'"); });
}

TEST_F(Snapshot, KeepsLongAndShortValuesApart) {
    std::string all;
    for (const std::size_t size : {0, 1, 255, 256, 257, 70000}) {
        company_.add("Line_table",
                     {{"fkey", std::string(size, 'x')}, {"docno", "after " + std::to_string(size)}});
        all += std::to_string(size) + ":after " + std::to_string(size) + " ";
    }
    Recordset rows = company_.snapshot("SELECT * FROM Line_table");
    std::string seen;
    for (; !rows.at_eof(); rows.MoveNext())
        seen += std::to_string(rows.text("fkey").size()) + ":" + rows.text("docno") + " ";
    EXPECT_EQ(seen, all);
}

}  // namespace
}  // namespace brimley
