// What undoes or blocks a saved document: void, hold, release.
#include <fmt/format.h>

#include "frame/transaction.h"
#include "invoices/apform_invoice.h"
#include "kernel/money.h"
#include "kernel/owing_balance.h"

namespace brimley::invoices {

using kernel::money_value;
using store::quoted;
using store::Recordset;

void APform_invoice::each_stored_line(const std::function<void(Recordset& line)>& change) {
    auto lines = kernel().change(
        fmt::format("SELECT * FROM AP_transaction_table WHERE fkey = {}", quoted(txtfkey.text())));
    for (; !lines.at_eof(); lines.MoveNext()) {
        lines.Edit();
        change(lines);
        lines.Update();
    }
}

// --- void ---
bool APform_invoice::refuses_void(bool is_void, int paid) {
    const char* refusal = is_void     ? "Invoice was void."
                          : paid == 1 ? "Invoice was paid."
                          : paid != 0 ? "Invoice was partially paid."
                                      : nullptr;
    if (refusal != nullptr) tell(refusal);
    return refusal != nullptr;
}

bool APform_invoice::may_void() {
    if (txtdocno.empty() || txtfkey.empty() || !shown_whole()) return false;
    if (!has_its_number()) return false;
    if (refuses_void(chkvoid.is_set(), chkpaid.value())) return false;
    const std::string& source = txtsource.text();
    if (source != "AP" && source != kSource) {
        tell("Cannot void invoice from " + source);
        return false;
    }
    return ask("Are you sure to void the invoice?", "Void invoice");
}

void APform_invoice::void_invoice() {
    if (!may_void()) return;
    if (!in_transaction("void_invoice", [this] { return write_void(); })) return;
    chkvoid.set(1);
    tell("Invoice " + txtdocno.text() + " is void.");
}

// Open amounts and paid flags stay as they are: a void document is left out by its flag.
bool APform_invoice::write_void() {
    if (!insert_GL_reverse()) return false;
    auto header = take_header();
    if (!header || !posted_as_shown(*header)) return false;
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
    each_stored_line(mark_void);
    give_back_owing_balance();
    return true;
}

void APform_invoice::give_back_owing_balance() {
    const double side = cmbdoctype.text() == kCreditNote.caption ? 1 : -1;
    kernel::change_owing_balance(kernel(), cmbvendor.text(), {side * money_value(txttotal.text())},
                                 kernel::kOwingOfVoidedInvoice);
}

// --- hold ---
bool APform_invoice::may_change_hold(const char* question, const char* title) {
    if (txtdocno.empty() || txtfkey.empty() || !has_its_number()) return false;
    const char* refusal = chkvoid.value() == 1   ? "Invoice was void."
                          : chkpaid.value() == 1 ? "Invoice was fully paid."
                                                 : nullptr;
    if (refusal != nullptr) tell(refusal);
    return refusal == nullptr && ask(question, title);
}

void APform_invoice::hold_invoice() {
    if (may_change_hold("Are you sure to hold this invoice?", "Hold invoice")) change_hold(true);
}

void APform_invoice::release_hold() {
    if (!chkhold.is_set()) return;
    if (may_change_hold("Are you sure to release invoice from hold?", "Release Hold invoice"))
        change_hold(false);
}

void APform_invoice::change_hold(bool hold) {
    bool done = false;
    try {
        frame::Transaction transaction(context().dbe);
        done = write_hold(hold);
        if (done) transaction.commit();
    } catch (const std::runtime_error& failure) {
        tell_failure(failure.what());
        return;
    }
    if (!done) return;
    chkhold.set(hold ? 1 : 0);
    tell("Invoice " + txtdocno.text() + (hold ? " was hold." : " was released."));
}

bool APform_invoice::write_hold(bool hold) {
    auto header =
        kernel().change(fmt::format("SELECT * FROM AP_header_table WHERE fkey = {}", quoted(txtfkey.text())));
    if (header.at_eof()) {
        tell(txtdocno.text() + " not exist.");
        return false;
    }
    header.Edit();
    header.set("hold", hold);
    header.Update();
    each_stored_line([&](Recordset& line) { line.set("hold", hold); });
    return true;
}

}  // namespace brimley::invoices
