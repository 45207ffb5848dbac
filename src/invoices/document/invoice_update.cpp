#include "invoices/document/invoice_update.h"

#include "invoices/apform_invoice.h"

namespace brimley::invoices {

using store::Recordset;

InvoiceUpdate::InvoiceUpdate(APform_invoice& form) : DocumentPart(form), form_(form) {}

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
    if (!form_.payment_term.chosen()) return std::nullopt;
    return form_.entry_checks.check();
}

bool InvoiceUpdate::Update_record() {
    if (form_.chkrecur.is_set()) return false;
    const std::string old_glfkey = form_.txtglfkey.text();
    std::optional<CheckedEntry> entry;
    if (step("validate_edit", [&] { entry = validate(); }) && !entry) return false;
    if (entry) form_.txtdoctype.set(kInvoice.doctype);  // whatever the kind; the stored one stays
    if (!entry || !in_transaction("Update_record", [&] { return write(*entry); })) {
        form_.txtglfkey.set(old_glfkey);
        tell_failure("Update failed.");
        return false;
    }
    tell("Update complete");
    return true;
}

bool InvoiceUpdate::made_here() const { return form_.txtsource.text() == kSource; }

bool InvoiceUpdate::write(const CheckedEntry& entry) {
    if (made_here() && !form_.posting.insert_GL_reverse()) return false;
    auto header = form_.stored.take_header();
    if (!header) return false;
    if (!form_.stored.posted_as_shown(*header)) return fail(changed_since_shown(*header));
    // An edit opens every amount again; the document may have been voided or paid since it was begun.
    if (header->flag("void")) return fail(header->text("docno") + " was voided");
    if (header->flag("paid") || header->flag("fully_paid")) return fail(header->text("docno") + " was paid");
    fill_header(*header, entry);
    if (!made_here()) {
        pass_terms_to_lines(*header);
    } else if (!write_lines_anew(*header, entry)) {
        return false;
    }
    form_.owing.update_vendor_owing_balance();
    header->Update();
    return true;
}

// Currency, rate, vendor, period and number stay as they were stored, whatever the screen says.
void InvoiceUpdate::fill_header(Recordset& header, const CheckedEntry& entry) const {
    header.set("invoice_no", form_.txtinvno.text());
    if (entry.discount_date) header.set("discount_date", *entry.discount_date);
    header.set("payment_term", form_.cmbterm.chosen(1).value_or(""));
    if (!form_.txtremark.empty()) header.set("remark", form_.txtremark.text());
    if (entry.due_date) header.set("due_date", *entry.due_date);
}

bool InvoiceUpdate::write_lines_anew(Recordset& header, const CheckedEntry& entry) {
    form_.stored.delete_lines();
    if (!form_.line_writer.insert_new_record_transaction(header, entry.lines, entry.ap_accno)) return false;
    if (!form_.posting.insert_GL_record(entry.ap_accno, entry.lines)) return false;
    header.set("GLFKEY", form_.txtglfkey.text());
    return true;
}

void InvoiceUpdate::pass_terms_to_lines(const Recordset& header) {
    form_.stored.each_line([&](Recordset& line) {
        for (const char* field : {"payment_term", "due_date", "discount_date", "early_discount"})
            line.set(field, header.field(field));
    });
}

}  // namespace brimley::invoices
