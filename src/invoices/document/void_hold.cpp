#include "invoices/document/void_hold.h"

#include <fmt/format.h>

#include "invoices/apform_invoice.h"
#include "kernel/money.h"
#include "kernel/owing_balance.h"

namespace brimley::invoices {

using kernel::money_value;
using store::Recordset;

VoidAndHold::VoidAndHold(APform_invoice& form) : DocumentPart(form), form_(form) {}

// --- void ---
bool VoidAndHold::refuses_void(bool is_void, int paid) {
    const char* refusal = is_void     ? "Invoice was void."
                          : paid == 1 ? "Invoice was paid."
                          : paid != 0 ? "Invoice was partially paid."
                                      : nullptr;
    if (refusal != nullptr) tell(refusal);
    return refusal != nullptr;
}

bool VoidAndHold::may_void() {
    if (form_.txtdocno.empty() || form_.txtfkey.empty() || !shown_whole()) return false;
    if (!has_its_number()) return false;
    if (refuses_void(form_.chkvoid.is_set(), form_.chkpaid.value())) return false;
    const std::string& source = form_.txtsource.text();
    if (source != "AP" && source != kSource) {
        tell("Cannot void invoice from " + source);
        return false;
    }
    return ask("Are you sure to void the invoice?", "Void invoice");
}

void VoidAndHold::void_invoice() {
    if (!may_void()) return;
    if (!in_transaction("void_invoice", [this] { return write_void(); })) return;
    form_.chkvoid.set(1);
    tell("Invoice " + form_.txtdocno.text() + " is void.");
}

// Open amounts and paid flags stay as they are: a void document is left out by its flag.
bool VoidAndHold::write_void() {
    if (!form_.insert_GL_reverse()) return false;
    auto header = form_.stored_rows.take_header();
    if (!header || !form_.stored_rows.posted_as_shown(*header)) return false;
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
    form_.stored_rows.each_line(mark_void);
    give_back_owing_balance();
    return true;
}

void VoidAndHold::give_back_owing_balance() {
    const double side = form_.cmbdoctype.text() == kCreditNote.caption ? 1 : -1;
    kernel::change_owing_balance(kernel(), form_.cmbvendor.text(),
                                 {side * money_value(form_.txttotal.text())}, kernel::kOwingOfVoidedInvoice);
}

// --- hold ---
bool VoidAndHold::may_change_hold(const char* question, const char* title) {
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
    if (in_transaction(
            "change_hold", [&] { return write_hold(hold); }, &failure)) {
        form_.chkhold.set(hold ? 1 : 0);
        tell("Invoice " + form_.txtdocno.text() + (hold ? " was hold." : " was released."));
    } else if (!failure.empty()) {
        tell_failure(failure);
    }
}

bool VoidAndHold::write_hold(bool hold) {
    auto header = kernel().find_to_change("AP_header_table", {{"fkey", form_.txtfkey.text()}});
    if (header.at_eof()) return refuse(form_.txtdocno.text() + " not exist.");
    header.Edit();
    header.set("hold", hold);
    header.Update();
    form_.stored_rows.each_line([&](Recordset& line) { line.set("hold", hold); });
    return true;
}

}  // namespace brimley::invoices
