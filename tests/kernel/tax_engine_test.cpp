#include "kernel/tax_engine.h"

#include "support/kernel_test.h"

namespace brimley::testing {

using kernel::TaxMode;
using kernel::TaxRow;
using kernel::TaxRows;
using kernel::TaxTotals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class TaxEngine : public KernelTest {
  protected:
    struct Authority {
        const char* name;
        double rate;
        bool taxable;
        double percent_refund;
        bool include_itemcost;
        store::Value min_charged = {};
        store::Value max_charged = {};
    };
    // The authority becomes the next item of the code.
    void add_to_code(const char* tax_code, const Authority& authority) {
        company.add("Tax_authority_table", {{"tax_authority", authority.name},
                                            {"Rate", authority.rate},
                                            {"min_charged", authority.min_charged},
                                            {"max_charged", authority.max_charged}});
        company.add("Tax_code_details_table", {{"tax_code", tax_code},
                                               {"transaction_type", "purchase"},
                                               {"item_no", std::to_string(++items)},
                                               {"tax_authority", authority.name},
                                               {"taxable", authority.taxable},
                                               {"percent_refund", authority.percent_refund},
                                               {"include_itemcost", authority.include_itemcost}});
    }
    void add_stacked_code() {
        add_to_code("STACK", {"A", 5, true, 100, false});
        add_to_code("STACK", {"B", 7, false, 0, true});
    }
    TaxTotals build(double amount, TaxMode mode = TaxMode::taxable_amount, const char* code = "STACK") {
        return rows.rebuild(kernel, "1", code, amount, mode);
    }
    // taxable amount, tax; recoverable, allocated, expensed.
    static std::string amounts(const TaxRow& row) {
        return fmt::format("{} {}; {} {} {}", row.taxable_amount, row.tax_amount, row.recoverable,
                           row.allocated, row.expensed);
    }
    std::string amounts_of(std::size_t place) { return amounts(rows.all().at(place)); }

    TaxRows rows;
    int items = 0;
};

TEST_F(TaxEngine, TaxableAmountGetsItsTaxesOnTop) {
    add_stacked_code();
    const TaxTotals totals = build(100);
    EXPECT_DOUBLE_EQ(totals.tax, 12.35);
    EXPECT_DOUBLE_EQ(totals.allocated, 7.35);
    ASSERT_EQ(rows.all().size(), 2U);
    // On the first computation a taxed tax shows in its own taxable amount.
    EXPECT_EQ(amounts_of(0), "105.00 5.00; 5.00 0.00 0.00");
    EXPECT_EQ(amounts_of(1), "105.00 7.35; 0.00 7.35 0.00");
}

TEST_F(TaxEngine, GrossAmountHasItsTaxesDividedOutAndIsNoInverse) {
    add_stacked_code();
    static_cast<void>(build(100));
    const TaxTotals totals = rows.recompute("1", 112.35, TaxMode::gross_amount);
    EXPECT_DOUBLE_EQ(totals.tax, 13.05);
    EXPECT_EQ(amounts_of(0), "107.00 5.35; 5.35 0.00 0.00");
    EXPECT_EQ(amounts_of(1), "110.00 7.70; 0.00 7.70 0.00");
}

TEST_F(TaxEngine, RecomputedTaxableAmountLeavesAnAuthoritysOwnTaxOut) {
    add_stacked_code();
    static_cast<void>(build(1));
    const TaxTotals totals = rows.recompute("1", 100, TaxMode::taxable_amount);
    EXPECT_DOUBLE_EQ(totals.tax, 12.35);
    EXPECT_EQ(amounts_of(0), "100.00 5.00; 5.00 0.00 0.00");
    EXPECT_EQ(amounts_of(1), "105.00 7.35; 0.00 7.35 0.00");
}

TEST_F(TaxEngine, NewRowsTellTheirLineCodeSequenceAndAmount) {
    add_stacked_code();
    static_cast<void>(build(100));
    const TaxRow& second = rows.all().at(1);
    EXPECT_EQ(second.sequence, "2");
    EXPECT_EQ(second.authority, "B");
    EXPECT_EQ(second.rate, 7);
    EXPECT_EQ(second.pay_item, "1");
    EXPECT_EQ(second.tax_code, "STACK");
    EXPECT_EQ(second.include_tax, "");
    EXPECT_EQ(second.line_amount, "100");
    EXPECT_FALSE(second.taxable);
    EXPECT_TRUE(second.include_itemcost);
    EXPECT_TRUE(rows.all().at(0).taxable);
}

TEST_F(TaxEngine, ZeroRateGivesNoTaxInEitherMode) {
    add_to_code("NOTAX", {"ZERO", 0, false, 0, true});
    EXPECT_EQ(build(100, TaxMode::gross_amount, "NOTAX").tax, 0);
    EXPECT_EQ(amounts_of(0), "100.00 0.00; 0.00 0.00 0.00");
    EXPECT_EQ(rows.recompute("1", 55, TaxMode::taxable_amount).tax, 0);
    EXPECT_EQ(amounts_of(0), "55.00 0.00; 0.00 0.00 0.00");
}

TEST_F(TaxEngine, LeastTaxAppliesToTheFirstComputationOnly) {
    add_to_code("LEVY", {"L", 1.5, false, 0, true, 2, 50});
    EXPECT_EQ(build(100, TaxMode::taxable_amount, "LEVY").tax, 2);
    EXPECT_EQ(rows.recompute("1", 100, TaxMode::taxable_amount).tax, 1.5);
}

TEST_F(TaxEngine, MostTaxAppliesToTheFirstComputationOnly) {
    add_to_code("LEVY", {"L", 1.5, false, 0, true, 2, 50});
    EXPECT_EQ(build(10000, TaxMode::taxable_amount, "LEVY").tax, 50);
    EXPECT_EQ(rows.recompute("1", 10000, TaxMode::taxable_amount).tax, 150);
}

TEST_F(TaxEngine, LimitsOfNullOrZeroAreNone) {
    add_to_code("FREE", {"F", 10, false, 0, true, 0, 0});
    EXPECT_EQ(build(10000, TaxMode::taxable_amount, "FREE").tax, 1000);
    EXPECT_EQ(rows.rebuild(kernel, "2", "FREE", 0.01, TaxMode::taxable_amount).tax, 0);
}

TEST_F(TaxEngine, LimitedTaxIsWhatLaterAuthoritiesTax) {
    add_to_code("MIN", {"M", 1, true, 0, true, 20});
    add_to_code("MIN", {"N", 10, false, 0, true});
    EXPECT_DOUBLE_EQ(build(100, TaxMode::taxable_amount, "MIN").tax, 32);
    EXPECT_EQ(amounts_of(0), "120.00 20.00; 0.00 20.00 0.00");
    EXPECT_EQ(amounts_of(1), "120.00 12.00; 0.00 12.00 0.00");
}

TEST_F(TaxEngine, RestOfAPartlyRefundedTaxGoesIntoTheItemOrTheExpense) {
    add_to_code("PART", {"H", 10, false, 30, true});
    add_to_code("PART", {"I", 10, false, 30, false});
    const TaxTotals totals = build(100.6, TaxMode::taxable_amount, "PART");
    EXPECT_EQ(amounts_of(0), "100.60 10.06; 3.02 7.04 0.00");
    EXPECT_EQ(amounts_of(1), "100.60 10.06; 3.02 0.00 7.04");
    EXPECT_DOUBLE_EQ(totals.allocated, 7.04);
}

TEST_F(TaxEngine, FullRefundLeavesNothingToSpread) {
    const auto split = kernel::split_tax(12.34, 100, false);
    EXPECT_EQ(split.recoverable, 12.34);
    EXPECT_EQ(split.allocated, 0);
    EXPECT_EQ(split.expensed, 0);
}

TEST_F(TaxEngine, TaxIsRoundedToTheEvenCent) {
    EXPECT_EQ(kernel::compute_tax(TaxMode::taxable_amount, 212.5, 0, 1), 2.12);
    EXPECT_EQ(kernel::compute_tax(TaxMode::taxable_amount, 237.5, 0, 1), 2.38);
}

TEST_F(TaxEngine, BaseOfZeroOrLessIsNotAdded) {
    EXPECT_EQ(kernel::compute_tax(TaxMode::taxable_amount, 100, 0, 10), 10);
    EXPECT_EQ(kernel::compute_tax(TaxMode::taxable_amount, 100, -5, 10), 10);
    EXPECT_EQ(kernel::compute_tax(TaxMode::taxable_amount, 100, 5, 10), 10.5);
}

TEST_F(TaxEngine, NewCodeAfterTheAmountGivesItsRowsWithoutTax) {
    add_stacked_code();
    EXPECT_EQ(build(100, TaxMode::tax_code).tax, 0);
    ASSERT_EQ(rows.all().size(), 2U);
    EXPECT_EQ(amounts_of(0), "100.00 0.00; 0.00 0.00 0.00");
}

TEST_F(TaxEngine, SixthAuthorityCountsInTheTax) {
    for (const char* name : {"S1", "S2", "S3", "S4", "S5", "S6"})
        add_to_code("SIX", {name, 1, false, 0, true});
    EXPECT_DOUBLE_EQ(build(100, TaxMode::taxable_amount, "SIX").tax, 6);
    EXPECT_EQ(rows.all().size(), 6U);
    EXPECT_EQ(rows.all().back().sequence, "6");
}

TEST_F(TaxEngine, AuthoritiesComeInTheOrderOfTheirItems) {
    add_to_code("ORDER", {"first", 1, false, 0, true});
    company.add("Tax_authority_table", {{"tax_authority", "zero"}, {"Rate", 2}});
    company.add("Tax_code_details_table", {{"tax_code", "ORDER"},
                                           {"transaction_type", "purchase"},
                                           {"item_no", "0"},
                                           {"tax_authority", "zero"}});
    static_cast<void>(build(100, TaxMode::taxable_amount, "ORDER"));
    EXPECT_EQ(rows.all().at(0).authority, "zero");
    EXPECT_EQ(rows.all().at(1).authority, "first");
}

TEST_F(TaxEngine, SalesRowsOfACodeAreLeftOut) {
    add_stacked_code();
    company.add(
        "Tax_code_details_table",
        {{"tax_code", "STACK"}, {"transaction_type", "sales"}, {"item_no", "3"}, {"tax_authority", "A"}});
    static_cast<void>(build(100));
    EXPECT_EQ(rows.all().size(), 2U);
}

TEST_F(TaxEngine, UnknownCodeHasNoRows) {
    EXPECT_EQ(build(100, TaxMode::taxable_amount, "NONE").tax, 0);
    EXPECT_THAT(rows.all(), IsEmpty());
}

TEST_F(TaxEngine, DefaultCodeIsTheOneForPurchases) {
    company.add("Tax_code_table", {{"tax_code", "S"}, {"transaction_type", "sales"}, {"default", true}});
    EXPECT_EQ(kernel::default_purchase_tax_code(kernel), std::nullopt);
    EXPECT_THAT(messages(), ElementsAre("Default Tax code has not been set"));
    company.add("Tax_code_table", {{"tax_code", "P"}, {"transaction_type", "purchase"}, {"default", true}});
    EXPECT_EQ(kernel::default_purchase_tax_code(kernel), "P");
    EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(TaxEngine, RowsFollowTheirLineWhenLinesAreNumberedAfresh) {
    add_to_code("ONE", {"O", 1, false, 0, true});
    for (const char* item : {"1", "2", "3"})
        static_cast<void>(rows.rebuild(kernel, item, "ONE", 100, TaxMode::taxable_amount));
    rows.all().at(2).authority = "of the third";
    rows.renumber([](const std::string& old_number) {
        return old_number == "1" ? "1" : old_number == "3" ? "2" : "";
    });
    ASSERT_EQ(rows.all().size(), 2U);
    ASSERT_NE(rows.find("2", "1"), nullptr);
    EXPECT_EQ(rows.find("2", "1")->authority, "of the third");
    EXPECT_EQ(rows.find("3", "1"), nullptr);
}

TEST_F(TaxEngine, RecomputingOneLineLeavesTheOthers) {
    add_to_code("ONE", {"O", 10, false, 0, true});
    static_cast<void>(rows.rebuild(kernel, "1", "ONE", 100, TaxMode::taxable_amount));
    static_cast<void>(rows.rebuild(kernel, "2", "ONE", 200, TaxMode::taxable_amount));
    EXPECT_EQ(rows.recompute("2", 50, TaxMode::taxable_amount).tax, 5);
    EXPECT_EQ(rows.find("1", "1")->tax_amount, "10.00");
    rows.remove_item("1");
    EXPECT_EQ(rows.all().size(), 1U);
}

TEST_F(TaxEngine, SummaryAddsUpByAuthorityInOrderOfFirstAppearance) {
    add_stacked_code();
    static_cast<void>(build(100));
    static_cast<void>(rows.rebuild(kernel, "2", "STACK", 200, TaxMode::taxable_amount));
    rows.all().at(2).include_tax = "0";
    std::vector<kernel::AuthorityTotals> totals;
    for (const TaxRow& row : rows.all())
        kernel::store_tax(totals, row);
    ASSERT_EQ(totals.size(), 2U);
    EXPECT_EQ(totals[0].authority, "A");
    EXPECT_DOUBLE_EQ(totals[0].tax, 15);
    EXPECT_DOUBLE_EQ(totals[0].tax_of_new_rows, 5);
    EXPECT_DOUBLE_EQ(totals[0].tax_of_stored_rows, 10);
    EXPECT_DOUBLE_EQ(totals[0].split.recoverable, 15);
    EXPECT_DOUBLE_EQ(totals[1].tax, 22.05);
    EXPECT_DOUBLE_EQ(totals[1].split.allocated, 22.05);
}

}  // namespace brimley::testing
