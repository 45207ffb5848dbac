// What fields accept and how they hold it.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <optional>

#include "store/small_company.h"
#include "support/expect_error.h"

namespace brimley {
namespace {

using store::DateTime;
using store::ErrorKind;
using store::Recordset;
using store::Value;
using testing::expect_error;
using testing::SmallCompany;

class FieldValue : public ::testing::Test {
  protected:
    // What a new row holds in the field after the value was stored into it, seen by another user.
    Value stored(const std::string& table, const std::string& field, const Value& value) {
        Recordset rows = company_.dynaset("SELECT * FROM " + table + " WHERE 1 = 2");
        rows.AddNew();
        rows.set(field, value);
        const Value before_update = rows.field(field);
        rows.Update();
        auto other = company_.second_user();
        Recordset seen =
            other.database->OpenRecordset("SELECT * FROM " + table, store::RecordsetKind::snapshot);
        seen.MoveLast();
        EXPECT_EQ(seen.field(field), before_update);
        return seen.field(field);
    }
    void expect_refused(const std::string& table, const std::string& field, const Value& value) {
        Recordset rows = company_.dynaset("SELECT * FROM " + table + " WHERE 1 = 2");
        rows.AddNew();
        const Value before = rows.field(field);
        expect_error(ErrorKind::conversion, [&] { rows.set(field, value); });
        EXPECT_EQ(rows.field(field), before);
    }

