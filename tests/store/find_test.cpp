// FindFirst and FindNext.
#include <gtest/gtest.h>

#include <random>

#include "store/small_company.h"
#include "support/expect_error.h"

namespace brimley {
namespace {

using store::Recordset;
using store::RecordsetKind;
using testing::SmallCompany;

class Find : public ::testing::Test {
  protected:
    void fill(int rows) {
        company_.workspace().BeginTrans();
        for (int i = 0; i < rows; ++i) {
            company_.add("Header_table", {{"docno", "d" + std::to_string(i % 100)},
                                          {"company", "1"},
                                          {"amount", i},
                                          {"vendor_no", i % 3 == 0 ? "even" : "odd"}});
        }
        company_.workspace().CommitTrans();
    }

    SmallCompany company_;
};

TEST_F(Find, GoesToTheFirstMatchInTheRecordsetsOrder) {
    fill(300);
    for (const auto kind : {RecordsetKind::dynaset, RecordsetKind::snapshot}) {
        Recordset up = company_.db().OpenRecordset("SELECT * FROM Header_table", kind);
        up.FindFirst("[docno] = 'd7' and [company] = 1");
        EXPECT_EQ(up.number("amount"), 7);
        Recordset down = company_.db().OpenRecordset("SELECT * FROM Header_table ORDER BY amount DESC", kind);
        down.FindFirst("[docno] = 'd7' and [company] = 1");
        EXPECT_EQ(down.number("amount"), 207);
        down.FindNext("[docno] = 'd7'");
        EXPECT_EQ(down.number("amount"), 107);
    }
}

TEST_F(Find, NoMatchLeavesTheCurrentRow) {
    fill(3);
    for (const auto kind : {RecordsetKind::dynaset, RecordsetKind::snapshot}) {
        Recordset rows = company_.db().OpenRecordset("SELECT * FROM Header_table", kind);
        rows.FindFirst("docno = 'nowhere'");
        EXPECT_TRUE(rows.NoMatch());
        EXPECT_EQ(rows.text("docno"), "d0");
        rows.FindFirst("docno = 'd1'");
        EXPECT_FALSE(rows.NoMatch());
        rows.FindNext("docno = 'd1'");
        EXPECT_TRUE(rows.NoMatch());
        EXPECT_EQ(rows.text("docno"), "d1");
    }
}

TEST_F(Find, StaysWithinTheRecordset) {
    fill(600);
    for (const char* const where : {"amount < 20", "amount < 500"}) {
        for (const auto kind : {RecordsetKind::dynaset, RecordsetKind::snapshot}) {
            Recordset rows =
                company_.db().OpenRecordset("SELECT * FROM Header_table WHERE " + std::string(where), kind);
            rows.FindFirst("amount > 510");
            EXPECT_TRUE(rows.NoMatch());
            rows.FindFirst("amount > 10");
            EXPECT_EQ(rows.number("amount"), 11);
        }
    }
}

TEST_F(Find, TakesRowsAddedThroughTheRecordset) {
    fill(600);
    for (const char* const query :
         {"SELECT * FROM Header_table WHERE amount < 20", "SELECT * FROM Header_table",
          "SELECT * FROM Header_table WHERE amount < 500 ORDER BY amount DESC"}) {
        Recordset rows = company_.dynaset(query);
        rows.AddNew();
        rows.set("docno", query);
        rows.set("amount", 9999);
        rows.Update();
        rows.FindFirst("amount = 9999 AND docno = " + store::quoted(query));
        EXPECT_FALSE(rows.NoMatch()) << query;
        rows.FindNext("amount > 0");
        EXPECT_TRUE(rows.NoMatch()) << query;
        company_.db().Execute("DELETE * FROM Header_table WHERE amount = 9999");
    }
}

TEST_F(Find, KeysetFindsAMemberThatNoLongerMeetsItsWhere) {
    fill(10);
    Recordset rows = company_.dynaset("SELECT * FROM Header_table WHERE paid = FALSE");
    company_.db().Execute("UPDATE Header_table SET paid = TRUE");
    rows.FindFirst("docno = 'd5'");
    ASSERT_FALSE(rows.NoMatch());
    EXPECT_TRUE(rows.flag("paid"));
}

TEST_F(Find, WalkGoesOnFromTheRowFound) {
    fill(300);
    for (const char* const query :
         {"SELECT * FROM Header_table", "SELECT * FROM Header_table ORDER BY amount"}) {
        Recordset rows = company_.dynaset(query);
        rows.FindFirst("docno = 'd50'");
        rows.MoveNext();
        EXPECT_EQ(rows.number("amount"), 51);
        rows.FindNext("docno = 'd50'");
        EXPECT_EQ(rows.number("amount"), 150);
        rows.MoveLast();
        EXPECT_EQ(rows.number("amount"), 299);
        rows.MoveFirst();
        EXPECT_EQ(rows.number("amount"), 0);
    }
}

TEST_F(Find, NameGivenByTheSelectListIsFoundByThatName) {
    fill(5);
    for (const auto kind : {RecordsetKind::dynaset, RecordsetKind::snapshot}) {
        Recordset rows = company_.db().OpenRecordset("SELECT docno as tax,vendor_no FROM Header_table", kind);
        rows.FindFirst("[tax] = 'd3'");
        ASSERT_FALSE(rows.NoMatch());
        EXPECT_EQ(rows.text("tax"), "d3");
        rows.FindFirst("[tax] = 'STACK'");
        EXPECT_TRUE(rows.NoMatch());
        testing::expect_error(store::ErrorKind::name, [&] { rows.FindFirst("[taxes] = 'd3'"); });
    }
}

TEST_F(Find, SnapshotIsSearchedByItsComputedColumns) {
    fill(5);
    Recordset rows = company_.snapshot("SELECT docno, amount * 2 AS twice FROM Header_table");
    rows.FindFirst("twice = 6");
    ASSERT_FALSE(rows.NoMatch());
    EXPECT_EQ(rows.text("docno"), "d3");
}

TEST_F(Find, FindNextOnAnEmptyRecordsetMatchesNothing) {
    for (const auto kind : {RecordsetKind::dynaset, RecordsetKind::snapshot}) {
        Recordset rows = company_.db().OpenRecordset("SELECT * FROM Header_table", kind);
        rows.FindNext("docno = 'a'");
        EXPECT_TRUE(rows.NoMatch());
        rows.FindFirst("docno = 'a'");
        EXPECT_TRUE(rows.NoMatch());
    }
}

// Criteria put together at random mean the same to the engine and to rows in memory.
TEST_F(Find, SnapshotAndKeysetAgreeOnRandomCriteria) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto pick = [&](std::initializer_list<const char*> from) {
        return std::string(from.begin()[random() % from.size()]);
    };
    fill(60);
    company_.db().Execute("UPDATE Header_table SET vendor_no = NULL, amount = NULL WHERE docno = 'd9'");
    company_.db().Execute("UPDATE Header_table SET company = '01', paid = TRUE WHERE VAL(amount) > 40");
    company_.db().Execute("UPDATE Header_table SET company = 'x' WHERE docno = 'd3'");
    company_.db().Execute(
        "UPDATE Header_table SET invoice_date = Datevalue('Jan 5, 2026') WHERE amount < 30");
    const auto comparison = [&]() -> std::string {
        const std::string sign = pick({" = ", " <> ", " < ", " <= ", " > ", " >= "});
        switch (random() % 8) {
            case 0:
                return "amount" + sign +
                       pick({"5", "'5'", "-1", "40.5", "'x'", "amount / 2", "company", "NULL"});
            case 1:
                return "company" + sign + pick({"1", "'1'", "'01'", "vendor_no", "'x'", "amount", "0"});
            case 2:
                return "docno" + sign + pick({"'d7'", "UCASE('D7')", "vendor_no", "7"});
            case 3:
                return "paid" + sign + pick({"TRUE", "false", "-1", "0", "hold", "'yes'", "(amount > 3)"});
            case 4:
                return "invoice_date" + sign +
                       pick({"Datevalue('Jan 5, 2026')", "'20260106'", "invoice_date + 1"});
            case 5:
                return "amount + 2 * amount - 3" + sign +
                       pick({"12", "-amount", "VAL(company)", "amount * amount"});
            case 6:
                return pick({"vendor_no", "amount", "invoice_date", "paid"}) +
                       pick({" IS NULL", " IS NOT NULL"});
            default:
                return pick({"paid", "hold", "1 = 1", "1 = 2", "'a' < 'b'", "TRUE"});
        }
    };
    for (int round = 0; round < 1500; ++round) {
        std::string criteria = comparison();
        for (auto more = random() % 4; more > 0; --more)
            criteria = pick({"", "NOT "}) + "(" + criteria + ")" + pick({" AND ", " OR "}) + comparison();
        const std::string rows = "SELECT docno FROM Header_table WHERE " + criteria;
        const std::string queried = company_.list(rows);
        Recordset snapshot = company_.snapshot("SELECT * FROM Header_table");
        std::string found;
        for (snapshot.FindFirst(criteria); !snapshot.NoMatch(); snapshot.FindNext(criteria))
            found += (found.empty() ? "" : " ") + snapshot.text("docno");
        ASSERT_EQ(found, queried) << criteria;
    }
}

}  // namespace
}  // namespace brimley
