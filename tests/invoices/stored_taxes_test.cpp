// What the tax panels make of the taxes of a stored line: whether its amount includes them, and how the
// stored parts become shares again.
#include <gtest/gtest.h>

#include "support/sample_host.h"

namespace brimley::testing {

class StoredTaxes : public ::testing::Test {
  protected:
    // An invoice of another module's making: one line of 100.00 and one tax of 10.00 at 10 percent.
    void store_invoice(bool include_tax, FieldValues tax_slot) {
        company.add("AP_header_table", {{"fkey", "1ip-1"},
                                        {"docno", "IP-26-00001"},
                                        {"company", "1"},
                                        {"doctype", "ip"},
                                        {"Currency", "USD"},
                                        {"vendor_no", "V1001"},
                                        {"Source", "PO-BILL"}});
        auto lines = company.dynaset("SELECT * FROM AP_transaction_table WHERE 1 = 2");
        lines.AddNew();
        const FieldValues line{
            {"fkey", "1ip-1"},          {"pay_item", "1"},      {"gross_amount", 110.0},
            {"open_amount", 110.0},     {"tax_amount", 10.0},   {"taxable_amount", 100.0},
            {"po_accno", "5000"},       {"tax_code", "HALF10"}, {"include_tax", include_tax},
            {"tax_authority1", "HALF"}, {"tax_rate1", 10.0},    {"taxable_amount1", 100.0}};
        for (const auto& [field, value] : line)
            lines.set(field, value);
        for (const auto& [field, value] : tax_slot)
            lines.set(field, value);
        lines.Update();
        company.db().Execute("UPDATE Next_number_fkey_table SET fkeyno = 2 WHERE doctype = 'ip'");
        user.ap.showform_APform_invoice();
        for (const int panel : {131, 132})
            ASSERT_EQ(form().press(panel), controls::Refusal::none);
    }
    [[nodiscard]] invoices::APform_invoice& form() { return *user.ap.frm_invoice; }
    [[nodiscard]] std::string detail(const char* caption) { return form().taxes.grid_tax.cell(0, caption); }
    [[nodiscard]] std::string line(const char* caption) { return form().dbgrid1.cell(0, caption); }
    [[nodiscard]] std::string summary(const char* caption) {
        return form().taxes.grid_tax_summary.cell(0, caption);
    }
    // Allocated, recoverable and expensed tax of the panel.
    [[nodiscard]] std::string parts() {
        return detail("allocated tax") + " " + detail("recoverable tax") + " " + detail("expensed tax");
    }
    void change_rate(const char* rate) {
        form().grid_newmode();  // the panel takes no entry before
        const int column = form().taxes.grid_tax.get_column("rate");
        ASSERT_EQ(form().taxes.grid_tax.edit_cell(0, column, rate), controls::Refusal::none);
    }

