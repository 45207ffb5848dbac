// UPDATE and DELETE.
#include <gtest/gtest.h>

#include "store/small_company.h"
#include "support/expect_error.h"

namespace brimley {
namespace {

using store::DateTime;
using store::ErrorKind;
using store::Value;
using testing::expect_error;
using testing::SmallCompany;

class Change : public ::testing::Test {
  protected:
    void SetUp() override {
        for (const char* const docno : {"A1", "B2", "C3"})
            company_.add("Header_table", {{"docno", docno}, {"company", "1"}, {"amount", 10}});
    }
    std::int64_t execute(const std::string& statement) { return company_.db().Execute(statement); }

    SmallCompany company_;
};

TEST_F(Change, UpdateTellsHowManyRowsItMet) {
    EXPECT_EQ(execute("UPDATE Header_table SET paid = TRUE, hold = true WHERE docno = 'A1' AND company = 1"),
              1);
    EXPECT_EQ(execute("UPDATE [header_table] SET [PAID]=FALSE ,amount = 5"), 3);
    EXPECT_EQ(execute("UPDATE Header_table SET paid = TRUE WHERE docno = 'nowhere'"), 0);
    EXPECT_EQ(company_.list("SELECT amount FROM Header_table WHERE hold"), "5");
}

TEST_F(Change, UpdateStoresAsAFieldDoes) {
    execute(
        "UPDATE Header_table SET docno = 7, amount = '12.5', invoice_date = '20260115', hold = 'yes', "
        "vendor_no = "
        "NULL, company = 'it is -- ; x' WHERE docno = 'A1'");
    auto row = company_.snapshot("SELECT * FROM Header_table WHERE docno = '7'");
    EXPECT_EQ(row.number("amount"), 12.5);
    EXPECT_EQ(row.field("invoice_date"), Value(*DateTime::from_ymd(2026, 1, 15)));
    EXPECT_TRUE(row.flag("hold"));
    EXPECT_TRUE(row.field("vendor_no").is_null());
    EXPECT_EQ(row.text("company"), "it is -- ; x");
    expect_error(ErrorKind::conversion, [&] { execute("UPDATE Header_table SET amount = 'ten'"); });
    expect_error(ErrorKind::conversion, [&] { execute("UPDATE Header_table SET invoice_date = 'today'"); });
    expect_error(ErrorKind::conversion, [&] { execute("UPDATE Header_table SET hold = 'perhaps'"); });
}

TEST_F(Change, UpdateComputesFromTheOldValues) {
    execute("UPDATE Header_table SET amount = amount - 2.5, vendor_no = docno WHERE docno = 'A1'");
    EXPECT_EQ(company_.list("SELECT amount FROM Header_table WHERE vendor_no = 'A1'"), "7.5");
    execute("UPDATE Header_table SET amount = NULL");
    execute("UPDATE Header_table SET amount = amount - 3");
    EXPECT_EQ(company_.list("SELECT amount FROM Header_table"), "-3 -3 -3");
    execute("UPDATE Header_table SET paid = amount < 0, invoice_date = Datevalue('Jan 5, 2026') + 1");
    EXPECT_EQ(company_.list("SELECT invoice_date FROM Header_table WHERE paid"),
              "2026-01-06 2026-01-06 2026-01-06");
}

TEST_F(Change, ConditionThatNullLeavesOpenIsStoredAsFalse) {
    execute("UPDATE Header_table SET amount = NULL, paid = TRUE WHERE docno = 'A1'");
    execute("UPDATE Header_table SET paid = amount > 5");
    EXPECT_EQ(company_.list("SELECT paid FROM Header_table"), "FALSE TRUE TRUE");
}

TEST_F(Change, DeleteTakesTheStarOrNot) {
    EXPECT_EQ(execute("DELETE * FROM Header_table WHERE docno = 'A1'"), 1);
    EXPECT_EQ(execute("delete from [Header_table] where docno = 'B2'"), 1);
    EXPECT_EQ(company_.list("SELECT docno FROM Header_table"), "C3");
    EXPECT_EQ(execute("DELETE * FROM Header_table"), 1);
}

TEST_F(Change, ConstraintsAreTheirOwnError) {
    company_.add("Counter_table", {{"company", 1}, {"doctype", "ip"}});
    expect_error(ErrorKind::constraint, [&] {
        company_.add("Counter_table", {{"company", 1}, {"doctype", "ip"}});
    });
    EXPECT_EQ(company_.count("Counter_table"), 1);
}

}  // namespace
}  // namespace brimley
