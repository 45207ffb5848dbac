// The tax grid on a grid of its own, as two forms call things: one whose amounts always have the tax in them,
// and one with a box for that.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "frame/grid_form.h"
#include "frame/tax_grid.h"
#include "plain_form.h"

namespace brimley::testing {

using controls::Refusal;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

constexpr frame::TaxedLines kGrossLines{.pay_item = "pay item",
                                        .tax_code = "tax code",
                                        .tax_amount = "tax amount",
                                        .amount = "gross amount",
                                        .net_amount = "taxable amount",
                                        .open_amount = "open amount",
                                        .stored_amount = "gross_amount",
                                        .stored_net_amount = "taxable_amount",
                                        .no_element = "cannot find tax element for pay item "};
constexpr frame::FormIdentity kGrossIdentity{"APform_invoice", "Gross", ""};

constexpr frame::TaxedLines kLinesWithBox{.pay_item = "pay item",
                                          .tax_code = "tax code",
                                          .tax_amount = "tax amount",
                                          .amount = "amount",
                                          .net_amount = "net amount",
                                          .allocated_tax = "allocated tax",
                                          .tax_included = "tax included",
                                          .stored_amount = "pay_amount",
                                          .stored_net_amount = "pay_amount",
                                          .no_element = "cannot find tax element for item no "};
constexpr frame::FormIdentity kIdentityWithBox{"APform_misc_payment", "With box", ""};

}  // namespace

// A grid whose rows are numbered as they stand, and the tax grid over it.
class TaxedForm : public frame::GridForm {
  public:
    TaxedForm(const frame::FormIdentity& identity, const frame::TaxedLines& taxed, const PlainHost& host,
              std::shared_ptr<kernel::ModuleG3> kernel, frame::Desk& desk)
        : GridForm(identity, host.context(), std::move(kernel), desk), taxes(*this, dbgrid1, taxed) {}

    frame::TaxGrid taxes;
    int times_computed = 0;

  protected:
    void Form_Load() override {
        build_grids();
        taxes.connect_drop_down();
        taxes.clear();
        taxes.set_editable(true);
        taxes.on_computed = [this] { ++times_computed; };
        dbgrid1.allow_update = true;
        dbgrid1.array.dimension(5);
        for (int row = 0; row < 5; ++row)
            dbgrid1.set_cell(row, "pay item", std::to_string(row + 1));
        dbgrid1.on_before_update = [this](controls::CellEdit& edit) {
            if (edit.caption == "tax code") edit.cancel = !taxes.accepts_tax_code(edit.new_text);
        };
        dbgrid1.on_after_update = [this](int column) {
            const auto mode = taxes.mode_of(dbgrid1.columns[static_cast<std::size_t>(column)].caption);
            if (mode) taxes.tax_calculate_from_xarray(dbgrid1.row(), *mode);
            taxes.refresh_panels();
        };
        dbgrid1.on_row_col_change = [this](int, int) { taxes.refresh_panels(); };
    }
    void init_toolbar() override {}
    void CommandBars1_Execute(int) override {}
    [[nodiscard]] std::vector<controls::Grid*> grids() override {
        return {&dbgrid1, &taxes.grid_tax, &taxes.grid_tax_summary};
    }
};

class TaxGridTest : public ::testing::Test {
  protected:
    TaxGridTest(const frame::FormIdentity& identity, const frame::TaxedLines& taxed)
        : form(std::make_shared<TaxedForm>(
              identity, taxed, host, std::make_shared<kernel::ModuleG3>(host.context().abcdb, host.desk),
              host.desk)) {
        form->show();
    }
    void enter(int row, const char* caption, const char* text) {
        const int column = form->dbgrid1.get_column(caption);
        ASSERT_EQ(form->dbgrid1.edit_cell(row, column, text), Refusal::none) << caption;
    }
    void change_panel(int row, const char* caption, const char* text) {
        const int column = form->taxes.grid_tax.get_column(caption);
        ASSERT_EQ(form->taxes.grid_tax.edit_cell(row, column, text), Refusal::none) << caption;
    }
    // Cells of a row, parted by blanks.
    static std::string cells(const controls::Grid& grid, int row,
                             std::initializer_list<const char*> captions) {
        std::string text;
        for (const char* caption : captions)
            text += (text.empty() ? "" : " ") + grid.cell(row, caption);
        return text;
    }
    [[nodiscard]] std::string detail(int row, std::initializer_list<const char*> captions) {
        return cells(form->taxes.grid_tax, row, captions);
    }
    [[nodiscard]] std::string summary(int row) {
        return cells(form->taxes.grid_tax_summary, row,
                     {"no", "tax authority", "total tax", "tax", "tax included", "allocated tax",
                      "recoverable tax", "expensed tax"});
    }

    PlainHost host;
    std::shared_ptr<TaxedForm> form;
};

class TaxGridOfGrossAmounts : public TaxGridTest {
  protected:
    TaxGridOfGrossAmounts() : TaxGridTest(kGrossIdentity, kGrossLines) {}
    [[nodiscard]] std::string line(int row) {
        return cells(form->dbgrid1, row, {"gross amount", "open amount", "taxable amount", "tax amount"});
    }
};

