// The panels of the tax grid: what they show, and what a change by hand in them does.
#include <algorithm>

#include "frame/tax_grid.h"
#include "kernel/money.h"

namespace brimley::frame {

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

}  // namespace

void TaxGrid::clear() {
    tax_rows.clear();
    for (controls::Grid* panel : {&grid_tax, &grid_tax_summary}) {
        panel->array.dimension(kPanelRowsMin);
        panel->rebind();
    }
}

void TaxGrid::get_tax_itemno(const std::string& pay_item) {
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

void TaxGrid::get_tax_summary() {
    std::vector<kernel::AuthorityTotals> totals;
    for (const TaxRow& row : tax_rows.all())
        kernel::store_tax(totals, row);
    grid_tax_summary.array.dimension(std::max(kPanelRowsMin, static_cast<int>(totals.size())));
    for (int i = 0; i < static_cast<int>(totals.size()); ++i) {
        const kernel::AuthorityTotals& total = totals[static_cast<std::size_t>(i)];
        const auto set_money = [&](const char* caption, double sum) {
            grid_tax_summary.set_cell(i, caption, format_money(sum));
        };
        grid_tax_summary.set_cell(i, kSequence, std::to_string(i + 1));
        grid_tax_summary.set_cell(i, kAuthority, total.authority);
        set_money("total tax", total.tax);
        set_money("tax", total.tax_of_new_rows);
        set_money("tax included", total.tax_of_stored_rows);
        set_money(kAllocated, total.split.allocated);
        set_money(kRecoverable, total.split.recoverable);
        set_money(kExpensed, total.split.expensed);
    }
    grid_tax_summary.rebind();
}

// A line without a number has no tax rows.
void TaxGrid::refresh_panels() {
    if (frame_tax.visible()) {
        grid_tax.array.dimension(kPanelRowsMin);
        grid_tax.rebind();
        get_tax_itemno(cell(lines_.row(), taxed_.pay_item));
    }
    if (frame_tax_summary.visible()) get_tax_summary();
}

void TaxGrid::document_changed() {
    frame_tax.set_visible(false);
    if (frame_tax_summary.visible()) get_tax_summary();
}

void TaxGrid::display_tax_details() {
    frame_tax.set_visible(!frame_tax.visible());
    refresh_panels();
}

void TaxGrid::display_tax_summary() {
    frame_tax_summary.set_visible(!frame_tax_summary.visible());
    refresh_panels();
}

// --- changes by hand ---

void TaxGrid::grid_tax_BeforeColUpdate(controls::CellEdit& edit) {
    if ((edit.caption != kRate && edit.caption != kTaxAmount) || kernel::is_numeric(edit.new_text)) return;
    tell("please input numeric data");
    edit.cancel = true;
}

void TaxGrid::grid_tax_AfterColUpdate(int column) {
    const int row = grid_tax.row();
    const std::string changed_cell = grid_tax.columns.at(static_cast<std::size_t>(column)).caption;
    if (changed_cell == kRate) change_rate(row);
    if (changed_cell == kTaxAmount) change_tax(row);
    if (grid_tax.cell(row, kSequence).empty()) return;
    step("grid_tax_AfterColUpdate", [&] { take_element_from_panel(row, changed_cell); });
}

void TaxGrid::change_rate(int row) {
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

void TaxGrid::change_tax(int row) {
    const double taxable = money_value(grid_tax.cell(row, kTaxableAmount));
    if (taxable == 0) return;  // there is no such rate
    const double tax = money_value(grid_tax.cell(row, kTaxAmount));
    grid_tax.set_cell(row, kRate, store::shortest_number(Round(tax * 100 / taxable)));
}

// The line is computed from the changed rate; the panel goes on showing the tax that was typed.
void TaxGrid::take_element_from_panel(int row, const std::string& changed_cell) {
    const std::string pay_item = grid_tax.cell(row, kPayItem);
    TaxRow* const changed = tax_rows.find(pay_item, grid_tax.cell(row, kSequence));
    if (changed == nullptr) return;
    const double tax = money_value(grid_tax.cell(row, kTaxAmount));
    changed->rate = money_value(grid_tax.cell(row, kRate));
    changed->tax_amount = format_money(tax);
    changed->taxable = is_checked(grid_tax.cell(row, kTaxable));
    const auto split = kernel::split_tax(tax, changed->percent_refund, changed->include_itemcost);
    tax_calculate_from_xarray(row_of_item(pay_item), TaxMode::taxable_amount);
    if (changed_cell == kRate || changed_cell == kTaxAmount) {
        grid_tax.set_cell(row, kAllocated, format_money(split.allocated));
        grid_tax.set_cell(row, kRecoverable, format_money(split.recoverable));
        grid_tax.set_cell(row, kExpensed, format_money(split.expensed));
    }
    if (changed_cell == kTaxable) get_tax_itemno(pay_item);
    grid_tax.rebind();
    if (frame_tax_summary.visible()) get_tax_summary();
}

}  // namespace brimley::frame
