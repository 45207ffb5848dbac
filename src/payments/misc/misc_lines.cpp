#include "payments/misc/misc_lines.h"

#include <array>

#include "kernel/money.h"
#include "payments/misc/apform_misc_payment.h"

namespace brimley::payments {

using controls::CellEdit;
using frame::LineColumn;
using frame::Shown;
using kernel::format_money;
using kernel::money_value;
using kernel::Round;

namespace {

// "account name", "net amount" and "allocated tax" are not stored.
constexpr std::array kLineColumns{
    LineColumn{"pay item", "pay_item", Shown::text},
    LineColumn{"amount", "pay_amount", Shown::money},
    LineColumn{"account", "account", Shown::text},
    LineColumn{"tax included", "include_tax", Shown::flag},
    LineColumn{"tax code", "tax_code", Shown::text},
    LineColumn{"tax amount", "tax_amount", Shown::money},
    LineColumn{"reference", "Reference", Shown::text},
    LineColumn{"created date", "date_created", Shown::date},
    LineColumn{"created time", "time_created", Shown::text},
    LineColumn{"computer id", "computer_id", Shown::text},
};

}  // namespace

MiscLines::MiscLines(APform_misc_payment& form)
    : AccountLines(form, form.taxes, {"account", "account"}, kLineColumns), form_(form) {}

bool MiscLines::tax_is_included(int row) const { return store::Value(cell(row, "tax included")).flag(); }

// The elements were loaded before.
void MiscLines::line_was_shown(int row) {
    const double tax_inside = tax_is_included(row) ? cell_money(row, "tax amount") : 0;
    set_cell(row, "net amount", format_money(Round(cell_money(row, "amount") - tax_inside)));
    double allocated = 0;
    for (const kernel::TaxRow* element : form_.taxes.tax_rows.of_item(cell(row, "pay item")))
        allocated += money_value(element->allocated);
    set_cell(row, "allocated tax", format_money(allocated));
}

// --- what is typed ---

void MiscLines::dbgrid1_BeforeColUpdate(CellEdit& edit) {
    if (edit.caption == "amount" || edit.caption == "net amount")
        edit.cancel = !edit.new_text.empty() && !accepts_positive_amount(edit);
    if (edit.caption == "account") take_default_tax_code(edit.row);
}

bool MiscLines::accepts_positive_amount(CellEdit& edit) {
    return accepts_amount(edit) && (money_value(edit.new_text) >= 0 || refuse("amount must be positive"));
}

// Whatever it is the default of: the engine itself asks for one of purchases.
void MiscLines::take_default_tax_code(int row) {
    if (!cell(row, "tax code").empty()) return;
    step("default tax code", [&] {
        const auto code = kernel().read("SELECT tax_code FROM Tax_code_table WHERE [default] = TRUE");
        if (!code.at_eof()) set_cell(row, "tax code", code.text("tax_code"));
    });
}

// Without an amount nothing is computed: what was is no longer true.
void MiscLines::cell_was_changed(int row, std::string_view caption) {
    if (caption == "amount" && cell(row, "amount").empty()) {
        set_cell(row, "tax amount", "");
        set_cell(row, "allocated tax", "");
    }
    totalamt_calculate();
}

void MiscLines::totalamt_calculate() {
    double total = 0;
    for (int row = 0; row <= last_row(); ++row)
        total += cell_money(row, "amount") + (tax_is_included(row) ? 0 : cell_money(row, "tax amount"));
    form_.txttotal.set(format_money(total));
}

// --- before the save ---

bool MiscLines::check_ifany_pay() const {
    for (int row = 0; row <= last_row(); ++row) {
        if (cell_money(row, "amount") != 0) return true;
    }
    return false;
}

bool MiscLines::verify_detail() const {
    for (int row = 0; row <= last_row(); ++row) {
        const std::string pay_item = cell(row, "pay item");
        if (pay_item.empty()) continue;
        if (!verify_amount(row, pay_item) || !verify_account(row, pay_item)) return false;
    }
    return true;
}

bool MiscLines::verify_amount(int row, const std::string& pay_item) const {
    const std::string amount = cell(row, "amount");
    if (amount.empty()) return refuse("please specify amount for pay item " + pay_item);
    if (!kernel::is_numeric(amount)) return refuse("amount is not numeric");
    return money_value(amount) >= 0 || refuse("amount must be positive");
}

bool MiscLines::verify_account(int row, const std::string& pay_item) const {
    const std::string account = cell(row, "account");
    if (account.empty()) return refuse("please specify account for " + pay_item);
    return kernel().exists("Account_master_table", {{"accno", account}}) ||
           refuse("account number for " + account + " is invalid");
}

MiscLine MiscLines::read_line(int row) const {
    MiscLine line;
    line.pay_item = cell(row, "pay item");
    line.account = cell(row, "account");
    line.tax_code = cell(row, "tax code");
    line.reference = cell(row, "reference");
    line.amount = cell_money(row, "amount");
    line.tax = cell_money(row, "tax amount");
    line.allocated_tax = cell_money(row, "allocated tax");
    line.tax_included = tax_is_included(row);
    return line;
}

std::vector<MiscLine> MiscLines::read() const {
    std::vector<MiscLine> lines;
    for (int row = 0; row <= last_row(); ++row) {
        MiscLine line = read_line(row);
        if (!line.pay_item.empty() && line.amount != 0) lines.push_back(std::move(line));
    }
    return lines;
}

}  // namespace brimley::payments
