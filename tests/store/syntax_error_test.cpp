// Texts that are not of the dialect: each is refused with its place, and none reaches the engine.
#include <gtest/gtest.h>

#include "store/small_company.h"
#include "support/expect_error.h"

namespace brimley {
namespace {

using store::ErrorKind;
using testing::error_of;
using testing::expect_error;
using testing::SmallCompany;

class SyntaxError : public ::testing::Test {
  protected:
    std::optional<store::Error> select_error(const std::string& query) {
        return error_of([&] { (void)company_.snapshot(query); });
    }
    void expect_message(const std::string& query, const std::string& message) {
        const auto error = select_error(query);
        ASSERT_TRUE(error);
        EXPECT_EQ(error->kind(), ErrorKind::syntax);
        EXPECT_EQ(error->what(), message);
        EXPECT_EQ(error->statement(), query);
    }

    SmallCompany company_;
};

TEST_F(SyntaxError, MessageTellsThePlaceAndTheOffendingWord) {
    expect_message("SELECT * FORM Header_table", "syntax error at position 10, at \"FORM\": FROM expected");
    expect_message("SELECT * FROM Header_table WHERE",
                   "syntax error at position 33, at the end: a value expected");
    expect_message("SELECT * FROM Header_table WHERE docno = 'x' 'y'",
                   "syntax error at position 46, at \"'y'\": the end of the text expected");
    expect_message("SELECT * FROM Header_table WHERE docno = 'x",
                   "syntax error at position 42, at \"'x\": no closing '");
    expect_message("SELECT * FROM Header_table; DELETE",
                   "syntax error at position 27, at \";\": unknown character");
}

TEST_F(SyntaxError, UnknownConstructsAreRefused) {
    for (const char* const query : {
             "",
             " ",
             "Header_table",
             "SELECT",
             "SELECT * FROM",
             "SELECT FROM Header_table",
             "SELECT docno, FROM Header_table",
             "SELECT *, FROM Header_table",
             "SELECT DISTINCT docno FROM Header_table",
             "SELECT TOP 1 docno FROM Header_table",
             "SELECT docno FROM Header_table t",
             "SELECT docno FROM Header_table AS t",
             "SELECT docno FROM Header_table GROUP BY docno",
             "SELECT docno FROM Header_table HAVING 1 = 1",
             "SELECT docno FROM Header_table LIMIT 1",
             "SELECT docno FROM Header_table WHERE docno LIKE 'a*'",
             "SELECT docno FROM Header_table WHERE docno IN ('a')",
             "SELECT docno FROM Header_table WHERE docno BETWEEN 'a' AND 'b'",
             "SELECT docno FROM Header_table WHERE docno = (SELECT MAX(docno) FROM Header_table)",
             "SELECT docno FROM Header_table UNION SELECT docno FROM Line_table",
             "SELECT docno FROM Header_table LEFT JOIN Line_table ON 1 = 1",
             "SELECT docno FROM Header_table INNER JOIN Line_table",
             "SELECT docno FROM (Header_table",
             "SELECT docno FROM (SELECT docno FROM Header_table ORDER BY docno)",
             "SELECT docno FROM Header_table ORDER docno",
             "SELECT docno FROM Header_table ORDER BY",
             "SELECT docno FROM Header_table ORDER BY 1",
             "SELECT docno FROM Header_table ORDER BY docno UPWARD",
             "SELECT docno & amount FROM Header_table",
             "SELECT docno || amount FROM Header_table",
             "SELECT \"docno\" FROM Header_table",
             "SELECT docno FROM Header_table -- all",
             "SELECT docno FROM Header_table WHERE docno == 'a'",
             "SELECT docno FROM Header_table WHERE docno != 'a'",
             "SELECT docno FROM Header_table WHERE amount < = 5",
             "SELECT docno FROM Header_table WHERE docno = ?",
             "SELECT docno FROM Header_table WHERE docno = ?1",
             "SELECT docno FROM Header_table WHERE docno = :a",
             "SELECT docno FROM Header_table WHERE docno",
             "SELECT docno FROM Header_table WHERE 1",
             "SELECT docno FROM Header_table WHERE ()",
             "SELECT docno FROM Header_table WHERE (paid",
             "SELECT docno FROM Header_table WHERE paid)",
             "SELECT docno FROM Header_table WHERE paid AND",
             "SELECT docno FROM Header_table WHERE paid IS TRUE",
             "SELECT docno FROM Header_table WHERE random() = 1",
             "SELECT docno FROM Header_table WHERE Datevalue(docno) = invoice_date",
             "SELECT docno FROM Header_table WHERE UCASE(docno, 'a') = 'A'",
             "SELECT docno FROM Header_table WHERE MAX(amount) = 1",
             "SELECT MAX(MAX(amount)) FROM Header_table",
             "SELECT MAX(paid) FROM Header_table",
             "SELECT SUM(docno) FROM Header_table",
             "SELECT docno, MAX(amount) FROM Header_table",
             "SELECT *, MAX(amount) FROM Header_table",
             "SELECT MAX(amount) FROM Header_table ORDER BY docno",
             "SELECT docno FROM Header_table WHERE amount = 1.2.3",
             "SELECT docno FROM Header_table WHERE amount = 12abc",
             "SELECT docno FROM Header_table WHERE amount = 1e",
             "SELECT docno FROM Header_table WHERE [docno = 'a'",
             "SELECT docno FROM Header_table WHERE Header_table.5 = 'a'",
             "UPDATE Header_table SET paid = TRUE",
         })
        expect_error(ErrorKind::syntax, [&] { (void)company_.snapshot(query); });
}

TEST_F(SyntaxError, UnknownNamesAreRefused) {
    for (const char* const query : {
             "SELECT * FROM sqlite_schema",
             "SELECT * FROM [no table]",
             "SELECT nothing FROM Header_table",
             "SELECT row_id FROM Header_table",
             "SELECT rowid FROM Header_table",
             "SELECT Header_table.nothing FROM Header_table",
             "SELECT Line_table.docno FROM Header_table",
             "SELECT Line_table.* FROM Header_table",
             "SELECT docno FROM Header_table WHERE [] = 1",
             "SELECT docno FROM Header_table ORDER BY nothing",
             "SELECT docno FROM (SELECT amount FROM Header_table)",
         })
        expect_error(ErrorKind::name, [&] { (void)company_.snapshot(query); });
    expect_error(ErrorKind::name, [&] { company_.db().Execute("UPDATE Header_table SET nothing = 1"); });
    expect_error(ErrorKind::name, [&] { company_.db().Execute("DELETE * FROM nothing"); });
}

TEST_F(SyntaxError, UnknownStatementsAreRefused) {
    for (const char* const statement : {"",
                                        "SELECT * FROM Header_table",
                                        "DROP TABLE Header_table",
                                        "INSERT INTO Header_table VALUES (1)",
                                        "DELETE Header_table",
                                        "DELETE docno FROM Header_table",
                                        "DELETE * FROM Header_table, Line_table",
                                        "UPDATE Header_table",
                                        "UPDATE Header_table SET",
                                        "UPDATE Header_table SET paid",
                                        "UPDATE Header_table SET paid = TRUE,",
                                        "UPDATE Header_table SET paid = TRUE WHERE",
                                        "UPDATE Header_table SET paid = TRUE; DELETE * FROM Header_table",
                                        "UPDATE Header_table SET paid = NULL",
                                        "UPDATE Header_table SET docno = amount",
                                        "UPDATE Header_table SET amount = docno",
                                        "UPDATE Header_table SET invoice_date = amount",
                                        "UPDATE Header_table SET Header_table.paid = TRUE",
                                        "UPDATE Header_table SET amount = MAX(amount)",
                                        "BEGIN",
                                        "PRAGMA user_version = 5",
                                        "VACUUM"})
        expect_error(ErrorKind::syntax, [&] { company_.db().Execute(statement); });
    EXPECT_EQ(company_.count("Header_table"), 0);
}

TEST_F(SyntaxError, CriteriaAreCheckedBeforeAnyRowIsLookedAt) {
    for (const auto kind : {store::RecordsetKind::dynaset, store::RecordsetKind::snapshot}) {
        store::Recordset rows = company_.db().OpenRecordset("SELECT * FROM Header_table", kind);
        for (const char* const criteria : {"", "docno", "docno =", "docno = 'a' AND", "MAX(amount) = 1",
                                           "docno = 'a' ORDER BY docno", "docno = 'a'b'"})
            expect_error(ErrorKind::syntax, [&] { rows.FindFirst(criteria); });
        expect_error(ErrorKind::name, [&] { rows.FindFirst("[nothing] = 1"); });
    }
}

TEST_F(SyntaxError, DepthAndLengthHaveAnEnd) {
    const std::string head = "SELECT docno FROM Header_table WHERE ";
    const auto repeated = [](const std::string& text, int times) {
        std::string all;
        for (int i = 0; i < times; ++i)
            all += text;
        return all;
    };
    EXPECT_EQ(company_.list(head + repeated("(", 50) + "paid" + repeated(")", 50)), "");
    EXPECT_EQ(company_.list(head + "paid" + repeated(" OR paid", 400)), "");
    for (const std::string& query :
         {head + repeated("(", 100000) + "paid" + repeated(")", 100000),
          head + repeated("NOT ", 100000) + "paid", head + "amount = " + repeated("-", 100000) + "1",
          head + "paid" + repeated(" AND paid", 100000), head + "amount = 1" + repeated(" + 1", 100000),
          head + "amount = 1" + repeated(" * 1", 100000),
          "SELECT docno FROM " + repeated("(", 100000) + "Header_table",
          "SELECT docno FROM " + repeated("(SELECT docno FROM ", 1000) + "Header_table" +
              repeated(")", 1000)})
        expect_error(ErrorKind::syntax, [&] { (void)company_.snapshot(query); });
}

}  // namespace
}  // namespace brimley
