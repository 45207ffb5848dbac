// The rows of a document's lines, written from the grid: for a new document, and again for an edited one.
#include <array>
#include <string>

#include "invoices/apform_invoice.h"
#include "kernel/money.h"

namespace brimley::invoices {

using store::DateTime;
using store::Recordset;

namespace {

constexpr std::array kFieldsCopiedFromHeader{
    "Source",       "source_docno", "source_form", "docno",          "doctype",  "company",
    "fkey",         "vendor_no",    "invoice_no",  "invoice_date",   "Currency", "exchange_rate",
    "payment_term", "duedays",      "early_days",  "early_discount", "due_date", "discount_date"};

}  // namespace

bool APform_invoice::insert_new_record_transaction(Recordset& header, const std::string& ap_accno) {
    auto lines = kernel().change("SELECT * FROM AP_transaction_table WHERE 1 = 2");
    bool line_stored = false;
    for (int row = 0; row <= line_rows; ++row) {
        const std::string gross = dbgrid1.cell(row, "gross amount");
        const bool holds_line =
            !dbgrid1.cell(row, "pay item").empty() && !gross.empty() && gross != "0" && gross != "0.00";
        if (!holds_line) {
            if (!append_description(lines, row, line_stored)) return false;
            continue;
        }
        if (!write_line(lines, header, row, ap_accno)) return false;
        line_stored = true;
    }
    return true;
}

// A row that has only a description belongs to the line before it.
bool APform_invoice::append_description(Recordset& lines, int row, bool line_stored) {
    const std::string description = dbgrid1.cell(row, "description");
    if (description.empty()) return true;
    if (!line_stored) return false;
    lines.Bookmark(lines.LastModified());
    lines.Edit();
    lines.set("Description", lines.text("Description") + "\n" + description);
    lines.Update();
    return true;
}

bool APform_invoice::write_line(Recordset& lines, Recordset& header, int row, const std::string& ap_accno) {
    const std::string po_accno = dbgrid1.cell(row, "purchase account");
    if (po_accno.empty()) {
        tell("Please specify purchase account");
        return false;
    }
    const std::string pay_item = dbgrid1.cell(row, "pay item");
    const double gross = cell_money(row, "gross amount");
    lines.AddNew();
    lines.set("pay_item", pay_item);
    lines.set("Description", dbgrid1.cell(row, "description"));
    lines.set("gross_amount", gross);
    lines.set("open_amount", gross);
    lines.set("taxable_amount", cell_money(row, "taxable amount"));
    lines.set("tax_amount", cell_money(row, "tax amount"));
    if (const std::string tax_code = dbgrid1.cell(row, "tax code"); !tax_code.empty())
        lines.set("tax_code", tax_code);
    lines.set("po_accno", po_accno);
    if (gross > 0 && !taxes.store(lines, pay_item)) return false;
    lines.set("period", header.field("period"));
    lines.set("fyear", header.field("fyear"));
    const DateTime now = desk().now();
    lines.set("computer_id", kernel().get_computer_name());
    lines.set("date_created", now.date_only());
    lines.set("time_created", now.time_text());
    lines.set("user_created", context().BRIMLEY_USER);
    for (const char* field : kFieldsCopiedFromHeader)
        lines.set(field, header.field(field));
    lines.set("ap_accno", ap_accno);
    lines.Update();
    return true;
}

}  // namespace brimley::invoices
