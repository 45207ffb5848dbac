// One-key look-ups, and the rows of a query as texts.
#include "support/kernel_test.h"

namespace brimley::testing {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Lookups : public KernelTest {
  protected:
    void SetUp() override {
        company.add("Vendor_table", {{"vendor_no", "V1"}, {"VENDOR_NAME", "Anders"}, {"ap_accno", "2100"}});
        company.add("Vendor_table", {{"vendor_no", "V2"}, {"VENDOR_NAME", "Borg"}, {"owing_balance", 12.5}});
        company.add("Fiscalyear_table", {{"fyear", "2026"}, {"history", true}});
    }
};

TEST_F(Lookups, FindGivesTheRowsWhoseFieldsHoldTheValues) {
    EXPECT_EQ(kernel.find("Vendor_table", {{"vendor_no", "V2"}}).text("VENDOR_NAME"), "Borg");
    EXPECT_TRUE(kernel.find("Vendor_table", {{"vendor_no", "V2"}, {"VENDOR_NAME", "Anders"}}).at_eof());
}

TEST_F(Lookups, FindToChangeCanBeEdited) {
    auto vendor = kernel.find_to_change("Vendor_table", {{"vendor_no", "V1"}});
    vendor.Edit();
    vendor.set("owing_balance", 1.0);
    vendor.Update();
    EXPECT_EQ(company.list("SELECT vendor_no, owing_balance FROM Vendor_table"), "V1 1 | V2 12.5");
}

TEST_F(Lookups, LookUpTellsNullFromNoRow) {
    EXPECT_EQ(kernel.look_up("Vendor_table", {{"vendor_no", "V2"}}, "owing_balance"), store::Value(12.5));
    EXPECT_EQ(kernel.look_up("Vendor_table", {{"vendor_no", "V1"}}, "owing_balance"), store::Value());
    EXPECT_EQ(kernel.look_up("Vendor_table", {{"vendor_no", "V3"}}, "owing_balance"), std::nullopt);
}

TEST_F(Lookups, TextIsEmptyForNullAndForNoRow) {
    EXPECT_EQ(kernel.look_up_text("Vendor_table", {{"vendor_no", "V1"}}, "ap_accno"), "2100");
    EXPECT_EQ(kernel.look_up_text("Vendor_table", {{"vendor_no", "V2"}}, "ap_accno"), "");
    EXPECT_EQ(kernel.look_up_text("Vendor_table", {{"vendor_no", "V3"}}, "ap_accno"), "");
}

TEST_F(Lookups, ExistsTellsWhetherThereIsSuchARow) {
    EXPECT_TRUE(kernel.exists("Vendor_table", {{"vendor_no", "V1"}, {"ap_accno", "2100"}}));
    EXPECT_FALSE(kernel.exists("Vendor_table", {{"vendor_no", "V2"}, {"ap_accno", "2100"}}));
}

TEST_F(Lookups, ValueWithAQuoteIsASyntaxError) {
    EXPECT_THROW((void)kernel.exists("Vendor_table", {{"vendor_no", "V' OR '1' = '1"}}), store::Error);
}

TEST_F(Lookups, RowsOfAQueryAreTextsInTheOrderOfItsColumns) {
    EXPECT_THAT(kernel.rows_of("SELECT VENDOR_NAME, vendor_no, owing_balance FROM Vendor_table "
                               "ORDER BY vendor_no DESC"),
                ElementsAre(ElementsAre("Borg", "V2", "12.5"), ElementsAre("Anders", "V1", "")));
    EXPECT_THAT(kernel.rows_of("SELECT fyear, history FROM Fiscalyear_table"),
                ElementsAre(ElementsAre("2026", "TRUE")));
    EXPECT_THAT(kernel.rows_of("SELECT vendor_no FROM Vendor_table WHERE 1 = 2"), IsEmpty());
}

TEST_F(Lookups, FieldThatARecordsetLacksIsNull) {
    auto vendor = company.dynaset("SELECT vendor_no FROM Vendor_table");
    EXPECT_EQ(vendor.field_or_null("vendor_no"), store::Value("V1"));
    EXPECT_EQ(vendor.field_or_null("ap_accno"), store::Value());
    vendor.Edit();
    vendor.set("vendor_no", "V9");
    EXPECT_EQ(vendor.field_or_null("vendor_no"), store::Value("V9"));
}

}  // namespace brimley::testing