    CompanyCopy company{sample_original()};
    DeskOfUser user{company.open()};
};

TEST_F(StoredTaxes, LineWhoseAmountIncludesTaxShowsItsGrossAmountAsTheBaseOfARate) {
    store_invoice(true, {{"tax_amount1", 10.0}, {"tax_recoverable1", 5.0}, {"tax_allocated1", 5.0}});
    EXPECT_EQ(detail("include tax"), "True");
    EXPECT_EQ(detail("amount"), "110");
    EXPECT_EQ(detail("rate"), "10");
    EXPECT_EQ(parts(), "5.00 5.00 0.00");
    // 25 percent taken out of 110.00.
    change_rate("25");
    EXPECT_EQ(detail("tax amount"), "22.00");
    EXPECT_EQ(detail("taxable amount"), "88.00");
    EXPECT_EQ(parts(), "11.00 11.00 0.00");
    // The line computes its tax from the rate and its own taxable amount all the same.
    EXPECT_EQ(line("tax amount"), "25.00");
    EXPECT_EQ(line("gross amount"), "125.00");
    EXPECT_EQ(form().txttotal.text(), "125.00");
}

TEST_F(StoredTaxes, LineWhoseAmountExcludesTaxShowsItsTaxableAmountAsTheBaseOfARate) {
    store_invoice(false, {{"tax_amount1", 10.0}, {"tax_recoverable1", 5.0}, {"tax_allocated1", 5.0}});
    EXPECT_EQ(detail("include tax"), "False");
    EXPECT_EQ(detail("amount"), "100");
    change_rate("25");
    EXPECT_EQ(detail("tax amount"), "25.00");
    EXPECT_EQ(detail("taxable amount"), "100.00");
    EXPECT_EQ(parts(), "12.50 12.50 0.00");
    EXPECT_EQ(line("tax amount"), "25.00");
    EXPECT_EQ(line("gross amount"), "125.00");
}

TEST_F(StoredTaxes, SummaryCountsStoredTaxesAsIncludedWhateverTheLineSays) {
    store_invoice(false, {{"tax_amount1", 10.0}, {"tax_recoverable1", 5.0}, {"tax_allocated1", 5.0}});
    EXPECT_EQ(summary("tax authority"), "HALF");
    EXPECT_EQ(summary("total tax"), "10.00");
    EXPECT_EQ(summary("tax"), "0.00");
    EXPECT_EQ(summary("tax included"), "10.00");
    // A code given anew builds rows that are not stored yet.
    form().grid_newmode();
    edit_line_cell(form(), 0, "tax code", "GST5");
    edit_line_cell(form(), 0, "taxable amount", "100.00");
    EXPECT_EQ(summary("tax authority"), "GST");
    EXPECT_EQ(summary("tax"), "5.00");
    EXPECT_EQ(summary("tax included"), "0.00");
}

TEST_F(StoredTaxes, StoredPartsBecomeTheSharesOfALaterRate) {
    // 40 percent back and the rest expensed, whatever the code says today.
    store_invoice(false, {{"tax_amount1", 10.0}, {"tax_recoverable1", 4.0}, {"tax_expensed1", 6.0}});
    change_rate("20");
    EXPECT_EQ(parts(), "0.00 8.00 12.00");
}

TEST_F(StoredTaxes, TaxOfNothingTakesItsShareFromTheCode) {
    store_invoice(false, {{"tax_amount1", 0.0}});
    change_rate("20");
    EXPECT_EQ(parts(), "10.00 10.00 0.00");
}

TEST_F(StoredTaxes, TaxOfNothingIsExpensedWhereTheCodeKeepsItOutOfTheCost) {
    company.db().Execute(
        "UPDATE Tax_code_details_table SET include_itemcost = FALSE WHERE tax_code = 'HALF10'");
    store_invoice(false, {{"tax_amount1", 0.0}});
    change_rate("20");
    EXPECT_EQ(parts(), "0.00 10.00 10.00");
}

TEST_F(StoredTaxes, TaxOfNothingOfAnUnknownCodeGoesIntoTheCost) {
    store_invoice(false, {{"tax_amount1", 0.0}, {"tax_code", "GONE"}});
    change_rate("20");
    EXPECT_EQ(parts(), "20.00 0.00 0.00");
}

TEST_F(StoredTaxes, TaxOfNothingIsExpensedWholeWhereTheCodeRefundsNothing) {
    store_invoice(false, {{"tax_amount1", 0.0}, {"tax_code", "EXP7"}, {"tax_authority1", "EXP"}});
    change_rate("20");
    EXPECT_EQ(parts(), "0.00 0.00 20.00");
}

// Neither the code's first authority nor another code of the same authority says how this tax is divided, and
// no part of it goes into the item's cost.
TEST_F(StoredTaxes, TaxOfNothingWithoutItemCostIsDividedAsItsAuthorityInItsCode) {
    const auto add_to_code = [this](const char* item_no, const char* authority, double percent_refund,
                                    bool include_itemcost) {
        company.add("Tax_code_details_table", {{"tax_code", "MIXED"},
                                               {"transaction_type", "purchase"},
                                               {"item_no", item_no},
                                               {"tax_authority", authority},
                                               {"percent_refund", percent_refund},
                                               {"include_itemcost", include_itemcost}});
    };
    add_to_code("1", "GST", 100, true);
    add_to_code("2", "HALF", 25, false);
    store_invoice(false, {{"tax_amount1", 0.0}, {"tax_code", "MIXED"}});
    change_rate("20");
    EXPECT_EQ(parts(), "0.00 5.00 15.00");
}

}  // namespace brimley::testing
