// The tax engine on the line grid, and the panels that show its rows.
#include <algorithm>

#include "invoices/apform_invoice.h"
#include "kernel/money.h"

namespace brimley::invoices {

using kernel::format_money;
using kernel::money_value;
using kernel::Round;
using kernel::TaxMode;
using kernel::TaxRow;

namespace {

// Columns of the tax detail grid. Found by caption like all others: users move them.
constexpr const char* kSequence = "no";
constexpr const char* kAuthority = "tax authority";
constexpr const char* kTaxableAmount = "taxable amount";
constexpr const char* kRate = "rate";
constexpr const char* kTaxAmount = "tax amount";
constexpr const char* kTaxable = "taxable";
constexpr const char* kAllocated = "allocated tax";
constexpr const char* kRecoverable = "recoverable tax";
constexpr const char* kExpensed = "expensed tax";
constexpr const char* kPayItem = "pay item";
constexpr const char* kIncludeTax = "include tax";
constexpr const char* kLineAmount = "amount";

constexpr int kPanelRowsMin = 5;

const char* check_text(bool flag) { return flag ? "True" : "False"; }

// What a check cell may hold for "yes".
bool is_checked(std::string_view text) { return store::Value(text).flag(); }

}  // namespace

void APform_invoice::tax_calculate_from_xarray(int row, TaxMode mode) {
    const std::string pay_item = dbgrid1.cell(row, "pay item");
    if (pay_item.empty()) return;
    const std::string entered =
        dbgrid1.cell(row, mode == TaxMode::taxable_amount ? "taxable amount" : "gross amount");
    if (entered.empty()) return;
    const double amount = money_value(entered);
    const auto rows = tax_rows.of_item(pay_item);
    std::string tax_code = dbgrid1.cell(row, "tax code");
    kernel::TaxTotals totals;
    if (!rows.empty() && rows.front()->tax_code == tax_code) {
        totals = tax_rows.recompute(pay_item, amount, mode);
    } else {
        tax_rows.remove_item(pay_item);
        if (tax_code.empty()) {
            const auto default_code = kernel::default_purchase_tax_code(kernel());
            if (!default_code) return;
            tax_code = *default_code;
            dbgrid1.set_cell(row, "tax code", tax_code);
        }
        totals = tax_rows.rebuild(kernel(), pay_item, tax_code, amount, mode);
    }
    write_line_amounts(row, mode, amount, totals.tax);
    dbgrid1.rebind();
    totalamt_calculate();
}

void APform_invoice::write_line_amounts(int row, TaxMode mode, double amount, double tax) {
    set_cell_money(row, "tax amount", Round(tax));
    if (mode == TaxMode::taxable_amount) {
        set_cell_money(row, "gross amount", Round(tax + amount));
        set_cell_money(row, "open amount", Round(tax + amount));
    }
    if (mode == TaxMode::gross_amount) set_cell_money(row, "taxable amount", Round(amount - tax));
}

void APform_invoice::get_tax_itemno(const std::string& pay_item) {
    if (pay_item.empty()) return;
    const auto rows = tax_rows.of_item(pay_item);
    grid_tax.array.dimension(std::max(kPanelRowsMin, static_cast<int>(rows.size())));
    for (int i = 0; i < static_cast<int>(rows.size()); ++i) {
        const TaxRow& row = *rows[static_cast<std::size_t>(i)];
        grid_tax.set_cell(i, kSequence, row.sequence);
        grid_tax.set_cell(i, kAuthority, row.authority);
        grid_tax.set_cell(i, kTaxableAmount, row.taxable_amount);
        grid_tax.set_cell(i, kRate, store::shortest_number(row.rate));
        grid_tax.set_cell(i, kTaxAmount, row.tax_amount);
        grid_tax.set_cell(i, kTaxable, check_text(row.taxable));
        grid_tax.set_cell(i, kAllocated, row.allocated);
        grid_tax.set_cell(i, kRecoverable, row.recoverable);
        grid_tax.set_cell(i, kExpensed, row.expensed);
        grid_tax.set_cell(i, kPayItem, row.pay_item);
        grid_tax.set_cell(i, kIncludeTax, row.include_tax);
        grid_tax.set_cell(i, kLineAmount, row.line_amount);
    }
    grid_tax.rebind();
}

// What the open panels show of the current line and the document. A line without a number has no tax rows.
void APform_invoice::refresh_tax_panels() {
    if (frame_tax.visible()) {
        grid_tax.array.dimension(kPanelRowsMin);
        grid_tax.rebind();
        get_tax_itemno(dbgrid1.cell(dbgrid1.row(), "pay item"));
    }
    if (frame_tax_summary.visible()) get_tax_summary();
}

int APform_invoice::row_of_item(const std::string& pay_item) const {
    for (int row = 0; row <= line_rows; ++row) {
        if (dbgrid1.cell(row, "pay item") == pay_item) return row;
    }
    return -1;
}

void APform_invoice::change_rate(int row) {
    const double rate = money_value(grid_tax.cell(row, kRate));
    if (is_checked(grid_tax.cell(row, kIncludeTax))) {
        const double amount = money_value(grid_tax.cell(row, kLineAmount));
        const double tax = kernel::compute_tax(TaxMode::gross_amount, amount, 0, rate);
        grid_tax.set_cell(row, kTaxAmount, format_money(tax));
        grid_tax.set_cell(row, kTaxableAmount, format_money(amount - tax));
    } else {
        const double taxable = money_value(grid_tax.cell(row, kTaxableAmount));
        grid_tax.set_cell(row, kTaxAmount, format_money(Round(taxable * rate / 100)));
    }
}

void APform_invoice::change_tax(int row) {
    const double taxable = money_value(grid_tax.cell(row, kTaxableAmount));
    if (taxable == 0) return;  // no rate can be told
    const double tax = money_value(grid_tax.cell(row, kTaxAmount));
    grid_tax.set_cell(row, kRate, store::shortest_number(Round(tax * 100 / taxable)));
}

void APform_invoice::grid_tax_BeforeColUpdate(controls::CellEdit& edit) {
    if ((edit.caption != kRate && edit.caption != kTaxAmount) || kernel::is_numeric(edit.new_text)) return;
    tell("please input numeric data");
    edit.cancel = true;
}

void APform_invoice::grid_tax_AfterColUpdate(int column) {
    const int row = grid_tax.row();
    const std::string& changed_cell = grid_tax.columns.at(static_cast<std::size_t>(column)).caption;
    const bool amounts_changed = changed_cell == kRate || changed_cell == kTaxAmount;
    if (changed_cell == kRate) change_rate(row);
    if (changed_cell == kTaxAmount) change_tax(row);
    const std::string pay_item(grid_tax.cell(row, kPayItem));
    const std::string sequence(grid_tax.cell(row, kSequence));
    if (sequence.empty()) return;
    step("grid_tax_AfterColUpdate", [&] {
        const double tax = money_value(grid_tax.cell(row, kTaxAmount));
        TaxRow* changed = tax_rows.find(pay_item, sequence);
        if (changed == nullptr) return;
        changed->rate = money_value(grid_tax.cell(row, kRate));
        changed->tax_amount = format_money(tax);
        changed->taxable = is_checked(grid_tax.cell(row, kTaxable));
        const auto split = kernel::split_tax(tax, changed->percent_refund, changed->include_itemcost);
        tax_calculate_from_xarray(row_of_item(pay_item), TaxMode::taxable_amount);
        if (amounts_changed) {
            grid_tax.set_cell(row, kAllocated, format_money(split.allocated));
            grid_tax.set_cell(row, kRecoverable, format_money(split.recoverable));
            grid_tax.set_cell(row, kExpensed, format_money(split.expensed));
        }
        if (changed_cell == kTaxable) get_tax_itemno(pay_item);
        grid_tax.rebind();
        if (frame_tax_summary.visible()) get_tax_summary();
    });
}

void APform_invoice::get_tax_summary() {
    std::vector<kernel::AuthorityTotals> totals;
    for (const TaxRow& row : tax_rows.all())
        kernel::store_tax(totals, row);
    grid_tax_summary.array.dimension(std::max(kPanelRowsMin, static_cast<int>(totals.size())));
    for (int i = 0; i < static_cast<int>(totals.size()); ++i) {
        const kernel::AuthorityTotals& total = totals[static_cast<std::size_t>(i)];
        const auto set_money = [&](const char* caption, double sum) {
            grid_tax_summary.set_cell(i, caption, format_money(sum));
        };
        grid_tax_summary.set_cell(i, "no", std::to_string(i + 1));
        grid_tax_summary.set_cell(i, "tax authority", total.authority);
        set_money("total tax", total.tax);
        set_money("tax", total.tax_of_new_rows);
        set_money("tax included", total.tax_of_stored_rows);
        set_money("allocated tax", total.split.allocated);
        set_money("recoverable tax", total.split.recoverable);
        set_money("expensed tax", total.split.expensed);
    }
    grid_tax_summary.rebind();
}

void APform_invoice::display_tax_details() {
    frame_tax.set_visible(!frame_tax.visible());
    refresh_tax_panels();
}

void APform_invoice::display_tax_summary() {
    frame_tax_summary.set_visible(!frame_tax_summary.visible());
    refresh_tax_panels();
}

}  // namespace brimley::invoices
