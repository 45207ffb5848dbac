// Lines that charge accounts with taxes, on a form with the fewest columns that they need.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "frame/account_lines.h"
#include "plain_form.h"

namespace brimley::testing {

using controls::Refusal;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

constexpr frame::TaxedLines kFewestColumns{.pay_item = "no",
                                           .tax_code = "code",
                                           .tax_amount = "tax",
                                           .amount = "gross",
                                           .net_amount = "net",
                                           .stored_amount = "pay_amount",
                                           .stored_net_amount = "pay_amount",
                                           .no_element = "nothing for "};

constexpr std::array kStoredColumns{
    frame::LineColumn{"no", "pay_item", frame::Shown::text},
    frame::LineColumn{"gross", "pay_amount", frame::Shown::money},
    frame::LineColumn{"cost", "account", frame::Shown::text},
};

}  // namespace

class PlainLines : public frame::AccountLines {
  public:
    PlainLines(frame::DocumentForm& form, frame::TaxGrid& taxes)
        : AccountLines(form, taxes, {"cost", "account"}, kStoredColumns) {}

    void totalamt_calculate() override {
        ++totals_taken;
        total = 0;
        for (int row = 0; row <= last_row(); ++row)
            total += money_if_given(row, "gross").value_or(0);
    }

    int totals_taken = 0;
    double total = 0;
    std::vector<std::string> changed;  // captions of the cells
    int lines_shown = 0;

  private:
    void dbgrid1_BeforeColUpdate(controls::CellEdit& edit) override {
        if (edit.caption == "gross") edit.cancel = !accepts_amount(edit);
    }
    void cell_was_changed(int, std::string_view caption) override { changed.emplace_back(caption); }
    void line_was_shown(int row) override {
        set_cell(row, "net", "as stored");
        ++lines_shown;
    }
};

class FormWithLines : public PlainForm {
  public:
    using PlainForm::PlainForm;

    frame::TaxGrid taxes{*this, dbgrid1, kFewestColumns};
    PlainLines lines{*this, taxes};

  protected:
    void init_grid() override {
        for (const char* caption : {"no", "gross", "net", "cost", "account name", "code", "tax"}) {
            dbgrid1.columns.emplace_back();
            dbgrid1.columns.back().caption = caption;
            dbgrid1.columns.back().order = static_cast<int>(dbgrid1.columns.size()) - 1;
        }
        dbgrid1.columns[4].width = 2600;
        lines.connect_drop_downs();
        lines.clear();
    }
    void assign2_dbgrid1(store::Recordset& rows) override { lines.show(rows); }
};

class AccountLinesTest : public ::testing::Test {
  protected:
    AccountLinesTest()
        : form(std::make_shared<FormWithLines>(
              host.context(), std::make_shared<kernel::ModuleG3>(host.context().abcdb, host.desk), host.desk,
              kPlainTables, "py")) {
        form->show();
        form->dbgrid1.allow_update = true;
    }
    void enter(int row, const char* caption, const char* text) {
        EXPECT_EQ(form->dbgrid1.edit_cell(row, form->dbgrid1.get_column(caption), text), Refusal::none)
            << caption;
    }
    // The cells of a column down to the last row that holds anything.
    [[nodiscard]] std::vector<std::string> column(const char* caption) {
        std::vector<std::string> cells;
        for (int row = 0; row < form->dbgrid1.array.used_rows(); ++row)
            cells.push_back(form->dbgrid1.cell(row, caption));
        return cells;
    }
    [[nodiscard]] std::size_t taxes_of(const char* number) {
        return form->taxes.tax_rows.of_item(number).size();
    }

    PlainHost host;
    std::shared_ptr<FormWithLines> form;
};

