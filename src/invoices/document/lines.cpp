#include "invoices/document/lines.h"

#include <array>

#include "invoices/apform_invoice.h"
#include "kernel/money.h"

namespace brimley::invoices {

using controls::CellEdit;
using frame::LineColumn;
using frame::Shown;
using kernel::format_money;

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
    : AccountLines(form, form.taxes, {"purchase account", "po_accno"}, kLineColumns), form_(form) {}

InvoiceLine InvoiceLines::read_line(int row) const {
    InvoiceLine line;
    line.pay_item = cell(row, "pay item");
    line.description = cell(row, "description");
    line.tax_code = cell(row, "tax code");
    line.po_accno = cell(row, "purchase account");
    line.gross = money_if_given(row, "gross amount");
    line.taxable = money_if_given(row, "taxable amount");
    line.open = cell_money(row, "open amount");
    line.tax = cell_money(row, "tax amount");
    return line;
}

std::vector<InvoiceLine> InvoiceLines::read() const {
    std::vector<InvoiceLine> lines;
    for (int row = 0; row <= last_row(); ++row)
        lines.push_back(read_line(row));
    return lines;
}

void InvoiceLines::totalamt_calculate() {
    double taxable = 0;
    double tax = 0;
    for (int row = 0; row <= last_row(); ++row) {
        taxable += cell_money(row, "taxable amount");
        tax += cell_money(row, "tax amount");
    }
    // txtgross is the sum before tax, in spite of its name.
    form_.txtgross.set(format_money(taxable));
    form_.txttax.set(format_money(tax));
    form_.txttotal.set(format_money(taxable + tax));
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
        if (gross) set_cell(edit.row, "open amount", edit.new_text);
        if (taxable) set_cell(edit.row, "open amount", cell(edit.row, "gross amount"));
    }
}

}  // namespace brimley::invoices
