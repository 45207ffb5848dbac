#include "frame/account_lines.h"

#include <algorithm>
#include <map>

#include "kernel/money.h"

namespace brimley::frame {

using controls::CellEdit;
using kernel::format_money;
using kernel::money_value;

namespace {

constexpr const char* kAccountName = "account name";

}  // namespace

AccountLines::AccountLines(DocumentForm& form, TaxGrid& taxes, const AccountColumn& account,
                           std::span<const LineColumn> columns)
    : DocumentPart(form),
      form_(form),
      dbgrid1_(form.dbgrid1),
      taxes_(taxes),
      taxed_(taxes.names()),
      account_(account),
      stored_columns_(form, form.dbgrid1, columns) {
    dbgrid1_.on_before_edit = [this](CellEdit& edit) { dbgrid1_BeforeColEdit(edit); };
    dbgrid1_.on_before_update = [this](CellEdit& edit) { dbgrid1_BeforeColUpdate(edit); };
    dbgrid1_.on_after_update = [this](int column) { dbgrid1_AfterColUpdate(column); };
    dbgrid1_.on_row_col_change = [this](int row, int column) { dbgrid1_RowColChange(row, column); };
    taxes_.on_computed = [this] { totalamt_calculate(); };
}

void AccountLines::connect_drop_downs() {
    ddacc = {{"account", kAccountName},
             {},
             rows_of("SELECT accno, accname FROM Account_master_table WHERE type = 'A' ORDER BY accno")};
    for (controls::GridColumn& column : dbgrid1_.columns) {
        if (column.caption == account_.caption) column.drop_down = &ddacc;
    }
    taxes_.connect_drop_down();
}

void AccountLines::clear() {
    line_rows = 0;
    taxes_.clear();
    dbgrid1_.array.dimension(kRowsMin);
    dbgrid1_.rebind();
}

void AccountLines::show(store::Recordset& lines) {
    clear();
    const int stored = static_cast<int>(lines.RecordCount());
    dbgrid1_.array.dimension(rows_for(stored));
    stored_columns_.begin(lines);
    int row = 0;
    for (; !lines.at_eof(); lines.MoveNext(), ++row) {
        stored_columns_.show(lines, row);
        set_cell(row, kAccountName,
                 kernel().look_up_text("Account_master_table", {{"accno", lines.text(account_.field)}},
                                       "accname"));
        taxes_.load(lines);
        line_was_shown(row);
    }
    line_rows = std::max(row - 1, 0);
    totalamt_calculate();
    dbgrid1_.rebind();
    taxes_.refresh_panels();
}

// --- reading ---

double AccountLines::cell_money(int row, const char* caption) const {
    return money_value(cell(row, caption));
}

std::optional<double> AccountLines::money_if_given(int row, const char* caption) const {
    const std::string text = cell(row, caption);
    return text.empty() ? std::nullopt : std::optional(money_value(text));
}

// --- numbering ---

bool AccountLines::counts_as_line(int row) const {
    return cell_money(row, taxed_.amount) != 0 || cell_money(row, taxed_.net_amount) != 0;
}

void AccountLines::get_itemno() {
    std::map<std::string, std::string> new_numbers;
    int next = 1;
    for (int row = 0; row <= line_rows; ++row) {
        const std::string old_number = cell(row, taxed_.pay_item);
        const std::string number = counts_as_line(row) ? std::to_string(next++) : std::string{};
        if (!old_number.empty()) new_numbers[old_number] = number;
        set_cell(row, taxed_.pay_item, number);
    }
    taxes_.tax_rows.renumber([&](const std::string& old_number) { return new_numbers[old_number]; });
}

void AccountLines::lines_moved() {
    get_itemno();
    totalamt_calculate();
    dbgrid1_.rebind();
    taxes_.refresh_panels();
}

void AccountLines::insert_line() {
    if (!dbgrid1_.allow_add_new) return;
    dbgrid1_.array.insert_row(dbgrid1_.row());
    ++line_rows;
    lines_moved();
}

void AccountLines::delete_line() {
    if (!dbgrid1_.allow_delete) return;
    taxes_.tax_rows.remove_item(cell(dbgrid1_.row(), taxed_.pay_item));
    dbgrid1_.array.delete_row(dbgrid1_.row());
    if (dbgrid1_.row() <= line_rows) line_rows = std::max(line_rows - 1, 0);
    lines_moved();
}

// --- what is typed ---

// The account list opens as wide as the two columns that it fills.
void AccountLines::dbgrid1_BeforeColEdit(const CellEdit& edit) {
    if (edit.caption != account_.caption) return;
    ddacc.widths.clear();
    for (const char* caption : {account_.caption, kAccountName}) {
        const int column = dbgrid1_.get_column(caption);
        ddacc.widths.push_back(column < 0 ? 0 : dbgrid1_.columns[static_cast<std::size_t>(column)].width);
    }
}

bool AccountLines::accepts_amount(CellEdit& edit) {
    if (!kernel::is_numeric(edit.new_text)) return refuse("please input numeric data");
    const std::string shown = format_money(money_value(edit.new_text));
    if (money_value(shown) == money_value(edit.new_text)) edit.new_text = shown;
    return true;
}

void AccountLines::dbgrid1_AfterColUpdate(int column) {
    const int row = dbgrid1_.row();
    line_rows = std::max(line_rows, row);
    const std::string& caption = dbgrid1_.columns.at(static_cast<std::size_t>(column)).caption;
    step("dbgrid1_AfterColUpdate", [&] {
        if (const auto changed = taxes_.mode_of(caption)) {
            get_itemno();
            taxes_.tax_calculate_from_xarray(row, *changed);
        }
        if (caption == account_.caption) ddacc_rowchange();
        cell_was_changed(row, caption);
        dbgrid1_.rebind();
        taxes_.refresh_panels();
    });
}

void AccountLines::dbgrid1_RowColChange(int old_row, int old_column) {
    if (dbgrid1_.row() != old_row) taxes_.refresh_panels();
    form_.font_bar.follow_column(old_column);
}

void AccountLines::ddacc_rowchange() {
    const int row = dbgrid1_.row();
    set_cell(row, kAccountName, "");
    const std::string accno = cell(row, account_.caption);
    set_cell(row, kAccountName,
             kernel().look_up_text("Account_master_table", {{"accno", accno}, {"type", "A"}}, "accname"));
}

}  // namespace brimley::frame