TEST_F(AccountLinesTest, LinesWithAnAmountAreNumberedWithoutGapsAndTheirTaxesFollow) {
    enter(0, "gross", "10");
    enter(2, "code", "STACK");
    enter(2, "gross", "20");
    EXPECT_THAT(column("no"), ElementsAre("1", "", "2"));
    EXPECT_EQ(taxes_of("2"), 2U);
    enter(1, "gross", "5");
    EXPECT_THAT(column("no"), ElementsAre("1", "2", "3"));
    EXPECT_EQ(taxes_of("2"), 1U);
    EXPECT_EQ(taxes_of("3"), 2U);
    EXPECT_TRUE(form->lines.has_any());
}

TEST_F(AccountLinesTest, LineThatIsTakenOutTakesItsTaxesAlong) {
    enter(0, "code", "STACK");
    enter(0, "gross", "10");
    enter(1, "gross", "20");
    form->dbgrid1.go_to(0, 0);
    form->lines.delete_line();  // not while the lines may not be deleted
    EXPECT_THAT(column("no"), ElementsAre("1", "2"));
    form->dbgrid1.allow_delete = true;
    form->lines.delete_line();
    EXPECT_THAT(column("gross"), ElementsAre("20.00"));
    EXPECT_EQ(taxes_of("1"), 1U);
    EXPECT_EQ(form->lines.total, 20);
}

TEST_F(AccountLinesTest, LineThatIsPutInMovesTheOthersDown) {
    enter(0, "gross", "10");
    form->dbgrid1.go_to(0, 0);
    form->lines.insert_line();  // nor added
    form->dbgrid1.allow_add_new = true;
    form->lines.insert_line();
    EXPECT_THAT(column("no"), ElementsAre("", "1"));
    EXPECT_FALSE(form->lines.has_any());
    EXPECT_EQ(form->lines.total, 10);
}

TEST_F(AccountLinesTest, AmountIsShownAsMoneyUnlessThatLosesDigits) {
    enter(0, "gross", "1234.5");
    enter(1, "gross", "0.125");
    enter(1, "gross", "words");
    EXPECT_THAT(column("gross"), ElementsAre("1,234.50", "0.125"));
    EXPECT_THAT(host.messages(), ElementsAre("please input numeric data"));
    EXPECT_THAT(form->lines.changed, ElementsAre("gross", "gross"));
}

TEST_F(AccountLinesTest, AccountBringsItsName) {
    enter(0, "cost", "6300");
    enter(1, "cost", "nothing");
    EXPECT_THAT(column("account name"), ElementsAre("Office supplies", ""));
    enter(0, "cost", "3900");  // nobody posts to it
    EXPECT_THAT(column("account name"), ElementsAre("", ""));
    EXPECT_EQ(form->lines.totals_taken, 0);
}

TEST_F(AccountLinesTest, AccountListOpensAsWideAsTheColumnsThatItFills) {
    const auto& accounts = *form->dbgrid1.columns[3].drop_down;
    EXPECT_EQ(accounts.rows().front(), (std::vector<std::string>{"1000", "Petty cash"}));
    EXPECT_THAT(accounts.widths, IsEmpty());
    EXPECT_EQ(form->dbgrid1.open_editor(0, 3), Refusal::none);
    EXPECT_THAT(accounts.widths, ElementsAre(1000, 2600));
}

TEST_F(AccountLinesTest, StoredLinesAreShownWithTheNamesOfTheirAccounts) {
    enter(5, "gross", "1");
    for (int line = 1; line <= 30; ++line)
        host.company.add("Payment_misc_transaction_table",
                         {{"fkey", "1mpy-1"}, {"pay_item", line}, {"pay_amount", 2.0}, {"account", "6310"}});
    auto rows = host.company.snapshot("SELECT * FROM Payment_misc_transaction_table ORDER BY pay_item");
    form->lines.show(rows);
    EXPECT_EQ(form->dbgrid1.array.rows(), 35);
    EXPECT_EQ(form->dbgrid1.cell(29, "account name"), "Software");
    EXPECT_EQ(form->dbgrid1.cell(29, "net"), "as stored");
    EXPECT_EQ(form->lines.lines_shown, 30);
    EXPECT_EQ(form->lines.total, 60);
}

}  // namespace brimley::testing
