#include "invoices/document/invoice_update.h"

#include <fmt/format.h>

#include "invoices/apform_invoice.h"

namespace brimley::invoices {

using store::quoted;
using store::Recordset;

InvoiceUpdate::InvoiceUpdate(APform_invoice& form) : DocumentPart(form), form_(form) {}

bool InvoiceUpdate::made_here() const { return form_.txtsource.text() == kSource; }

std::optional<CheckedEntry> InvoiceUpdate::validate() {
    if (form_.cmbcompany.empty()) form_.cmbcompany.set("1");
    const char* missing = form_.cmbvendor.empty()     ? "Please specify vendor"
                          : form_.cmbterm.empty()     ? "Please specify Payment term"
                          : form_.cmbcurrency.empty() ? "Please specify Currency"
                                                      : nullptr;
    if (missing != nullptr) {
        tell(missing);
        return std::nullopt;
    }
    if (!form_.chosen_term()) return std::nullopt;
    CheckedEntry entry;
    if (!form_.validate_lines_and_period(entry)) return std::nullopt;
    return entry;
}

bool InvoiceUpdate::Update_record() {
    if (form_.chkrecur.is_set()) return false;  // a template cannot be saved on this road
    const std::string old_glfkey = form_.txtglfkey.text();
    std::optional<CheckedEntry> entry;
    if (step("validate_edit", [&] { entry = validate(); }) && !entry) return false;
    if (entry) form_.txtdoctype.set("ip");  // whatever the kind; the stored one stays
    const bool saved = entry && in_transaction("Update_record", [&] { return write(*entry); });
    if (!saved) form_.txtglfkey.set(old_glfkey);
    if (saved) {
        tell("Update complete");
    } else {
        tell_failure("Update failed.");
    }
    return saved;
}

bool InvoiceUpdate::write(const CheckedEntry& entry) {
    if (made_here() && !form_.insert_GL_reverse()) return false;
    auto header = form_.stored_rows.take_header();
    if (!header || !form_.stored_rows.posted_as_shown(*header)) return false;
    // An edit opens every amount anew; the document may have been voided or paid since it was begun.
    if (header->flag("void") || header->flag("paid") || header->flag("fully_paid")) return false;
    fill_header(*header, entry);
    if (made_here()) {
        kernel().database().Execute(
            fmt::format("DELETE * FROM AP_transaction_table WHERE fkey = {}", quoted(form_.txtfkey.text())));
        if (!form_.insert_new_record_transaction(*header, entry.ap_accno)) return false;
        if (!form_.insert_GL_record(entry.ap_accno)) return false;
        header->set("GLFKEY", form_.txtglfkey.text());
    } else {
        pass_terms_to_lines(*header);
    }
    form_.update_vendor_owing_balance();
    header->Update();
    return true;
}

// Currency, rate, vendor, period and number stay as they were stored, whatever the screen says.
void InvoiceUpdate::fill_header(Recordset& header, const CheckedEntry& entry) {
    header.set("invoice_no", form_.txtinvno.text());
    if (entry.discount_date) header.set("discount_date", *entry.discount_date);
    header.set("payment_term", form_.cmbterm.chosen(1).value_or(""));
    if (!form_.txtremark.empty()) header.set("remark", form_.txtremark.text());
    if (entry.due_date) header.set("due_date", *entry.due_date);
}

void InvoiceUpdate::pass_terms_to_lines(const Recordset& header) {
    form_.stored_rows.each_line([&](Recordset& line) {
        for (const char* field : {"payment_term", "due_date", "discount_date", "early_discount"})
            line.set(field, header.field(field));
    });
}

}  // namespace brimley::invoices
