#include "invoices/document/stored_invoice.h"

#include "invoices/apform_invoice.h"

namespace brimley::invoices {

using store::Recordset;

StoredInvoice::StoredInvoice(APform_invoice& form) : DocumentPart(form), form_(form) {}

std::optional<Recordset> StoredInvoice::take_header() {
    auto header = kernel().find_to_change("AP_header_table", {{"fkey", form_.txtfkey.text()}});
    if (header.at_eof()) {
        tell("No Header record");
        return std::nullopt;
    }
    header.Edit();
    return header;
}

bool StoredInvoice::posted_as_shown(const Recordset& header) const {
    return header.text("GLFKEY") == form_.txtglfkey.text();
}

void StoredInvoice::each_line(const std::function<void(Recordset& line)>& change) {
    auto lines = kernel().find_to_change("AP_transaction_table", {{"fkey", form_.txtfkey.text()}});
    for (; !lines.at_eof(); lines.MoveNext()) {
        lines.Edit();
        change(lines);
        lines.Update();
    }
}

}  // namespace brimley::invoices