    SmallCompany company_;
};

TEST_F(FieldValue, NumberIntoTextBecomesPlainDigits) {
    EXPECT_EQ(stored("Line_table", "pay_item", 3), Value("3"));
    EXPECT_EQ(stored("Line_table", "pay_item", 3.0), Value("3"));
    EXPECT_EQ(stored("Line_table", "pay_item", -12.5), Value("-12.5"));
    expect_refused("Line_table", "pay_item", std::numeric_limits<double>::infinity());
}

TEST_F(FieldValue, FlagIntoTextBecomesItsWord) {
    EXPECT_EQ(stored("Line_table", "pay_item", true), Value("TRUE"));
    EXPECT_EQ(stored("Line_table", "pay_item", false), Value("FALSE"));
}

TEST_F(FieldValue, TextKeepsEveryByteOrIsRefused) {
    const std::string good("a\b\n;--'\"\xc3\xa4\xf0\x9f\x98\x80 \x1a\x01");
    EXPECT_EQ(stored("Line_table", "fkey", good), Value(good));
    for (const std::string& bad :
         {std::string("a\0b", 3), std::string("\xff"), std::string("\xc3 "), std::string("\xc0\x80"),
          std::string("\xed\xa0\x80"), std::string("\xe2\x82")}) {
        if (testing::tests_run_on_server())
            expect_error(ErrorKind::conversion, [&] { (void)stored("Line_table", "fkey", bad); });
        else
            EXPECT_EQ(stored("Line_table", "fkey", bad), Value(bad));
    }
    EXPECT_EQ(stored("Line_table", "fkey", ""), Value(""));
    EXPECT_EQ(stored("Line_table", "fkey", std::string(100000, 'x')), Value(std::string(100000, 'x')));
}

TEST_F(FieldValue, ColumnIsTheFieldOfItsName) {
    Recordset rows = company_.dynaset("SELECT open_amount,fkey FROM Line_table WHERE 1 = 2");
    rows.AddNew();
    rows.set_column(rows.column_of("FKEY"), "1ip-1");
    rows.set_column(rows.column_of("open_amount"), 12.5);
    EXPECT_EQ(rows.field("fkey"), Value("1ip-1"));
    EXPECT_EQ(rows.column(0), Value(12.5));
    expect_error(ErrorKind::conversion, [&] { rows.set_column(0, "twelve"); });
    expect_error(ErrorKind::name, [&] { (void)rows.column_of("docno"); });
    expect_error(ErrorKind::name, [&] { (void)rows.column(2); });
    expect_error(ErrorKind::name, [&] { rows.set_column(1000, 1); });
    expect_error(ErrorKind::name, [&] { rows.set_column(-1, 1); });
}

TEST_F(FieldValue, FieldThatTheQueryDoesNotNameCanBeSetButNotRead) {
    Recordset rows = company_.dynaset("SELECT fkey FROM Line_table WHERE 1 = 2");
    rows.AddNew();
    rows.set("fkey", "1ip-1");
    rows.set("open_amount", 12.5);
    rows.Update();
    rows.Bookmark(rows.LastModified());
    rows.Edit();
    rows.set_column(rows.column_to_set("OPEN_AMOUNT"), 13.5);
    rows.set("docno", "IP-26-1");
    expect_error(ErrorKind::name, [&] { (void)rows.field("docno"); });
    expect_error(ErrorKind::name, [&] { rows.set("no_such_field", 1); });
    expect_error(ErrorKind::conversion, [&] { rows.set("open_amount", "twelve"); });
    rows.Update();
    EXPECT_EQ(rows.column_count(), 1);
    const Recordset stored = company_.dynaset("SELECT * FROM Line_table WHERE fkey = '1ip-1'");
    EXPECT_EQ(stored.field("open_amount"), Value(13.5));
    EXPECT_EQ(stored.field("docno"), Value("IP-26-1"));
}

TEST_F(FieldValue, FieldThatTheQueryRenamesIsSetInItsColumn) {
    Recordset rows = company_.dynaset("SELECT fkey AS document FROM Line_table WHERE 1 = 2");
    rows.AddNew();
    rows.set("fkey", "1ip-1");
    EXPECT_EQ(rows.field("document"), Value("1ip-1"));
}

TEST_F(FieldValue, ManyNumbersAreReadAndSetAtOnce) {
    Recordset rows = company_.dynaset("SELECT open_amount,pay_item FROM Line_table WHERE 1 = 2");
    rows.AddNew();
    const std::array columns{rows.column_of("open_amount"), rows.column_to_set("lineno")};
    rows.set_numbers(columns, std::array{12.5, 20.0});
    std::array<std::optional<double>, 2> read{7, 7};
    rows.numbers(std::array{0, 1}, read);
    EXPECT_EQ(read[0], 12.5);
    EXPECT_EQ(read[1], std::nullopt);
    expect_error(ErrorKind::name, [&] { rows.numbers(columns, read); });
    rows.Update();
    const Recordset stored = company_.dynaset("SELECT * FROM Line_table");
    EXPECT_EQ(stored.field("lineno"), Value(20));
}

TEST_F(FieldValue, RowInWhichNothingWasSetIsStored) {
    Recordset rows = company_.dynaset("SELECT * FROM Line_table WHERE 1 = 2");
    rows.AddNew();
    rows.Update();
    rows.MoveLast();
    for (int column = 0; column < rows.column_count(); ++column) {
        const bool flag = rows.column_type(column) == store::FieldType::yes_no;
        EXPECT_EQ(rows.column(column), flag ? Value(false) : Value()) << rows.column_name(column);
    }
}

TEST_F(FieldValue, ChangedRowShowsValuesOfAnyLength) {
    Recordset rows = company_.dynaset("SELECT * FROM Line_table WHERE 1 = 2");
    rows.AddNew();
    rows.set("fkey", "1ip-1");
    rows.set("pay_item", "2");
    rows.Update();
    rows.MoveLast();
    for (const Value& value : {Value("1ip-2"), Value("1ip-10"), Value(""), Value(),
                               Value(std::string(300, 'k')), Value(std::string(300, 'm'))}) {
        rows.Edit();
        rows.set("fkey", value);
        rows.set("open_amount", 1.5);
        rows.Update();
        EXPECT_EQ(rows.field("fkey"), value);
        EXPECT_EQ(rows.field("open_amount"), Value(1.5));
        EXPECT_EQ(rows.field("pay_item"), Value("2"));
    }
}

TEST_F(FieldValue, TextIntoNumberMustBeANumber) {
    EXPECT_EQ(stored("Line_table", "open_amount", " 12.50 "), Value(12.5));
    EXPECT_EQ(stored("Line_table", "open_amount", ""), Value());
    EXPECT_EQ(stored("Line_table", "open_amount", true), Value(1));
    expect_refused("Line_table", "open_amount", "12a");
    expect_refused("Line_table", "open_amount", "1,000");
    expect_refused("Line_table", "open_amount", " ");
    expect_refused("Line_table", "open_amount", DateTime{});
    expect_refused("Line_table", "open_amount", std::nan(""));
    expect_refused("Line_table", "open_amount", -std::numeric_limits<double>::infinity());
}

TEST_F(FieldValue, MoneyIsHeldUnrounded) {
    EXPECT_EQ(stored("Line_table", "open_amount", 0.1 + 0.2), Value(0.1 + 0.2));
    EXPECT_EQ(stored("Line_table", "open_amount", 1e300), Value(1e300));
}

TEST_F(FieldValue, IntegerTakesWholeNumbersOnly) {
    EXPECT_EQ(stored("Line_table", "lineno", 7), Value(7));
    EXPECT_EQ(stored("Line_table", "lineno", "7.0"), Value(7));
    expect_refused("Line_table", "lineno", 7.5);
    expect_refused("Line_table", "lineno", 1e17);
    expect_refused("Line_table", "lineno", "seven");
}

TEST_F(FieldValue, EightDigitsAreADate) {
    EXPECT_EQ(stored("Line_table", "due_date", "20260115"), Value(*DateTime::from_ymd(2026, 1, 15)));
    for (const char* const text : {"", "2026-01-15", "20261301", "2026011", "202601155", "x0260115"})
        expect_refused("Line_table", "due_date", text);
    expect_refused("Line_table", "due_date", 46037);
}

TEST_F(FieldValue, DateAndTimeAreKeptToTheSecondAndADateWithoutItsTime) {
    for (const int second : {0, 1, 43199, 43200, 86398, 86399}) {
        for (const int day : {-200000, -1, 0, 20468, 400000}) {
            const DateTime moment{day, second};
            Recordset rows = company_.dynaset("SELECT * FROM Line_table WHERE 1 = 2");
            rows.AddNew();
            rows.set("created", moment);
            rows.set("due_date", moment);
            rows.Update();
            rows.Bookmark(rows.LastModified());
            EXPECT_EQ(rows.field("created"), Value(moment));
            EXPECT_EQ(rows.field("due_date"), Value(moment.date_only()));
        }
    }
}

TEST_F(FieldValue, FlagTakesNumbersAndWords) {
    EXPECT_EQ(stored("Line_table", "hold", -1), Value(true));
    EXPECT_EQ(stored("Line_table", "hold", 0), Value(false));
    EXPECT_EQ(stored("Line_table", "hold", "yes"), Value(true));
    EXPECT_EQ(stored("Line_table", "hold", "False"), Value(false));
    expect_refused("Line_table", "hold", "perhaps");
    expect_refused("Line_table", "hold", DateTime{});
}

TEST_F(FieldValue, FlagIsFalseOnANewRowUnlessItMayBeNull) {
    company_.add("Word_table", {{"Value", "x"}});
    Recordset rows = company_.snapshot("SELECT * FROM Word_table");
    EXPECT_EQ(rows.field("Print"), Value(false));
    EXPECT_EQ(rows.field("maybe"), Value());
    EXPECT_EQ(rows.field("Month"), Value());
    EXPECT_EQ(stored("Word_table", "Print", Value()), Value(false));
    EXPECT_EQ(stored("Word_table", "maybe", Value()), Value());
    EXPECT_EQ(stored("Word_table", "maybe", false), Value(false));
}

TEST_F(FieldValue, UnknownAndComputedFieldsCannotBeSet) {
    Recordset rows = company_.dynaset("SELECT docno, -1 * amount AS amount FROM Header_table WHERE 1 = 2");
    rows.AddNew();
    expect_error(ErrorKind::name, [&] { rows.set("nothing", 1); });
    expect_error(ErrorKind::name, [&] { (void)rows.field("nothing"); });
    expect_error(ErrorKind::name, [&] { rows.set("row_id", 1); });
    expect_error(ErrorKind::state, [&] { rows.set("amount", 1); });
    rows.set("docno", "d");
    rows.Update();
    EXPECT_EQ(company_.count("Header_table WHERE docno = 'd' AND paid = FALSE AND amount IS NULL"), 1);
}

}  // namespace
}  // namespace brimley
