// Values of different kinds compared with each other, in queries and in FindFirst on rows in memory alike.
#include <gtest/gtest.h>

#include "store/small_company.h"
#include "support/expect_error.h"

namespace brimley {
namespace {

using store::DateTime;
using store::ErrorKind;
using store::Recordset;
using testing::SmallCompany;

class Comparison : public ::testing::Test {
  protected:
    void SetUp() override {
        for (const char* const text : {"1", "01", " 1 ", "1.0", "10", "abc", ""})
            company_.add("Word_table", {{"Value", text}, {"Order", ++count_}});
        company_.add("Word_table", {{"Order", ++count_}});
    }

    // The Order of the rows that meet the criteria: in a query, by finding in the table, in a walked keyset
    // and in memory.
    std::string meeting(const std::string& criteria) {
        const std::string queried = company_.list("SELECT Order FROM Word_table WHERE " + criteria);
        for (const auto kind : {store::RecordsetKind::dynaset, store::RecordsetKind::snapshot}) {
            Recordset rows = company_.db().OpenRecordset("SELECT Order, Word_table.* FROM Word_table", kind);
            EXPECT_EQ(found(rows, criteria), queried) << criteria;
            rows.MoveLast();
            EXPECT_EQ(found(rows, criteria), queried) << criteria << " after a walk";
        }
        return queried;
    }

    static std::string found(Recordset& rows, const std::string& criteria) {
        std::string listed;
        for (rows.FindFirst(criteria); !rows.NoMatch(); rows.FindNext(criteria))
            listed += (listed.empty() ? "" : " ") + rows.text("Order");
        return listed;
    }

