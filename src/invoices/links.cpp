// Requests of the invoice form to its host.
#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "invoices/apform_invoice.h"

namespace brimley::invoices {

namespace {

// The amounts that a printed credit note shows with the opposite sign: the line's own and those of its tax
// slots.
bool is_printed_amount(std::string_view field) {
    static constexpr const char* kAmounts[] = {"gross_amount", "open_amount",   "taxable_amount",
                                               "tax_amount",   "tax_allocated", "tax_recoverable",
                                               "tax_expensed"};
    return std::any_of(std::begin(kAmounts), std::end(kAmounts),
                       [&](const char* amount) { return field.starts_with(amount); });
}

}  // namespace

void APform_invoice::pay_this_invoice() {
    if (!on_posted_document()) return;
    if (chkhold.value() == 1) {
        tell("Invoice is on hold.");
        return;
    }
    notify("Pay this invoice", txtdocno.text() + ":" + cmbvendor.text());
}

void APform_invoice::payment_history() {
    if (on_posted_document()) notify("Payment History", txtdocno.text());
}

// The invoice grid has no column "account", so the request always goes out without one.
std::string APform_invoice::account_of_current_line() { return dbgrid1.cell(dbgrid1.row(), "account"); }

void APform_invoice::preview() {
    if (txtdoctype.text() == kTemplateDoctype) return;  // a template is not printed
    std::string fields = "AP_header_table.*, AP_transaction_table.*";
    if (is_credit_note()) {
        // A credit note is printed as a credit, though its amounts are stored positive.
        fields = "AP_header_table.*";
        for (const auto& field : kernel().database().catalog().find("AP_transaction_table")->fields) {
            fields += fmt::format(", {}AP_transaction_table.{} AS {}",
                                  is_printed_amount(field.name) ? "-1 * " : "", field.name, field.name);
        }
    }
    std::string tables =
        "(AP_header_table INNER JOIN AP_transaction_table ON AP_header_table.fkey = "
        "AP_transaction_table.fkey)";
    // An unknown vendor must not keep the document from being printed.
    if (vendor_fields.name_of(cmbvendor.text())) {
        fields += ", Vendor_table.VENDOR_NAME";
        tables = fmt::format(
            "({} INNER JOIN Vendor_table ON AP_header_table.vendor_no = Vendor_table.vendor_no)", tables);
    }
    const std::string query =
        fmt::format("SELECT {} FROM {} WHERE AP_header_table.fkey = {} ORDER BY {}", fields, tables,
                    store::quoted(txtfkey.text()), documents.tables().line_order);
    notify("ActiveReport", query,
           fmt::format("A/P {},{},{}", cmbdoctype.text(), txtdocno.text(), rights().form_design ? "1" : "0"));
}

}  // namespace brimley::invoices