class TaxGridWithBox : public TaxGridTest {
  protected:
    TaxGridWithBox() : TaxGridTest(kIdentityWithBox, kLinesWithBox) {}
    [[nodiscard]] std::string line(int row) {
        return cells(form->dbgrid1, row, {"amount", "net amount", "tax amount", "allocated tax"});
    }
    // As the line of another document, and read from there again.
    void store_and_load(const char* pay_item, bool included) {
        auto lines = host.company.dynaset("SELECT * FROM Payment_misc_transaction_table WHERE 1 = 2");
        lines.AddNew();
        lines.set("pay_item", pay_item);
        lines.set("pay_amount", 100.0);
        lines.set("tax_code", "STACK");
        lines.set("include_tax", included);
        ASSERT_TRUE(form->taxes.store(lines, pay_item));
        lines.Update();
        form->taxes.clear();
        form->taxes.load(host.company.snapshot("SELECT * FROM Payment_misc_transaction_table"));
    }
};

TEST_F(TaxGridOfGrossAmounts, GrossAmountHasTheTaxInIt) {
    enter(0, "tax code", "GST5");
    enter(0, "gross amount", "105.00");
    EXPECT_EQ(line(0), "105.00  100.00 5.00");
    EXPECT_EQ(form->times_computed, 1);
}

TEST_F(TaxGridOfGrossAmounts, OpenAmountFollowsTheGrossAmountThatIsComputed) {
    enter(0, "tax code", "GST5");
    enter(0, "taxable amount", "100.00");
    EXPECT_EQ(line(0), "105.00 105.00 100.00 5.00");
}

TEST_F(TaxGridOfGrossAmounts, AllElementsCountAndFiveAreStored) {
    enter(0, "tax code", "SIX");
    enter(0, "taxable amount", "100.00");
    EXPECT_EQ(form->dbgrid1.cell(0, "tax amount"), "6.00");
    auto lines = host.company.dynaset("SELECT * FROM AP_transaction_table WHERE 1 = 2");
    lines.AddNew();
    lines.set("pay_item", "1");
    ASSERT_TRUE(form->taxes.store(lines, "1"));
    lines.Update();
    form->taxes.clear();
    form->taxes.load(host.company.snapshot("SELECT * FROM AP_transaction_table"));
    EXPECT_EQ(form->taxes.tax_rows.of_item("1").size(), 5U);
}

TEST_F(TaxGridOfGrossAmounts, LineWithoutACodeTakesTheDefault) {
    enter(0, "gross amount", "50.00");
    EXPECT_EQ(form->dbgrid1.cell(0, "tax code"), "NOTAX");
    EXPECT_EQ(line(0), "50.00  50.00 0.00");
    host.company.db().Execute("UPDATE Tax_code_table SET [default] = FALSE");
    enter(1, "gross amount", "50.00");
    EXPECT_EQ(line(1), "50.00   ");
    EXPECT_THAT(host.messages(), ElementsAre("Default Tax code has not been set"));
}

TEST_F(TaxGridOfGrossAmounts, CodeThatIsNotListedIsRefused) {
    enter(0, "tax code", "GST5");
    enter(0, "tax code", "NONE");
    EXPECT_EQ(form->dbgrid1.cell(0, "tax code"), "GST5");
    EXPECT_THAT(host.messages(), ElementsAre("Invalid tax code"));
    EXPECT_EQ(form->dbgrid1.columns[static_cast<std::size_t>(form->dbgrid1.get_column("tax code"))]
                  .drop_down->rows()
                  .front(),
              (std::vector<std::string>{"EXP7", "Purchase tax 7%, not refunded"}));
}

TEST_F(TaxGridOfGrossAmounts, LineWithoutElementsIsNotStored) {
    auto lines = host.company.dynaset("SELECT * FROM AP_transaction_table WHERE 1 = 2");
    lines.AddNew();
    EXPECT_FALSE(form->taxes.store(lines, "2"));
    EXPECT_THAT(host.messages(), ElementsAre("cannot find tax element for pay item 2"));
}

TEST_F(TaxGridOfGrossAmounts, PanelsAreOutOfSightUntilTheyAreAskedFor) {
    EXPECT_FALSE(form->taxes.frame_tax.visible());
    EXPECT_FALSE(form->taxes.frame_tax_summary.visible());
    enter(0, "tax code", "STACK");
    enter(0, "taxable amount", "100.00");
    form->taxes.display_tax_details();
    form->taxes.display_tax_summary();
    EXPECT_EQ(
        detail(1, {"no", "tax authority", "taxable amount", "rate", "tax amount", "taxable", "pay item"}),
        "2 TAXB 105.00 7 7.35 False 1");
    EXPECT_EQ(summary(0), "1 TAXA 5.00 5.00 0.00 0.00 5.00 0.00");
    EXPECT_EQ(summary(1), "2 TAXB 7.35 7.35 0.00 7.35 0.00 0.00");
    // The details are those of the line that the user is on.
    ASSERT_EQ(form->dbgrid1.visit_cell(3, 0), Refusal::none);
    EXPECT_EQ(detail(0, {"no", "tax authority"}), "");
    form->taxes.document_changed();
    EXPECT_FALSE(form->taxes.frame_tax.visible());
    EXPECT_TRUE(form->taxes.frame_tax_summary.visible());
}

