// Every construct of a SELECT.
#include <gtest/gtest.h>

#include "store/small_company.h"
#include "support/expect_error.h"

namespace brimley {
namespace {

using store::DateTime;
using store::FieldType;
using store::Recordset;
using testing::SmallCompany;

class Select : public ::testing::Test {
  protected:
    static DateTime day(int day_of_month) { return *DateTime::from_ymd(2026, 1, day_of_month); }

    void SetUp() override {
        company_.add("Header_table", {{"fkey", "k1"},
                                      {"company", "1"},
                                      {"docno", "A1"},
                                      {"vendor_no", "v2"},
                                      {"invoice_date", day(10)},
                                      {"amount", 100},
                                      {"paid", true}});
        company_.add("Header_table", {{"fkey", "k2"},
                                      {"company", "01"},
                                      {"docno", "B2"},
                                      {"vendor_no", "v1"},
                                      {"invoice_date", day(20)},
                                      {"amount", 50},
                                      {"hold", true}});
        company_.add("Header_table",
                     {{"fkey", "k3"}, {"company", "2"}, {"docno", "C3"}, {"vendor_no", "v1"}});
        company_.add("Line_table", {{"fkey", "k1"},
                                    {"docno", "line A1"},
                                    {"pay_item", "2"},
                                    {"lineno", 2},
                                    {"due_date", day(31)},
                                    {"open_amount", 70},
                                    {"Currency", "eur"}});
        company_.add("Line_table", {{"fkey", "k1"},
                                    {"docno", "line A1"},
                                    {"pay_item", "10"},
                                    {"lineno", 10},
                                    {"due_date", day(1)},
                                    {"open_amount", 30},
                                    {"hold", true}});
        company_.add("Line_table", {{"fkey", "k2"}, {"docno", "line B2"}, {"pay_item", "1"}, {"lineno", 1}});
    }

    std::string list(const std::string& query) { return company_.list(query); }

