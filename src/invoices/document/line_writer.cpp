#include "invoices/document/line_writer.h"

#include <array>

#include "invoices/apform_invoice.h"

namespace brimley::invoices {

using store::Recordset;

namespace {

constexpr std::array kFieldsCopiedFromHeader{
    "Source",       "source_docno", "source_form", "docno",          "doctype",  "company",
    "fkey",         "vendor_no",    "invoice_no",  "invoice_date",   "Currency", "exchange_rate",
    "payment_term", "duedays",      "early_days",  "early_discount", "due_date", "discount_date"};

}  // namespace

LineWriter::LineWriter(APform_invoice& form) : DocumentPart(form), form_(form) {}

bool LineWriter::insert_new_record_transaction(Recordset& header, const std::vector<InvoiceLine>& lines,
                                               const std::string& ap_accno) {
    auto rows = kernel().change("SELECT * FROM AP_transaction_table WHERE 1 = 2");
    bool line_stored = false;
    for (const InvoiceLine& line : lines) {
        if (line.holds_amount()) {
            if (!write_line(rows, header, line, ap_accno)) return false;
            line_stored = true;
        } else if (!line.description.empty()) {
            if (!line_stored) return fail("A description stands before the first line with an amount");
            append_description(rows, line.description);
        }
    }
    return true;
}

void LineWriter::append_description(Recordset& rows, const std::string& description) {
    rows.Bookmark(rows.LastModified());
    rows.Edit();
    rows.set("Description", rows.text("Description") + "\n" + description);
    rows.Update();
}

bool LineWriter::write_line(Recordset& rows, Recordset& header, const InvoiceLine& line,
                            const std::string& ap_accno) {
    if (line.po_accno.empty()) return refuse("Please specify purchase account");
    rows.AddNew();
    rows.set("pay_item", line.pay_item);
    rows.set("Description", line.description);
    rows.set("gross_amount", *line.gross);
    rows.set("open_amount", *line.gross);
    rows.set("taxable_amount", line.taxable.value_or(0));
    rows.set("tax_amount", line.tax);
    if (!line.tax_code.empty()) rows.set("tax_code", line.tax_code);
    rows.set("po_accno", line.po_accno);
    if (*line.gross > 0 && !form_.taxes.store(rows, line.pay_item)) return false;
    rows.set("period", header.field("period"));
    rows.set("fyear", header.field("fyear"));
    rows.set("computer_id", kernel().get_computer_name());
    stamp_created(rows);
    for (const char* field : kFieldsCopiedFromHeader)
        rows.set(field, header.field(field));
    rows.set("ap_accno", ap_accno);
    rows.Update();
    return true;
}

}  // namespace brimley::invoices
