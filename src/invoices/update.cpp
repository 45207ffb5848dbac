// Saving an edit: the GL document is reversed and posted anew, the lines are written again, and header and
// vendor follow, in one transaction, or nothing.
//
// A document of another module keeps its lines and its GL document; only what does not touch amounts changes.
#include <fmt/format.h>

#include "frame/transaction.h"
#include "invoices/apform_invoice.h"

namespace brimley::invoices {

using store::quoted;
using store::Recordset;

std::optional<APform_invoice::CheckedEntry> APform_invoice::validate_edit() {
    if (cmbcompany.empty()) cmbcompany.set("1");
    const char* missing = cmbvendor.empty()     ? "Please specify vendor"
                          : cmbterm.empty()     ? "Please specify Payment term"
                          : cmbcurrency.empty() ? "Please specify Currency"
                                                : nullptr;
    if (missing != nullptr) {
        tell(missing);
        return std::nullopt;
    }
    if (!chosen_term()) return std::nullopt;
    CheckedEntry entry;
    if (!validate_lines_and_period(entry)) return std::nullopt;
    return entry;
}

bool APform_invoice::Update_record() {
    if (chkrecur.is_set()) return false;  // a template cannot be saved on this road
    const std::string old_glfkey = txtglfkey.text();
    std::optional<CheckedEntry> entry;
    if (step("validate_edit", [&] { entry = validate_edit(); }) && !entry) return false;
    if (entry) txtdoctype.set("ip");  // whatever the kind; the stored one stays
    const bool saved = entry && in_transaction("Update_record", [&] { return write_edit(*entry); });
    if (!saved) txtglfkey.set(old_glfkey);
    if (saved) {
        tell("Update complete");
    } else {
        tell_failure("Update failed.");
    }
    return saved;
}

bool APform_invoice::write_edit(const CheckedEntry& entry) {
    if (made_here() && !insert_GL_reverse()) return false;
    auto header = take_header();
    if (!header || !posted_as_shown(*header)) return false;
    // An edit opens every amount anew; the document may have been voided or paid since it was begun.
    if (header->flag("void") || header->flag("paid") || header->flag("fully_paid")) return false;
    fill_edited_header(*header, entry);
    if (made_here()) {
        kernel().database().Execute(
            fmt::format("DELETE * FROM AP_transaction_table WHERE fkey = {}", quoted(txtfkey.text())));
        if (!insert_new_record_transaction(*header, entry.ap_accno)) return false;
        if (!insert_GL_record(entry.ap_accno)) return false;
        header->set("GLFKEY", txtglfkey.text());
    } else {
        pass_terms_to_lines(*header);
    }
    update_vendor_owing_balance();
    header->Update();
    return true;
}

// Currency, rate, vendor, period and number stay as they were stored, whatever the screen says.
void APform_invoice::fill_edited_header(Recordset& header, const CheckedEntry& entry) {
    header.set("invoice_no", txtinvno.text());
    if (entry.discount_date) header.set("discount_date", *entry.discount_date);
    header.set("payment_term", cmbterm.chosen(1).value_or(""));
    if (!txtremark.empty()) header.set("remark", txtremark.text());
    if (entry.due_date) header.set("due_date", *entry.due_date);
}

void APform_invoice::pass_terms_to_lines(const Recordset& header) {
    each_stored_line([&](Recordset& line) {
        for (const char* field : {"payment_term", "due_date", "discount_date", "early_discount"})
            line.set(field, header.field(field));
    });
}

std::optional<Recordset> APform_invoice::take_header() {
    auto header =
        kernel().change(fmt::format("SELECT * FROM AP_header_table WHERE fkey = {}", quoted(txtfkey.text())));
    if (header.at_eof()) {
        tell("No Header record");
        return std::nullopt;
    }
    header.Edit();
    return header;
}

}  // namespace brimley::invoices
