#include "host/apclass.h"

namespace brimley::host {

using invoices::APform_invoice;
using payments::APform_payment;

APclass::~APclass() {
    if (frm_invoice) frm_invoice->NotifyClients = nullptr;
    if (frm_payment) frm_payment->NotifyClients = nullptr;
}

std::shared_ptr<kernel::ModuleG3> APclass::kernel_of_database() {
    if (!abcdb) return nullptr;
    if (!kernel_ || kernel_->shared_database() != abcdb)
        kernel_ = std::make_shared<kernel::ModuleG3>(abcdb, desk_);
    return kernel_;
}

template <class FormClass>
FormClass& APclass::create(std::shared_ptr<FormClass>& reference, Forward forward) {
    // The form that was shown before stays on screen, but nobody listens to it any more.
    if (reference) reference->NotifyClients = nullptr;
    reference = std::make_shared<FormClass>(static_cast<const frame::HostContext&>(*this),
                                            kernel_of_database(), desk_);
    reference->NotifyClients = [this, forward](const std::string& formx, const std::string& docnox,
                                               const std::string& arg2) {
        (this->*forward)(formx, docnox, arg2);
    };
    return *reference;
}

void APclass::raise(const std::string& formx, const std::string& docnox, const std::string& arg2) {
    if (NotifyClients) NotifyClients(formx, docnox, arg2);
    desk_.pump();
}

// --- the invoice form ---
void APclass::showform_APform_invoice(const std::optional<std::string>& doctypex) {
    // Held here: the host may show another one from within an event.
    APform_invoice& form = create(frm_invoice, &APclass::frm_invoice_NotifyClients);
    const auto alive = frm_invoice;
    const char* kind = doctypex == "cn" ? "Credit Note" : doctypex == "dn" ? "Debit Note" : nullptr;
    if (kind != nullptr) {
        form.ensure_loaded();
        form.cmbdoctype.set(kind);
        form.last_record();
    }
    form.show();
}

void APclass::switch_APform_invoice(const std::string& doctypex) {
    if (!frm_invoice) return;
    const char* kind = doctypex == "vcn" ? "Credit Note" : doctypex == "vdn" ? "Debit Note" : "Invoice";
    if (frm_invoice->cmbdoctype.text() == kind) return;
    frm_invoice->leave_recurring_view();
    frm_invoice->cmbdoctype.set(kind);
    frm_invoice->last_record();
}

void APclass::APform_invoice_goto_fkey(const std::string& fkeyx) {
    if (!frm_invoice) return;
    frm_invoice->txtfkey.set(fkeyx);
    frm_invoice->Recordx_fkey();
}

void APclass::APform_invoice_goto_docno(const std::string& docnox) {
    if (!frm_invoice) return;
    frm_invoice->txtdocno.set(docnox);
    frm_invoice->Recordx();
}

void APclass::frm_invoice_Exit() {
    if (frm_invoice) frm_invoice->unload_form();
}

// --- the payment form ---
void APclass::showform_APform_payment(const std::optional<std::string>& docnox) {
    APform_payment& form = create(frm_payment, &APclass::frm_payment_NotifyClients);
    const auto alive = frm_payment;
    if (docnox) {
        form.ensure_loaded();
        form.txtdocno.set(*docnox);
        form.Recordx();
    }
    form.show();
}

void APclass::APform_payment_goto_docno(const std::string& docnox) {
    if (!frm_payment) return;
    frm_payment->txtdocno.set(docnox);
    frm_payment->Recordx();
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

void APclass::frm_payment_Exit() {
    if (frm_payment) frm_payment->unload_form();
}

// --- forms that this version does not have yet: nothing is shown, and nothing to steer or to close ---
void APclass::showform_APform_prepayment(const std::optional<std::string>&) {}
void APclass::showform_APform_misc() {}
void APclass::showform_APform_creditcard_payment() {}
void APclass::showform_APform_payhistory(const std::optional<std::string>&) {}
void APclass::showform_APform_inquiry() {}
void APclass::showform_APform_aging(const std::optional<std::string>&) {}
void APclass::showform_APform_void_check() {}
void APclass::showform_APform_revalue() {}
void APclass::showform_APreport_recur_inquiry() {}

void APclass::APform_prepayment_goto_docno(const std::string&) {}
void APclass::APform_misc_goto_docno(const std::string&) {}
void APclass::APform_creditcard_goto_docno(const std::string&) {}
void APclass::APform_revalue_goto_docno(const std::string&) {}

void APclass::frm_prepayment_Exit() {}
void APclass::frm_misc_Exit() {}
void APclass::frm_creditcard_Exit() {}
void APclass::frm_recur_inquiry_Exit() {}
void APclass::frm_revalue_Exit() {}
void APclass::frm_void_check_Exit() {}
void APclass::frm_aging_Exit() {}
void APclass::frm_inquiry_Exit() {}
void APclass::frm_payhistory_Exit() {}

// --- forward methods ---
#define BRIMLEY_FORWARD(method)                                                                          \
    void APclass::method(const std::string& formx, const std::string& docnox, const std::string& arg2) { \
        raise(formx, docnox, arg2);                                                                      \
    }
BRIMLEY_FORWARD(frm_invoice_NotifyClients)
BRIMLEY_FORWARD(frm_payment_NotifyClients)
BRIMLEY_FORWARD(frm_prepayment_NotifyClients)
BRIMLEY_FORWARD(frm_misc_NotifyClients)
BRIMLEY_FORWARD(frm_creditcard_NotifyClients)
BRIMLEY_FORWARD(frm_recur_inquiry_NotifyClients)
BRIMLEY_FORWARD(frm_revalue_NotifyClients)
BRIMLEY_FORWARD(frm_void_check_NotifyClients)
BRIMLEY_FORWARD(frm_aging_NotifyClients)
BRIMLEY_FORWARD(frm_inquiry_NotifyClients)
BRIMLEY_FORWARD(frm_payhistory_NotifyClients)
#undef BRIMLEY_FORWARD

void APclass::class_terminate() {
    kernel_.reset();  // it holds the database as well
    abcdb.reset();
    dbe.reset();
}

}  // namespace brimley::host
