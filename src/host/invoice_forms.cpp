// The host's methods of the invoice form and of the list of recurring templates.
#include "host/form_slot.h"
#include "invoices/apform_invoice.h"
#include "invoices/document/kinds.h"
#include "invoices/recurring_run/apreport_recur_inquiry.h"

namespace brimley::host {

using invoices::kCreditNote;
using invoices::kDebitNote;
using invoices::kInvoice;

void APclass::showform_APform_invoice(const std::optional<std::string>& doctypex) {
    const auto show_last_of_kind = [&](invoices::APform_invoice& form) {
        if (doctypex != "cn" && doctypex != "dn") return;
        form.cmbdoctype.set((doctypex == "cn" ? kCreditNote : kDebitNote).caption);
        form.last_record();
    };
    FormSlot(*this, frm_invoice).show(&APclass::frm_invoice_NotifyClients, show_last_of_kind);
}

void APclass::switch_APform_invoice(const std::string& doctypex) {
    if (!frm_invoice) return;
    const invoices::Kind kind = doctypex == kCreditNote.doctype  ? kCreditNote
                                : doctypex == kDebitNote.doctype ? kDebitNote
                                                                 : kInvoice;
    if (frm_invoice->cmbdoctype.text() == kind.caption) return;
    frm_invoice->leave_recurring_view();
    frm_invoice->cmbdoctype.set(kind.caption);
    frm_invoice->last_record();
}

void APclass::APform_invoice_goto_fkey(const std::string& fkeyx) {
    if (!frm_invoice) return;
    frm_invoice->txtfkey.set(fkeyx);
    frm_invoice->Recordx_fkey();
}

void APclass::APform_invoice_goto_docno(const std::string& docnox) {
    FormSlot(*this, frm_invoice).go_to_docno(docnox);
}

void APclass::showform_APreport_recur_inquiry() {
    FormSlot(*this, frm_recur_inquiry).show(&APclass::frm_recur_inquiry_NotifyClients);
}

void APclass::frm_invoice_Exit() { FormSlot(*this, frm_invoice).exit(); }
void APclass::frm_recur_inquiry_Exit() { FormSlot(*this, frm_recur_inquiry).exit(); }

}  // namespace brimley::host
