// The host's methods of the payment forms.
#include "host/form_slot.h"
#include "payments/card/apform_creditcard_payment.h"
#include "payments/invoice_payment/apform_payment.h"
#include "payments/misc/apform_misc_payment.h"
#include "payments/prepayment/apform_prepayment.h"
#include "payments/void_check/apform_void_check.h"

namespace brimley::host {

void APclass::showform_APform_payment(const std::optional<std::string>& docnox) {
    FormSlot(*this, frm_payment).show_document(&APclass::frm_payment_NotifyClients, docnox);
}

void APclass::APform_payment_goto_docno(const std::string& docnox) {
    FormSlot(*this, frm_payment).go_to_docno(docnox);
}

// Without an open form each step fails silently. The button goes down last, so what the form does in New
// alone is not done for the steps before.
void APclass::pay_this_invoice(const std::string& docnox, const std::string& vendorx) {
    if (!frm_payment || !frm_payment->is_open()) return;
    const auto form = frm_payment;
    form->ensure_loaded();
    form->selected_docno = docnox;
    form->cmbvendor.set(vendorx);
    form->grid_newmode();
    form->gencode_new();
    form->list_vendor_invoice(vendorx);
    form->CommandBars1().set_pressed(frame::command::kEditMode, false);  // New and Edit are never both
    form->CommandBars1().set_pressed(frame::command::kNew, true);
    form->show();
}

void APclass::frm_payment_Exit() { FormSlot(*this, frm_payment).exit(); }

void APclass::showform_APform_prepayment(const std::optional<std::string>& docnox) {
    FormSlot(*this, frm_prepayment).show_document(&APclass::frm_prepayment_NotifyClients, docnox);
}

void APclass::APform_prepayment_goto_docno(const std::string& docnox) {
    FormSlot(*this, frm_prepayment).go_to_docno(docnox);
}

void APclass::frm_prepayment_Exit() { FormSlot(*this, frm_prepayment).exit(); }

void APclass::showform_APform_creditcard_payment() {
    FormSlot(*this, frm_creditcard).show(&APclass::frm_creditcard_NotifyClients);
}

void APclass::APform_creditcard_goto_docno(const std::string& docnox) {
    FormSlot(*this, frm_creditcard).go_to_docno(docnox);
}

void APclass::frm_creditcard_Exit() { FormSlot(*this, frm_creditcard).exit(); }

void APclass::showform_APform_misc() { FormSlot(*this, frm_misc).show(&APclass::frm_misc_NotifyClients); }

void APclass::APform_misc_goto_docno(const std::string& docnox) {
    FormSlot(*this, frm_misc).go_to_docno(docnox);
}

void APclass::frm_misc_Exit() { FormSlot(*this, frm_misc).exit(); }

void APclass::showform_APform_void_check() {
    FormSlot(*this, frm_void_check).show(&APclass::frm_void_check_NotifyClients);
}

void APclass::frm_void_check_Exit() { FormSlot(*this, frm_void_check).exit(); }

}  // namespace brimley::host
