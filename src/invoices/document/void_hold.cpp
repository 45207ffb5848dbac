#include "invoices/document/void_hold.h"

#include "invoices/apform_invoice.h"

namespace brimley::invoices {

using store::Recordset;

VoidAndHold::VoidAndHold(APform_invoice& form) : DocumentPart(form), form_(form) {}

// --- void ---
bool VoidAndHold::refuses_void(bool is_void, int paid) const {
    const char* refusal = is_void     ? "Invoice was void."
                          : paid == 1 ? "Invoice was paid."
                          : paid != 0 ? "Invoice was partially paid."
                                      : nullptr;
    if (refusal != nullptr) tell(refusal);
    return refusal != nullptr;
}

bool VoidAndHold::may_void() const {
    if (form_.txtdocno.empty() || form_.txtfkey.empty() || !shown_whole()) return false;
    if (!has_its_number()) return false;
    if (refuses_void(form_.chkvoid.is_set(), form_.chkpaid.value())) return false;
    const std::string& source = form_.txtsource.text();
    if (source != kGeneratedSource && source != kSource) return refuse("Cannot void invoice from " + source);
    return ask("Are you sure to void the invoice?", "Void invoice");
}

void VoidAndHold::void_invoice() {
    if (!may_void()) return;
    if (!in_transaction("void_invoice", [this] { return write_void(); })) return tell_failure();
    form_.chkvoid.set(1);
    tell("Invoice " + form_.txtdocno.text() + " is void.");
}

// Open amounts and paid flags stay as they are: a void document is left out by its flag.
bool VoidAndHold::write_void() {
    if (!form_.posting.insert_GL_reverse()) return false;
    auto header = form_.stored.take_header();
    if (!header) return false;
    if (!form_.stored.posted_as_shown(*header)) return fail(changed_since_shown(*header));
    // The boxes on screen may be older than what another desk has done.
    const int paid = header->flag("fully_paid") ? 1 : header->flag("paid") ? 2 : 0;
    if (refuses_void(header->flag("void"), paid)) return false;
    const store::DateTime now = desk().now();
    const auto mark_void = [&](Recordset& row) {
        row.set("void", true);
        row.set("date_lastmodified", now.date_only());
        row.set("time_lastmodified", now.time_text());
    };
    mark_void(*header);
    header->Update();
    form_.stored.each_line(mark_void);
    form_.owing.give_back();
    return true;
}

// --- hold ---
bool VoidAndHold::may_change_hold(const char* question, const char* title) const {
    if (form_.txtdocno.empty() || form_.txtfkey.empty() || !has_its_number()) return false;
    const char* refusal = form_.chkvoid.value() == 1   ? "Invoice was void."
                          : form_.chkpaid.value() == 1 ? "Invoice was fully paid."
                                                       : nullptr;
    if (refusal != nullptr) tell(refusal);
    return refusal == nullptr && ask(question, title);
}

void VoidAndHold::hold_invoice() {
    if (may_change_hold("Are you sure to hold this invoice?", "Hold invoice")) change_hold(true);
}

void VoidAndHold::release_hold() {
    if (!form_.chkhold.is_set()) return;
    if (may_change_hold("Are you sure to release invoice from hold?", "Release Hold invoice"))
        change_hold(false);
}

void VoidAndHold::change_hold(bool hold) {
    std::string failure;
    if (!in_transaction(
            "change_hold", [&] { return write_hold(hold); }, &failure)) {
        if (!failure.empty()) tell_failure(failure);
        return;
    }
    form_.chkhold.set(hold ? 1 : 0);
    tell("Invoice " + form_.txtdocno.text() + (hold ? " was hold." : " was released."));
}

bool VoidAndHold::write_hold(bool hold) {
    auto header = form_.stored.header();
    if (header.at_eof()) return refuse(form_.txtdocno.text() + " not exist.");
    header.Edit();
    header.set("hold", hold);
    header.Update();
    form_.stored.each_line([&](Recordset& line) { line.set("hold", hold); });
    return true;
}

}  // namespace brimley::invoices
