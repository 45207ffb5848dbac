#include "host/apclass.h"

#include "frame/desk.h"
#include "kernel/module_g3.h"

namespace brimley::host {

std::shared_ptr<kernel::ModuleG3> APclass::kernel_of_database() {
    if (!abcdb) return nullptr;
    if (!kernel_ || kernel_->shared_database() != abcdb)
        kernel_ = std::make_shared<kernel::ModuleG3>(abcdb, desk_);
    return kernel_;
}

void APclass::raise(const std::string& formx, const std::string& docnox, const std::string& arg2) {
    if (NotifyClients) NotifyClients(formx, docnox, arg2);
    desk_.pump();
}

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
BRIMLEY_FORWARD(frm_ledger_NotifyClients)
#undef BRIMLEY_FORWARD

void APclass::class_terminate() {
    kernel_.reset();  // it holds the database as well
    abcdb.reset();
    dbe.reset();
}

}  // namespace brimley::host
