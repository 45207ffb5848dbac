#include "invoices/document/stored_invoice.h"

#include <fmt/format.h>

#include "invoices/apform_invoice.h"

namespace brimley::invoices {

using store::Recordset;

StoredInvoice::StoredInvoice(APform_invoice& form) : DocumentPart(form), form_(form) {}

Recordset StoredInvoice::header() const {
    return kernel().find_to_change("AP_header_table", {{"fkey", form_.txtfkey.text()}});
}

std::optional<Recordset> StoredInvoice::take_header() const {
    auto row = header();
    if (row.at_eof()) {
        tell("No Header record");
        return std::nullopt;
    }
    row.Edit();
    return row;
}

bool StoredInvoice::posted_as_shown(const Recordset& header) const {
    return header.text("GLFKEY") == form_.txtglfkey.text();
}

void StoredInvoice::each_line(const std::function<void(Recordset& line)>& change) const {
    auto lines = kernel().find_to_change("AP_transaction_table", {{"fkey", form_.txtfkey.text()}});
    for (; !lines.at_eof(); lines.MoveNext()) {
        lines.Edit();
        change(lines);
        lines.Update();
    }
}

void StoredInvoice::delete_lines() const {
    kernel().database().Execute(fmt::format("DELETE * FROM AP_transaction_table WHERE fkey = {}",
                                            store::quoted(form_.txtfkey.text())));
}

}  // namespace brimley::invoices
