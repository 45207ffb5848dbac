#include "invoices/document/lines.h"

#include <algorithm>
#include <array>
#include <map>

#include "invoices/apform_invoice.h"
#include "kernel/money.h"

namespace brimley::invoices {

using controls::CellEdit;
using frame::LineColumn;
using frame::Shown;
using kernel::format_money;
using kernel::money_value;
using store::Recordset;

namespace {

// Lines of templates have fewer of these fields.
constexpr std::array kLineColumns{
    LineColumn{"pay item", "pay_item", Shown::text},
    LineColumn{"description", "Description", Shown::text},
    LineColumn{"gross amount", "gross_amount", Shown::money_without_sign},
    LineColumn{"open amount", "open_amount", Shown::money_without_sign},
    LineColumn{"taxable amount", "taxable_amount", Shown::money_without_sign},
    LineColumn{"tax amount", "tax_amount", Shown::money_without_sign},
    LineColumn{"tax code", "tax_code", Shown::text},
    LineColumn{"purchase account", "po_accno", Shown::text},
    LineColumn{"paid", "paid", Shown::flag},
    LineColumn{"discount available", "discount_available", Shown::money},
    LineColumn{"discount taken", "discount_taken", Shown::money},
    LineColumn{"write-off", "writeoff", Shown::money},
    LineColumn{"created date", "date_created", Shown::date},
    LineColumn{"created time", "time_created", Shown::text},
    LineColumn{"user created", "user_created", Shown::text},
    LineColumn{"last modified date", "date_lastmodified", Shown::date},
    LineColumn{"last modified time", "time_lastmodified", Shown::text},
    LineColumn{"user updated", "user_updated", Shown::text},
    LineColumn{"computer id", "computer_id", Shown::text},
};

}  // namespace

InvoiceLines::InvoiceLines(APform_invoice& form)
    : DocumentPart(form),
      form_(form),
      dbgrid1_(form.dbgrid1),
      stored_columns_(form, form.dbgrid1, kLineColumns) {
    dbgrid1_.on_before_edit = [this](CellEdit& edit) { dbgrid1_BeforeColEdit(edit); };
    dbgrid1_.on_before_update = [this](CellEdit& edit) { dbgrid1_BeforeColUpdate(edit); };
    dbgrid1_.on_after_update = [this](int column) { dbgrid1_AfterColUpdate(column); };
    dbgrid1_.on_row_col_change = [this](int row, int column) { dbgrid1_RowColChange(row, column); };
    form_.taxes.on_computed = [this] { totalamt_calculate(); };
}

void InvoiceLines::connect_drop_downs() {
    ddacc = {{"account", "account name"},
             {},
             rows_of("SELECT accno, accname FROM Account_master_table WHERE type = 'A' ORDER BY accno")};
    for (controls::GridColumn& column : dbgrid1_.columns) {
        if (column.caption == "purchase account") column.drop_down = &ddacc;
    }
    form_.taxes.connect_drop_down();
}

void InvoiceLines::clear() {
    line_rows = 0;
    form_.taxes.clear();
    dbgrid1_.array.dimension(frame::kRowsMin);
    dbgrid1_.rebind();
}

void InvoiceLines::show(Recordset& lines) {
    clear();
    const int stored = static_cast<int>(lines.RecordCount());
    dbgrid1_.array.dimension(frame::rows_for(stored));
    stored_columns_.begin(lines);
    int row = 0;
    for (; !lines.at_eof(); lines.MoveNext(), ++row) {
        stored_columns_.show(lines, row);
        dbgrid1_.set_cell(
            row, "account name",
            kernel().look_up_text("Account_master_table", {{"accno", lines.text("po_accno")}}, "accname"));
        form_.taxes.load(lines);
    }
    line_rows = std::max(row - 1, 0);
    totalamt_calculate();
    dbgrid1_.rebind();
    form_.taxes.refresh_panels();
}

// --- reading ---

double InvoiceLines::cell_money(int row, const char* caption) const {
    return money_value(dbgrid1_.cell(row, caption));
}

std::optional<double> InvoiceLines::money_if_given(int row, const char* caption) const {
    const std::string text = dbgrid1_.cell(row, caption);
    return text.empty() ? std::nullopt : std::optional(money_value(text));
}

InvoiceLine InvoiceLines::read_line(int row) const {
    InvoiceLine line;
    line.pay_item = dbgrid1_.cell(row, "pay item");
    line.description = dbgrid1_.cell(row, "description");
    line.tax_code = dbgrid1_.cell(row, "tax code");
    line.po_accno = dbgrid1_.cell(row, "purchase account");
    line.gross = money_if_given(row, "gross amount");
    line.taxable = money_if_given(row, "taxable amount");
    line.open = cell_money(row, "open amount");
    line.tax = cell_money(row, "tax amount");
    return line;
}

std::vector<InvoiceLine> InvoiceLines::read() const {
    std::vector<InvoiceLine> lines;
    for (int row = 0; row <= line_rows; ++row)
        lines.push_back(read_line(row));
    return lines;
}

// --- numbering and totals ---

bool InvoiceLines::counts_as_line(int row) const {
    return cell_money(row, "gross amount") != 0 || cell_money(row, "taxable amount") != 0;
}

void InvoiceLines::get_itemno() {
    std::map<std::string, std::string> new_numbers;
    int next = 1;
    for (int row = 0; row <= line_rows; ++row) {
        const std::string old_number = dbgrid1_.cell(row, "pay item");
        const std::string number = counts_as_line(row) ? std::to_string(next++) : std::string{};
        if (!old_number.empty()) new_numbers[old_number] = number;
        dbgrid1_.set_cell(row, "pay item", number);
    }
    form_.taxes.tax_rows.renumber([&](const std::string& old_number) { return new_numbers[old_number]; });
}

void InvoiceLines::totalamt_calculate() {
    double taxable = 0;
    double tax = 0;
    for (int row = 0; row <= line_rows; ++row) {
        taxable += cell_money(row, "taxable amount");
        tax += cell_money(row, "tax amount");
    }
    // txtgross is the sum before tax, in spite of its name.
    form_.txtgross.set(format_money(taxable));
    form_.txttax.set(format_money(tax));
    form_.txttotal.set(format_money(taxable + tax));
}

void InvoiceLines::lines_moved() {
    get_itemno();
    totalamt_calculate();
    dbgrid1_.rebind();
    form_.taxes.refresh_panels();
}

void InvoiceLines::insert_line() {
    if (!dbgrid1_.allow_add_new) return;
    dbgrid1_.array.insert_row(dbgrid1_.row());
    ++line_rows;
    lines_moved();
}

void InvoiceLines::delete_line() {
    if (!dbgrid1_.allow_delete) return;
    form_.taxes.tax_rows.remove_item(dbgrid1_.cell(dbgrid1_.row(), "pay item"));
    dbgrid1_.array.delete_row(dbgrid1_.row());
    if (dbgrid1_.row() <= line_rows) line_rows = std::max(line_rows - 1, 0);
    lines_moved();
}

// --- what is typed ---

// The account list opens as wide as the two columns that it fills.
void InvoiceLines::dbgrid1_BeforeColEdit(const CellEdit& edit) {
    if (edit.caption != "purchase account") return;
    ddacc.widths.clear();
    for (const char* caption : {"purchase account", "account name"}) {
        const int column = dbgrid1_.get_column(caption);
        ddacc.widths.push_back(column < 0 ? 0 : dbgrid1_.columns[static_cast<std::size_t>(column)].width);
    }
}

void InvoiceLines::dbgrid1_BeforeColUpdate(CellEdit& edit) {
    const bool gross = edit.caption == "gross amount";
    const bool taxable = edit.caption == "taxable amount";
    if (edit.caption == "tax code") {
        edit.cancel = !form_.taxes.accepts_tax_code(edit.new_text);
    } else if (gross || taxable || edit.caption == "open amount" || edit.caption == "tax amount") {
        // An amount that is emptied is an amount of 0.
        if (edit.new_text.empty() && (gross || taxable)) edit.new_text = "0";
        edit.cancel = !accepts_amount(edit);
        if (edit.cancel) return;
        if (gross) dbgrid1_.set_cell(edit.row, "open amount", edit.new_text);
        if (taxable) dbgrid1_.set_cell(edit.row, "open amount", dbgrid1_.cell(edit.row, "gross amount"));
    }
}

// Shown as money, unless that would lose digits that were typed.
bool InvoiceLines::accepts_amount(CellEdit& edit) {
    if (!kernel::is_numeric(edit.new_text)) return refuse("please input numeric data");
    const std::string shown = format_money(money_value(edit.new_text));
    if (money_value(shown) == money_value(edit.new_text)) edit.new_text = shown;
    return true;
}

void InvoiceLines::dbgrid1_AfterColUpdate(int column) {
    const int row = dbgrid1_.row();
    line_rows = std::max(line_rows, row);
    const std::string& caption = dbgrid1_.columns.at(static_cast<std::size_t>(column)).caption;
    step("dbgrid1_AfterColUpdate", [&] {
        if (const auto changed = form_.taxes.mode_of(caption)) {
            get_itemno();
            form_.taxes.tax_calculate_from_xarray(row, *changed);
        }
        if (caption == "purchase account") ddacc_rowchange();
        dbgrid1_.rebind();
        form_.taxes.refresh_panels();
    });
}

void InvoiceLines::dbgrid1_RowColChange(int old_row, int old_column) {
    if (dbgrid1_.row() != old_row) form_.taxes.refresh_panels();
    form_.font_bar.follow_column(old_column);
}

void InvoiceLines::ddacc_rowchange() {
    const int row = dbgrid1_.row();
    dbgrid1_.set_cell(row, "account name", "");
    const std::string accno = dbgrid1_.cell(row, "purchase account");
    dbgrid1_.set_cell(
        row, "account name",
        kernel().look_up_text("Account_master_table", {{"accno", accno}, {"type", "A"}}, "accname"));
}

}  // namespace brimley::invoices
