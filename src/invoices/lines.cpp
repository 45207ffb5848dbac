// The line grid of the invoice form.
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

#include "invoices/apform_invoice.h"
#include "kernel/money.h"

namespace brimley::invoices {

using controls::CellEdit;
using kernel::format_money;
using kernel::is_numeric;
using kernel::money_value;
using store::quoted;
using store::Recordset;

namespace {

constexpr int kLineRowsMin = 21;
constexpr int kLineRowsSpare = 5;

enum class Shown { text, money, date, flag };

struct LineColumn {
    const char* caption;
    const char* field;
    Shown shown;
};

constexpr std::array kLineColumns{
    LineColumn{"pay item", "pay_item", Shown::text},
    LineColumn{"description", "Description", Shown::text},
    LineColumn{"gross amount", "gross_amount", Shown::money},
    LineColumn{"open amount", "open_amount", Shown::money},
    LineColumn{"taxable amount", "taxable_amount", Shown::money},
    LineColumn{"tax amount", "tax_amount", Shown::money},
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

// The amounts that are shown without their sign.
bool shown_absolute(std::string_view field) {
    return field == "gross_amount" || field == "open_amount" || field == "taxable_amount" ||
           field == "tax_amount";
}

// Template lines have fewer fields than invoice lines; one that is missing is empty.
store::Value field_or_null(const Recordset& row, const std::string& field) {
    return row.has_field(field) ? row.field(field) : store::Value();
}

}  // namespace

void APform_invoice::init_grid() {
    build_grids();
    ddacc = {{"account", "account name"}, {}, [this] {
                 std::vector<std::vector<std::string>> rows;
                 step("ddacc", [&] {
                     auto accounts = kernel().read(
                         "SELECT accno, accname FROM Account_master_table WHERE type = 'A' ORDER BY accno");
                     for (; !accounts.at_eof(); accounts.MoveNext()) {
                         rows.push_back({accounts.text("accno"), accounts.text("accname")});
                     }
                 });
                 return rows;
             }};
    for (controls::GridColumn& column : dbgrid1.columns) {
        if (column.caption == "purchase account") column.drop_down = &ddacc;
    }
    taxes.connect_drop_down();
}

void APform_invoice::clear_arrays() {
    line_rows = 0;
    taxes.clear();
    dbgrid1.array.dimension(kLineRowsMin);
    dbgrid1.rebind();
}

double APform_invoice::cell_money(int row, const char* caption) const {
    return money_value(dbgrid1.cell(row, caption));
}

void APform_invoice::set_cell_money(int row, const char* caption, double amount) {
    dbgrid1.set_cell(row, caption, format_money(amount));
}

bool APform_invoice::counts_as_line(int row) const {
    return cell_money(row, "gross amount") != 0 || cell_money(row, "taxable amount") != 0;
}

void APform_invoice::get_itemno() {
    std::map<std::string, std::string> new_numbers;
    int next = 1;
    for (int row = 0; row <= line_rows; ++row) {
        const std::string old_number = dbgrid1.cell(row, "pay item");
        const std::string number = counts_as_line(row) ? std::to_string(next++) : std::string{};
        if (!old_number.empty()) new_numbers[old_number] = number;
        dbgrid1.set_cell(row, "pay item", number);
    }
    taxes.tax_rows.renumber([&](const std::string& old_number) { return new_numbers[old_number]; });
}

void APform_invoice::totalamt_calculate() {
    double taxable = 0;
    double tax = 0;
    for (int row = 0; row <= line_rows; ++row) {
        taxable += cell_money(row, "taxable amount");
        tax += cell_money(row, "tax amount");
    }
    // txtgross is the sum before tax, in spite of its name.
    txtgross.set(format_money(taxable));
    txttax.set(format_money(tax));
    txttotal.set(format_money(taxable + tax));
}

// The account list opens as wide as the two columns that it fills.
void APform_invoice::dbgrid1_BeforeColEdit(const CellEdit& edit) {
    if (edit.caption != "purchase account") return;
    ddacc.widths.clear();
    for (const char* caption : {"purchase account", "account name"}) {
        const int column = dbgrid1.get_column(caption);
        ddacc.widths.push_back(column < 0 ? 0 : dbgrid1.columns[static_cast<std::size_t>(column)].width);
    }
}

void APform_invoice::dbgrid1_BeforeColUpdate(CellEdit& edit) {
    const auto refuse = [&](const char* text) {
        tell(text);
        edit.cancel = true;
    };
    if (edit.caption == "tax code") {
        edit.cancel = !taxes.accepts_tax_code(edit.new_text);
        return;
    }
    const bool gross = edit.caption == "gross amount";
    const bool taxable = edit.caption == "taxable amount";
    if (!gross && !taxable && edit.caption != "open amount" && edit.caption != "tax amount") return;
    // An amount that is emptied is an amount of nothing.
    if (edit.new_text.empty() && (gross || taxable)) edit.new_text = "0";
    if (!is_numeric(edit.new_text)) {
        refuse("please input numeric data");
        return;
    }
    // Shown as money, unless that would lose digits that were typed.
    const std::string shown = format_money(money_value(edit.new_text));
    if (money_value(shown) == money_value(edit.new_text)) edit.new_text = shown;
    if (gross) dbgrid1.set_cell(edit.row, "open amount", edit.new_text);
    if (taxable) dbgrid1.set_cell(edit.row, "open amount", dbgrid1.cell(edit.row, "gross amount"));
}

void APform_invoice::dbgrid1_AfterColUpdate(int column) {
    const int row = dbgrid1.row();
    line_rows = std::max(line_rows, row);
    const std::string& caption = dbgrid1.columns.at(static_cast<std::size_t>(column)).caption;
    step("dbgrid1_AfterColUpdate", [&] {
        if (const auto mode = taxes.mode_of(caption)) {
            get_itemno();
            taxes.tax_calculate_from_xarray(row, *mode);
        }
        if (caption == "purchase account") ddacc_rowchange();
        dbgrid1.rebind();
        taxes.refresh_panels();
    });
}

void APform_invoice::ddacc_rowchange() {
    const int row = dbgrid1.row();
    dbgrid1.set_cell(row, "account name", "");
    const auto account =
        kernel().read(fmt::format("SELECT accname FROM Account_master_table WHERE accno = {} AND type = 'A'",
                                  quoted(dbgrid1.cell(row, "purchase account"))));
    if (!account.at_eof()) dbgrid1.set_cell(row, "account name", account.text("accname"));
}

// After lines were inserted or taken out: numbers, tax rows, totals and open panels follow.
void APform_invoice::lines_moved() {
    get_itemno();
    totalamt_calculate();
    dbgrid1.rebind();
    taxes.refresh_panels();
}

void APform_invoice::insert_line() {
    if (!dbgrid1.allow_add_new) return;
    dbgrid1.array.insert_row(dbgrid1.row());
    ++line_rows;
    lines_moved();
}

void APform_invoice::delete_line() {
    if (!dbgrid1.allow_delete) return;
    taxes.tax_rows.remove_item(dbgrid1.cell(dbgrid1.row(), "pay item"));
    dbgrid1.array.delete_row(dbgrid1.row());
    if (dbgrid1.row() <= line_rows) line_rows = std::max(line_rows - 1, 0);
    lines_moved();
}

void APform_invoice::load_line(int row, const Recordset& line) {
    for (const LineColumn& column : kLineColumns) {
        const store::Value value = field_or_null(line, column.field);
        std::string text;
        if (column.shown == Shown::flag) {
            text = value.flag() ? "True" : "False";
        } else if (column.shown == Shown::date) {
            text = date_text(value);
        } else if (column.shown == Shown::money && !value.is_null()) {
            text = format_money(shown_absolute(column.field) ? std::abs(value.number()) : value.number());
        } else if (column.shown == Shown::text) {
            text = value.text();
        }
        dbgrid1.set_cell(row, column.caption, text);
    }
    const auto account = kernel().read(fmt::format(
        "SELECT accname FROM Account_master_table WHERE accno = {}", quoted(line.text("po_accno"))));
    if (!account.at_eof()) dbgrid1.set_cell(row, "account name", account.text("accname"));
}

void APform_invoice::assign2_dbgrid1(Recordset& lines) {
    const int stored = static_cast<int>(lines.RecordCount());
    clear_arrays();
    dbgrid1.array.dimension(stored >= kLineRowsMin - 1 ? stored + kLineRowsSpare : kLineRowsMin);
    int row = 0;
    for (; !lines.at_eof(); lines.MoveNext(), ++row) {
        load_line(row, lines);
        taxes.load(lines);
    }
    line_rows = std::max(row - 1, 0);
    totalamt_calculate();
    old_total = money_value(txttotal.text());
    dbgrid1.rebind();
    taxes.refresh_panels();
}

}  // namespace brimley::invoices
