#include "frame/tax_grid.h"

#include <algorithm>
#include <vector>

#include "kernel/money.h"

namespace brimley::frame {

using kernel::format_money;
using kernel::money_value;
using kernel::Round;
using kernel::TaxMode;
using kernel::TaxRow;

namespace {

constexpr int kElementsStored = 5;

// The fields of one tax element in a stored line.
struct ElementFields {
    std::string authority, taxable_amount, rate, amount, taxable, allocated, recoverable, expensed;
};

const std::vector<ElementFields>& element_fields() {
    static const std::vector<ElementFields> kElements = [] {
        std::vector<ElementFields> elements;
        for (int number = 1; number <= kElementsStored; ++number) {
            const auto field = [&](const char* name) { return name + std::to_string(number); };
            elements.push_back({field("tax_authority"), field("taxable_amount"), field("tax_rate"),
                                field("tax_amount"), field("taxable"), field("tax_allocated"),
                                field("tax_recoverable"), field("tax_expensed")});
        }
        return elements;
    }();
    return kElements;
}

// The split of a stored tax becomes the shares of a later one. A tax of 0 does not show how it was split; its
// code does.
void take_shares(TaxRow& row, double tax, double recoverable, double expensed, kernel::ModuleG3& kernel) {
    row.include_itemcost = expensed == 0;
    if (tax != 0) {
        row.percent_refund = recoverable * 100 / tax;
    } else {
        kernel::take_shares_of_code(kernel, row);
    }
}

}  // namespace

TaxGrid::TaxGrid(Form& form, controls::Grid& lines, const TaxedLines& taxed)
    : FormPart(form),
      frame_tax(form.controls(), "frame_tax", "Tax Details Window"),
      grid_tax(form.controls(), "grid_tax"),
      frame_tax_summary(form.controls(), "frame_tax_summary", "Tax Summary Window"),
      grid_tax_summary(form.controls(), "grid_tax_summary"),
      lines_(lines),
      taxed_(taxed) {
    grid_tax.lies_in(frame_tax);
    grid_tax_summary.lies_in(frame_tax_summary);
    frame_tax.set_visible(false);
    frame_tax_summary.set_visible(false);
    grid_tax.on_before_update = [this](controls::CellEdit& edit) { grid_tax_BeforeColUpdate(edit); };
    grid_tax.on_after_update = [this](int column) { grid_tax_AfterColUpdate(column); };
}

void TaxGrid::connect_drop_down() {
    ddtax = {{"tax", "description"}, {}, rows_of("SELECT tax_code as tax,description FROM Tax_code_table")};
    for (controls::GridColumn& column : lines_.columns) {
        if (column.caption == taxed_.tax_code) column.drop_down = &ddtax;
    }
}

// --- lines ---

std::string TaxGrid::cell(int row, const char* caption) const { return lines_.cell(row, caption); }

void TaxGrid::set_cell_money(int row, const char* caption, double amount) {
    if (caption != nullptr) lines_.set_cell(row, caption, format_money(amount));
}

bool TaxGrid::amount_includes_tax(int row) const {
    return taxed_.tax_included == nullptr || is_checked(cell(row, taxed_.tax_included));
}

std::optional<TaxMode> TaxGrid::mode_of(std::string_view caption) const {
    if (caption == taxed_.amount) return TaxMode::gross_amount;
    if (caption == taxed_.net_amount) return TaxMode::taxable_amount;
    if (caption == taxed_.tax_code) return TaxMode::tax_code;
    if (taxed_.tax_included != nullptr && caption == taxed_.tax_included) return TaxMode::gross_amount;
    return std::nullopt;
}

void TaxGrid::tax_calculate_from_xarray(int row, TaxMode mode) {
    if (cell(row, taxed_.pay_item).empty()) return;
    const std::string entered =
        cell(row, mode == TaxMode::taxable_amount ? taxed_.net_amount : taxed_.amount);
    if (entered.empty()) return;
    const double amount = money_value(entered);
    const bool on_top = mode == TaxMode::gross_amount && !amount_includes_tax(row);
    const auto totals = compute(row, amount, on_top ? TaxMode::taxable_amount : mode);
    if (!totals) return;
    write_line_amounts(row, mode, amount, *totals);
    lines_.rebind();
    if (on_computed) on_computed();
}

// Empty, after its message, when the line has no tax code and there is no default.
std::optional<kernel::TaxTotals> TaxGrid::compute(int row, double amount, TaxMode formula) {
    const std::string pay_item = cell(row, taxed_.pay_item);
    std::string tax_code = cell(row, taxed_.tax_code);
    const auto rows = tax_rows.of_item(pay_item);
    if (!rows.empty() && rows.front()->tax_code == tax_code)
        return tax_rows.recompute(pay_item, amount, formula);
    tax_rows.remove_item(pay_item);
    if (tax_code.empty()) {
        const auto default_code = kernel::default_purchase_tax_code(kernel());
        if (!default_code) return std::nullopt;
        tax_code = *default_code;
        lines_.set_cell(row, taxed_.tax_code, tax_code);
    }
    return tax_rows.rebuild(kernel(), pay_item, tax_code, amount, formula);
}

void TaxGrid::write_line_amounts(int row, TaxMode mode, double amount, const kernel::TaxTotals& totals) {
    set_cell_money(row, taxed_.tax_amount, Round(totals.tax));
    set_cell_money(row, taxed_.allocated_tax, Round(totals.allocated));
    const double tax_inside = amount_includes_tax(row) ? totals.tax : 0;
    if (mode == TaxMode::taxable_amount) {
        set_cell_money(row, taxed_.amount, Round(tax_inside + amount));
        set_cell_money(row, taxed_.open_amount, Round(tax_inside + amount));
    }
    if (mode == TaxMode::gross_amount) set_cell_money(row, taxed_.net_amount, Round(amount - tax_inside));
}

int TaxGrid::row_of_item(const std::string& pay_item) const {
    for (int row = 0; row < lines_.array.rows(); ++row) {
        if (cell(row, taxed_.pay_item) == pay_item) return row;
    }
    return -1;
}

bool TaxGrid::accepts_tax_code(const std::string& tax_code) const {
    if (tax_code.empty()) return true;
    bool listed = false;
    step("find tax code", [&] { listed = kernel().exists("Tax_code_table", {{"tax_code", tax_code}}); });
    return listed || refuse("Invalid tax code");
}

// --- stored lines ---

void TaxGrid::load(const store::Recordset& line) {
    for (std::size_t number = 0; number < element_fields().size(); ++number) {
        const ElementFields& fields = element_fields()[number];
        const std::string authority = line.field_or_null(fields.authority).text();
        if (authority.empty()) continue;
        const bool included = line.flag("include_tax");
        const auto money = [&](const std::string& field) { return format_money(line.number(field)); };
        TaxRow row;
        row.sequence = std::to_string(number + 1);
        row.authority = authority;
        row.taxable_amount = money(fields.taxable_amount);
        row.rate = line.number(fields.rate);
        row.tax_amount = money(fields.amount);
        row.taxable = line.flag(fields.taxable);
        row.pay_item = line.text("pay_item");
        row.tax_code = line.text("tax_code");
        row.include_tax = check_text(included);
        row.allocated = money(fields.allocated);
        row.recoverable = money(fields.recoverable);
        row.expensed = money(fields.expensed);
        row.line_amount = line.text(included ? taxed_.stored_amount : taxed_.stored_net_amount);
        take_shares(row, line.number(fields.amount), line.number(fields.recoverable),
                    line.number(fields.expensed), kernel());
        tax_rows.all().push_back(std::move(row));
    }
}

bool TaxGrid::store(store::Recordset& line, const std::string& pay_item) {
    const auto rows = tax_rows.of_item(pay_item);
    if (rows.empty()) return refuse(taxed_.no_element + pay_item);
    // Further ones count in the tax but have no place in the line.
    const std::size_t stored = std::min(rows.size(), element_fields().size());
    for (std::size_t number = 0; number < stored; ++number) {
        const ElementFields& fields = element_fields()[number];
        const TaxRow& row = *rows[number];
        line.set(fields.authority, row.authority);
        line.set(fields.taxable_amount, money_value(row.taxable_amount));
        line.set(fields.rate, row.rate);
        line.set(fields.amount, money_value(row.tax_amount));
        line.set(fields.taxable, row.taxable);
        line.set(fields.allocated, money_value(row.allocated));
        line.set(fields.recoverable, money_value(row.recoverable));
        line.set(fields.expensed, money_value(row.expensed));
    }
    return true;
}

}  // namespace brimley::frame