TEST_F(TaxGridOfGrossAmounts, RateTypedInThePanelComputesTheLine) {
    enter(0, "tax code", "HALF10");
    enter(0, "taxable amount", "100.00");
    form->taxes.display_tax_details();
    change_panel(0, "rate", "20");
    EXPECT_EQ(line(0), "120.00 120.00 100.00 20.00");
    EXPECT_EQ(detail(0, {"tax amount", "allocated tax", "recoverable tax", "expensed tax"}),
              "20.00 10.00 10.00 0.00");
    change_panel(0, "tax amount", "words");
    EXPECT_THAT(host.messages(), ElementsAre("please input numeric data"));
    EXPECT_EQ(detail(0, {"rate", "tax amount"}), "20 20.00");
}

TEST_F(TaxGridWithBox, AmountWithItsTaxLeavesTheNetAmount) {
    enter(0, "tax code", "GST5");
    enter(0, "tax included", "True");
    enter(0, "amount", "105.00");
    EXPECT_EQ(line(0), "105.00 100.00 5.00 0.00");
    enter(0, "net amount", "200.00");
    EXPECT_EQ(line(0), "210.00 200.00 10.00 0.00");
}

TEST_F(TaxGridWithBox, TaxOnTopOfAnAmountLeavesItTheSame) {
    enter(0, "tax code", "GST5");
    enter(0, "amount", "100.00");
    EXPECT_EQ(line(0), "100.00 100.00 5.00 0.00");
    enter(0, "net amount", "200.00");
    EXPECT_EQ(line(0), "200.00 200.00 10.00 0.00");
}

TEST_F(TaxGridWithBox, BoxComputesTheLineAnewFromItsAmount) {
    enter(0, "tax code", "HALF10");
    enter(0, "amount", "110.00");
    EXPECT_EQ(line(0), "110.00 110.00 11.00 5.50");
    enter(0, "tax included", "True");
    EXPECT_EQ(line(0), "110.00 100.00 10.00 5.00");
    enter(0, "tax included", "False");
    EXPECT_EQ(line(0), "110.00 110.00 11.00 5.50");
}

TEST_F(TaxGridWithBox, AllElementsCountAndFiveAreStored) {
    enter(0, "tax code", "SIX");
    enter(0, "amount", "100.00");
    EXPECT_EQ(line(0), "100.00 100.00 6.00 6.00");
    enter(0, "amount", "200.00");
    EXPECT_EQ(line(0), "200.00 200.00 12.00 12.00");
    store_and_load("1", false);
    EXPECT_EQ(form->taxes.tax_rows.of_item("1").size(), 5U);
}

TEST_F(TaxGridWithBox, RateTypedInThePanelLeavesTheAmountThatHasNoTaxInIt) {
    enter(0, "tax code", "HALF10");
    enter(0, "amount", "100.00");
    form->taxes.display_tax_details();
    change_panel(0, "rate", "20");
    EXPECT_EQ(line(0), "100.00 100.00 20.00 10.00");
}

TEST_F(TaxGridWithBox, StoredElementsComeBack) {
    enter(0, "tax code", "STACK");
    enter(0, "amount", "100.00");
    store_and_load("1", false);
    form->taxes.display_tax_details();
    form->taxes.display_tax_summary();
    EXPECT_EQ(
        detail(1, {"no", "tax authority", "taxable amount", "rate", "tax amount", "taxable", "allocated tax",
                   "recoverable tax", "expensed tax", "pay item", "include tax", "amount"}),
        "2 TAXB 105.00 7 7.35 False 7.35 0.00 0.00 1 False 100");
    EXPECT_EQ(summary(1), "2 TAXB 7.35 0.00 7.35 7.35 0.00 0.00");
    EXPECT_THAT(host.messages(), IsEmpty());
}

TEST_F(TaxGridWithBox, RateOfAStoredLineWithItsTaxIsTakenOutOfTheAmount) {
    enter(0, "tax code", "STACK");
    enter(0, "amount", "100.00");
    store_and_load("1", true);
    form->taxes.display_tax_details();
    change_panel(1, "rate", "25");
    EXPECT_EQ(detail(1, {"taxable amount", "tax amount"}), "80.00 20.00");
}

TEST_F(TaxGridWithBox, LineWithoutElementsIsNotStored) {
    auto lines = host.company.dynaset("SELECT * FROM Payment_misc_transaction_table WHERE 1 = 2");
    lines.AddNew();
    EXPECT_FALSE(form->taxes.store(lines, "3"));
    EXPECT_THAT(host.messages(), ElementsAre("cannot find tax element for item no 3"));
}

}  // namespace brimley::testing
