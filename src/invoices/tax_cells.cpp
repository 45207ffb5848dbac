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

// Columns of the tax detail grid, by position: users cannot tell them apart by caption alone.
enum DetailColumn {
    kSequence,
    kAuthority,
    kTaxableAmount,
    kRate,
    kTaxAmount,
    kTaxable,
    kAllocated,
    kRecoverable,
    kExpensed,
    kPayItem,
    kIncludeTax,
    kLineAmount
};

const char* check_text(bool flag) { return flag ? "True" : "False"; }

// What a check cell may hold for "yes".
bool is_checked(std::string_view text) { return store::Value(text).flag(); }

}  // namespace

void APform_invoice::tax_calculate_from_xarray(int row, TaxMode mode) {
    const std::string pay_item = dbgrid1.cell(row, "pay item");
    if (pay_item.empty()) {
        totalamt_calculate();
        return;
    }
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
    controls::TextArray& array = grid_tax.array;
    array.dimension(std::max(5, static_cast<int>(rows.size())));
    for (int i = 0; i < static_cast<int>(rows.size()); ++i) {
        const TaxRow& row = *rows[static_cast<std::size_t>(i)];
        array.set(i, kSequence, row.sequence);
        array.set(i, kAuthority, row.authority);
        array.set(i, kTaxableAmount, row.taxable_amount);
        array.set(i, kRate, store::shortest_number(row.rate));
        array.set(i, kTaxAmount, row.tax_amount);
        array.set(i, kTaxable, check_text(row.taxable));
        array.set(i, kAllocated, row.allocated);
        array.set(i, kRecoverable, row.recoverable);
        array.set(i, kExpensed, row.expensed);
        array.set(i, kPayItem, row.pay_item);
        array.set(i, kIncludeTax, row.include_tax);
        array.set(i, kLineAmount, row.line_amount);
    }
    grid_tax.rebind();
}

int APform_invoice::row_of_item(const std::string& pay_item) const {
    for (int row = 0; row <= line_rows; ++row) {
        if (dbgrid1.cell(row, "pay item") == pay_item) return row;
    }
    return -1;
}

void APform_invoice::change_rate(int row) {
    controls::TextArray& array = grid_tax.array;
    const double rate = money_value(array.get(row, kRate));
    if (is_checked(array.get(row, kIncludeTax))) {
        const double amount = money_value(array.get(row, kLineAmount));
        const double tax = kernel::compute_tax(TaxMode::gross_amount, amount, 0, rate);
        array.set(row, kTaxAmount, format_money(tax));
        array.set(row, kTaxableAmount, format_money(amount - tax));
    } else {
        const double taxable = money_value(array.get(row, kTaxableAmount));
        array.set(row, kTaxAmount, format_money(Round(taxable * rate / 100)));
    }
}

void APform_invoice::change_tax(int row) {
    controls::TextArray& array = grid_tax.array;
    const double taxable = money_value(array.get(row, kTaxableAmount));
    if (taxable == 0) return;  // no rate can be told
    const double tax = money_value(array.get(row, kTaxAmount));
    array.set(row, kRate, store::shortest_number(Round(tax * 100 / taxable)));
}

void APform_invoice::grid_tax_AfterColUpdate(int column) {
    const int row = grid_tax.row();
    controls::TextArray& array = grid_tax.array;
    if (column == kRate) change_rate(row);
    if (column == kTaxAmount) change_tax(row);
    const std::string pay_item(array.get(row, kPayItem));
    const std::string sequence(array.get(row, kSequence));
    if (sequence.empty()) return;
    step("grid_tax_AfterColUpdate", [&] {
        const double tax = money_value(array.get(row, kTaxAmount));
        TaxRow* changed = tax_rows.find(pay_item, sequence);
        if (changed == nullptr) return;
        changed->rate = money_value(array.get(row, kRate));
        changed->tax_amount = format_money(tax);
        changed->taxable = is_checked(array.get(row, kTaxable));
        tax_calculate_from_xarray(row_of_item(pay_item), TaxMode::taxable_amount);
        if (column == kRate || column == kTaxAmount) {
            const auto split = kernel::split_tax(tax, changed->percent_refund, changed->include_itemcost);
            array.set(row, kAllocated, format_money(split.allocated));
            array.set(row, kRecoverable, format_money(split.recoverable));
            array.set(row, kExpensed, format_money(split.expensed));
        }
        if (column == kTaxable) get_tax_itemno(pay_item);
        grid_tax.rebind();
        if (frame_tax_summary.visible()) get_tax_summary();
    });
}

void APform_invoice::get_tax_summary() {
    std::vector<kernel::AuthorityTotals> totals;
    for (const TaxRow& row : tax_rows.all())
        kernel::store_tax(totals, row);
    controls::TextArray& array = grid_tax_summary.array;
    array.dimension(std::max(5, static_cast<int>(totals.size())));
    for (int i = 0; i < static_cast<int>(totals.size()); ++i) {
        const kernel::AuthorityTotals& total = totals[static_cast<std::size_t>(i)];
        array.set(i, 0, std::to_string(i + 1));
        array.set(i, 1, total.authority);
        const double sums[] = {total.tax,
                               total.tax_of_new_rows,
                               total.tax_of_stored_rows,
                               total.split.allocated,
                               total.split.recoverable,
                               total.split.expensed};
        for (int column = 0; column < 6; ++column)
            array.set(i, column + 2, format_money(sums[column]));
    }
    grid_tax_summary.rebind();
}

void APform_invoice::display_tax_details() {
    frame_tax.set_visible(!frame_tax.visible());
    if (frame_tax.visible()) get_tax_itemno(dbgrid1.cell(dbgrid1.row(), "pay item"));
}

void APform_invoice::display_tax_summary() {
    frame_tax_summary.set_visible(!frame_tax_summary.visible());
    if (frame_tax_summary.visible()) get_tax_summary();
}

}  // namespace brimley::invoices