    SmallCompany company_;
    int count_ = 0;
};

TEST_F(Comparison, TextMeetsNumberByValue) {
    EXPECT_EQ(meeting("Value = 1"), "1 2 3 4");
    EXPECT_EQ(meeting("1 = Value"), "1 2 3 4");
    EXPECT_EQ(meeting("Value > 1"), "5");
    EXPECT_EQ(meeting("Value <= 1.0"), "1 2 3 4");
    EXPECT_EQ(meeting("Value = -1"), "");
}

TEST_F(Comparison, TextThatIsNoNumberEqualsNone) {
    EXPECT_EQ(meeting("Value = 0"), "");
    EXPECT_EQ(meeting("Value <> 1"), "5 6 7");
}

TEST_F(Comparison, TextMeetsTextByteByByte) {
    EXPECT_EQ(meeting("Value = '1'"), "1");
    EXPECT_EQ(meeting("Value = 'ABC'"), "");
    EXPECT_EQ(meeting("Value < '1'"), "2 3 7");
    EXPECT_EQ(meeting("Value = ''"), "7");
}

TEST_F(Comparison, NumberMeetsQuotedTextByValue) {
    EXPECT_EQ(meeting("Order = '3'"), "3");
    EXPECT_EQ(meeting("Order = ' 03 '"), "3");
    EXPECT_EQ(meeting("Order >= '7'"), "7 8");
    EXPECT_EQ(meeting("Order = 'three'"), "");
    EXPECT_EQ(meeting("Order <> 'three'"), "1 2 3 4 5 6 7 8");
}

TEST_F(Comparison, FieldsOfDifferentTypesCompareByValue) {
    EXPECT_EQ(meeting("Value = Order"), "1");
    EXPECT_EQ(meeting("Order = Value"), "1");
    EXPECT_EQ(meeting("Value < Order"), "2 3 4");
    EXPECT_EQ(meeting("VAL(Value) = 1"), "1 2 3 4");
}

TEST_F(Comparison, NullIsNeverEqualNorDifferent) {
    EXPECT_EQ(meeting("Value = NULL"), "");
    EXPECT_EQ(meeting("Value <> NULL"), "");
    EXPECT_EQ(meeting("Month = 1 OR Month <> 1 OR NOT Month = 1"), "");
    EXPECT_EQ(meeting("Month = 1 AND 2 = 3"), "");
    EXPECT_EQ(meeting("NOT (Month = 1 AND Order = 3)"), "1 2 4 5 6 7 8");
    EXPECT_EQ(meeting("Month = 1 OR Order = 3"), "3");
    EXPECT_EQ(meeting("Value <> ''"), "1 2 3 4 5 6");
    EXPECT_EQ(meeting("Value IS NULL"), "8");
}

TEST_F(Comparison, FlagMeetsWordsAndNumbers) {
    company_.db().Execute("UPDATE Word_table SET Print = TRUE WHERE Order = 2");
    for (const char* const criteria :
         {"Print = TRUE", "Print = true", "Print = -1", "Print = 1", "Print <> 0", "Print", "Print = 'Yes'",
          "TRUE = Print", "Print <> FALSE"})
        EXPECT_EQ(meeting(criteria), "2") << criteria;
    EXPECT_EQ(meeting("Print = 0"), "1 3 4 5 6 7 8");
    EXPECT_EQ(meeting("maybe = FALSE"), "");
    EXPECT_EQ(meeting("maybe IS NULL AND Order = 1"), "1");
}

TEST_F(Comparison, DateMeetsDatevalue) {
    company_.db().Execute("UPDATE Word_table SET Date = Datevalue('Jan 15, 2026') WHERE Order = 2");
    company_.db().Execute("UPDATE Word_table SET Date = '20260116' WHERE Order = 3");
    EXPECT_EQ(meeting("Date = Datevalue('Jan 15, 2026')"), "2");
    EXPECT_EQ(meeting("Date > Datevalue('jan 15,2026')"), "3");
    EXPECT_EQ(meeting("Date <= Datevalue('Jan 16, 2026')"), "2 3");
    EXPECT_EQ(meeting("Date = '20260116'"), "3");
    EXPECT_EQ(meeting("Date - Datevalue('Jan 1, 2026') = 14"), "2");
    EXPECT_EQ(meeting("Date + 1 = Datevalue('Jan 16, 2026')"), "2");
    EXPECT_EQ(meeting("1 + Date = Datevalue('Jan 16, 2026')"), "2");
}

TEST_F(Comparison, ArithmeticWorksOnRowsInMemoryToo) {
    EXPECT_EQ(meeting("Order * 2 - 1 = 5"), "3");
    EXPECT_EQ(meeting("-Order = -4"), "4");
    EXPECT_EQ(meeting("Order / 2 = 1.5"), "3");
    EXPECT_EQ(meeting("Month + Order = 5"), "5");
    EXPECT_EQ(meeting("Order / Month > 0"), "");
    EXPECT_EQ(meeting("UCASE(Value) = 'ABC'"), "6");
}

TEST_F(Comparison, WrongDateTextIsAConversionError) {
    for (const char* const criteria :
         {"Date = Datevalue('15.1.2026')", "Date = Datevalue('Feb 30, 2026')", "Date = 'today'"}) {
        testing::expect_error(ErrorKind::conversion, [&] {
            (void)company_.list("SELECT * FROM Word_table WHERE " + std::string(criteria));
        });
    }
    company_.db().Execute("UPDATE Word_table SET Date = '20260116'");
    Recordset rows = company_.snapshot("SELECT * FROM Word_table");
    testing::expect_error(ErrorKind::conversion, [&] { rows.FindFirst("Date = Datevalue('never')"); });
    testing::expect_error(ErrorKind::conversion, [&] { rows.FindFirst("Date = 'never'"); });
}

TEST_F(Comparison, KindsThatCannotMeetAreRefused) {
    for (const char* const criteria : {"Date = 5", "Date = Order", "Date = Print", "Value = Date",
                                       "Value = Print", "-Date = 1", "UCASE(Order) = 'X'"})
        testing::expect_error(ErrorKind::syntax, [&] {
            (void)company_.list("SELECT * FROM Word_table WHERE " + std::string(criteria));
        });
}

}  // namespace
}  // namespace brimley