    SmallCompany company_;
};

TEST_F(Select, StarGivesEveryFieldOfTheCatalogAndNoOther) {
    Recordset rows = company_.snapshot("SELECT * FROM Header_table");
    ASSERT_EQ(rows.column_count(), 8);
    EXPECT_EQ(rows.column_name(0), "fkey");
    EXPECT_EQ(rows.column_name(7), "amount");
    EXPECT_EQ(rows.column_type(4), FieldType::date);
    EXPECT_FALSE(rows.has_field("row_id"));
}

TEST_F(Select, ListKeepsOrderAndSpellingOfTheQuery) {
    Recordset rows = company_.snapshot("SELECT AMOUNT, DocNo FROM Header_table");
    EXPECT_EQ(rows.column_name(0), "AMOUNT");
    EXPECT_EQ(rows.column_name(1), "DocNo");
    EXPECT_EQ(rows.text("docno"), "A1");
    EXPECT_EQ(rows.number("Amount"), 100);
}

TEST_F(Select, AliasNamesTheColumn) {
    Recordset rows = company_.snapshot("SELECT docno AS number, -1 * amount as AMOUNT FROM Header_table");
    EXPECT_EQ(rows.text("number"), "A1");
    EXPECT_EQ(rows.number("amount"), -100);
    EXPECT_FALSE(rows.has_field("docno"));
    EXPECT_EQ(rows.column_type(1), FieldType::number);
}

TEST_F(Select, NamesIgnoreCaseBracketsAndBlanks) {
    EXPECT_EQ(list("select   docno\n from [HEADER_table]\twhere [VENDOR_NO]='v1'  order  by  DOCNO  desc"),
              "C3 B2");
    EXPECT_EQ(list("SELECT [Header_table].[docno] FROM Header_table WHERE header_TABLE.paid = true"), "A1");
}

TEST_F(Select, CommaJoinMeetsInTheWhere) {
    EXPECT_EQ(list("SELECT Line_table.pay_item FROM Header_table, Line_table WHERE "
                   " Header_table.fkey = Line_table.fkey  AND Header_table.docno = 'A1'"),
              "2 10");
}

TEST_F(Select, TableStarGivesTheFieldsOfThatTable) {
    Recordset rows = company_.snapshot(
        "SELECT Line_table.* FROM Header_table, Line_table  WHERE  Header_table.fkey = Line_table.fkey ");
    EXPECT_EQ(rows.RecordCount(), 3);
    EXPECT_EQ(rows.column_count(), 9);
    EXPECT_EQ(rows.text("docno"), "line A1");
}

TEST_F(Select, UnqualifiedNameMeansTheFirstTableThatHasIt) {
    EXPECT_EQ(list("SELECT Line_table.lineno FROM Header_table, Line_table WHERE Header_table.fkey = "
                   "Line_table.fkey "
                   "AND hold = TRUE"),
              "1");
    EXPECT_EQ(list("SELECT lineno FROM Line_table, Header_table WHERE Header_table.fkey = Line_table.fkey "
                   "AND hold = TRUE AND open_amount = 30"),
              "10");
}

TEST_F(Select, EqualColumnNamesReadAsTheFirst) {
    Recordset rows = company_.snapshot(
        "SELECT Header_table.docno as docno, Header_table.amount ,Line_table.* FROM "
        "(Header_table INNER JOIN Line_table ON  Header_table.fkey = Line_table.fkey) WHERE  open_amount >= "
        "30");
    EXPECT_EQ(rows.text("docno"), "A1");
    EXPECT_EQ(rows.column_count(), 11);
    EXPECT_EQ(rows.column_name(3), "docno");
    EXPECT_EQ(rows.column(3).text(), "line A1");
}

TEST_F(Select, InnerJoinStandsWithAndWithoutParentheses) {
    const std::string head = "SELECT Line_table.pay_item FROM ";
    const std::string join = "Header_table INNER JOIN Line_table ON Header_table.fkey = Line_table.fkey";
    EXPECT_EQ(list(head + join), "2 10 1");
    EXPECT_EQ(list(head + "(" + join + ")"), "2 10 1");
    EXPECT_EQ(list(head + "((" + join +
                   ") INNER JOIN Counter_table ON Counter_table.doctype = Header_table.docno)"),
              "");
    EXPECT_EQ(list(head + join + ", Word_table"), "");
}

TEST_F(Select, JoinOfTextAndNumberIsByValue) {
    company_.add("Counter_table", {{"company", 1}, {"doctype", "ip"}});
    EXPECT_EQ(list("SELECT docno FROM Header_table, Counter_table WHERE Header_table.company = "
                   "Counter_table.company"),
              "A1 B2");
}

TEST_F(Select, NestedSelectNeedsNoAlias) {
    EXPECT_EQ(
        list("SELECT docno FROM (SELECT docno,paid,hold FROM Header_table WHERE vendor_no = 'v1') WHERE "
             "paid = FALSE AND hold = FALSE ORDER BY docno DESC"),
        "C3");
    EXPECT_EQ(
        list(
            "SELECT * FROM (SELECT * FROM (SELECT vendor_no, docno AS n FROM Header_table) WHERE n <> 'A1')"),
        "v1 v1");
}

TEST_F(Select, NestedSelectKeepsInsertionOrder) {
    EXPECT_EQ(list("SELECT lineno FROM (SELECT * FROM Line_table WHERE lineno > 0)"), "2 10 1");
}

TEST_F(Select, AgeIsDaysBetweenDatesOverThirty) {
    Recordset rows = company_.snapshot(
        "SELECT * FROM ( SELECT *,(Datevalue('Jan 31,2026')-[due_date])/30 AS age_range FROM Line_table "
        "WHERE hold = "
        "TRUE OR hold = FALSE ) WHERE age_range > 0 ORDER BY fkey,docno,pay_item");
    ASSERT_EQ(rows.RecordCount(), 1);
    EXPECT_EQ(rows.number("age_range"), 1);
    EXPECT_EQ(rows.text("pay_item"), "10");
}

TEST_F(Select, DivisionIsOfFloatingNumbers) {
    EXPECT_EQ(list("SELECT lineno / 4 AS part FROM Line_table"), "0.5 2.5 0.25");
    EXPECT_EQ(list("SELECT lineno / 0 AS part FROM Line_table"), "- - -");
}

TEST_F(Select, ArithmeticBindsAsUsual) {
    EXPECT_EQ(list("SELECT 2 + 3 * lineno - -1 AS n FROM Line_table"), "9 33 6");
    EXPECT_EQ(list("SELECT (2 + 3) * lineno AS n FROM Line_table"), "10 50 5");
}

TEST_F(Select, NullCountsAsZeroInASum) {
    EXPECT_EQ(list("SELECT open_amount + 1 AS n FROM Line_table"), "71 31 1");
    EXPECT_EQ(list("SELECT open_amount * 2 AS n FROM Line_table"), "140 60 -");
}

TEST_F(Select, DaysAddToADate) {
    Recordset rows = company_.snapshot("SELECT due_date + 1 AS next, due_date - 1 AS before FROM Line_table");
    EXPECT_EQ(rows.field("next"), store::Value(*DateTime::from_ymd(2026, 2, 1)));
    EXPECT_EQ(rows.field("before"), store::Value(day(30)));
}

TEST_F(Select, AggregatesHaveOneRow) {
    EXPECT_EQ(list("SELECT MAX(docno) as last FROM Header_table"), "C3");
    EXPECT_EQ(list("SELECT max(amount) FROM Header_table WHERE vendor_no = 'none'"), "-");
    EXPECT_EQ(list("SELECT COUNT(*) AS n FROM Header_table"), "3");
    EXPECT_EQ(list("SELECT COUNT(amount) AS n FROM Header_table"), "2");
    EXPECT_EQ(list("SELECT SUM(amount) AS n FROM Header_table"), "150");
    EXPECT_EQ(list("SELECT MIN(amount) + MAX(amount) AS n FROM Header_table"), "150");
    EXPECT_EQ(company_.snapshot("SELECT MAX(invoice_date) AS d FROM Header_table").field("d"),
              store::Value(day(20)));
}

TEST_F(Select, UpperCaseAndLeadingNumberAreFunctions) {
    EXPECT_EQ(list("SELECT lineno FROM Line_table WHERE UCASE(Currency) = 'EUR'"), "2");
    EXPECT_EQ(list("SELECT ucase(currency) AS c FROM Line_table"), "EUR - -");
    company_.add("Line_table", {{"pay_item", " -12.5abc"}});
    company_.add("Line_table", {{"pay_item", "abc"}});
    company_.add("Line_table", {{"pay_item", store::Value()}});
    EXPECT_EQ(list("SELECT VAL(pay_item) AS n FROM Line_table"), "2 10 1 -12.5 0 0");
}

TEST_F(Select, OrderTakesSeveralTermsAndExpressions) {
    EXPECT_EQ(list("SELECT pay_item FROM Line_table ORDER BY pay_item"), "1 10 2");
    EXPECT_EQ(list("SELECT pay_item FROM Line_table ORDER BY VAL(pay_item)"), "1 2 10");
    EXPECT_EQ(list("SELECT pay_item FROM Line_table ORDER BY fkey DESC, VAL(pay_item) DESC"), "1 10 2");
    EXPECT_EQ(list("SELECT docno FROM Header_table ORDER BY vendor_no ASC, docno DESC"), "C3 B2 A1");
    EXPECT_EQ(list("SELECT -1 * lineno AS back FROM Line_table ORDER BY back"), "-10 -2 -1");
}

TEST_F(Select, OrderPutsNullFirstAndTiesInInsertionOrder) {
    EXPECT_EQ(list("SELECT docno FROM Header_table ORDER BY amount"), "C3 B2 A1");
    EXPECT_EQ(list("SELECT docno FROM Header_table ORDER BY amount DESC"), "A1 B2 C3");
    EXPECT_EQ(list("SELECT docno FROM Header_table ORDER BY vendor_no"), "B2 C3 A1");
}

TEST_F(Select, TextSortsByteByByte) {
    for (const char* const text : {"b", "B", "a", "\xc3\xa4", "A", "_"})
        company_.add("Word_table", {{"Value", text}});
    EXPECT_EQ(list("SELECT Value FROM Word_table ORDER BY Value"), "A B _ a b \xc3\xa4");
}

TEST_F(Select, ReservedWordsOfOthersAreNames) {
    company_.add("Word_table", {{"default", true},
                                {"Month", 1},
                                {"Year", 2026},
                                {"Date", day(1)},
                                {"Value", "v"},
                                {"Percent", 5},
                                {"type", "A"},
                                {"user", "me"},
                                {"Update", true},
                                {"Order", 9}});
    EXPECT_EQ(
        list("SELECT Order FROM Word_table WHERE default = TRUE AND Month = 1 AND Year = 2026 AND type = 'A' "
             "AND "
             "Date = Datevalue('Jan 01, 2026') AND Percent = 5 AND user = 'me' AND Update = true AND Print = "
             "false AND Reverse = False AND Value = 'v' AND unit IS NULL AND module IS NULL ORDER BY Order"),
        "9");
    EXPECT_EQ(
        list("SELECT [Order] FROM Word_table WHERE [Update] = TRUE AND [default] = TRUE AND [month] = 1"),
        "9");
}

TEST_F(Select, AndBindsTighterThanOrAndNotTighterThanBoth) {
    EXPECT_EQ(list("SELECT docno FROM Header_table WHERE docno = 'A1' OR docno = 'B2' AND docno = 'C3'"),
              "A1");
    EXPECT_EQ(
        list("SELECT docno FROM Header_table WHERE (docno = 'A1' OR docno = 'B2') AND NOT docno = 'A1'"),
        "B2");
    EXPECT_EQ(list("SELECT docno FROM Header_table WHERE NOT (docno = 'A1' OR docno = 'B2')"), "C3");
    EXPECT_EQ(list("SELECT docno FROM Header_table WHERE NOT NOT docno = 'A1'"), "A1");
}

TEST_F(Select, FlagAloneIsACondition) {
    EXPECT_EQ(list("SELECT docno FROM Header_table WHERE paid"), "A1");
    EXPECT_EQ(list("SELECT docno FROM Header_table WHERE NOT paid AND hold"), "B2");
    EXPECT_EQ(list("SELECT docno FROM Header_table WHERE (amount > 60) = FALSE"), "B2");
}

TEST_F(Select, NullIsTestedWithIs) {
    EXPECT_EQ(list("SELECT docno FROM Header_table WHERE amount IS NULL"), "C3");
    EXPECT_EQ(list("SELECT docno FROM Header_table WHERE amount is not null"), "A1 B2");
}

TEST_F(Select, ConditionOfLiteralsIsKnownBeforehand) {
    EXPECT_EQ(list("SELECT docno FROM Header_table WHERE 1 = 2"), "");
    EXPECT_EQ(list("SELECT docno FROM Header_table WHERE 1 = 1 AND docno <> 'A1'"), "B2 C3");
    EXPECT_EQ(list("SELECT docno FROM Header_table WHERE docno <> 'A1' AND 'x' = 'y'"), "");
    EXPECT_EQ(list("SELECT docno FROM Header_table WHERE 1 = 2 OR docno = 'A1'"), "A1");
    EXPECT_EQ(list("SELECT COUNT(*) AS n FROM Header_table WHERE 1 = 1"), "3");
}

TEST_F(Select, TableIsReadTwiceInOneQueryByItsNestedSelect) {
    EXPECT_EQ(list("SELECT Header_table.docno FROM Header_table, (SELECT vendor_no AS v FROM Header_table "
                   "WHERE docno = "
                   "'B2') WHERE vendor_no = v"),
              "B2 C3");
}

}  // namespace
}  // namespace brimley
