#include "payments/payment_ledger.h"

#include "kernel/money.h"
#include "payments/payment_form.h"

namespace brimley::payments {

PaymentLedger::PaymentLedger(PaymentForm& form) : DocumentPart(form), form_(form) {}

bool PaymentLedger::insert_GL_record(const std::string& vendor_no, const Gather& gather) {
    const auto payment_date = date_in(form_.txtpaydate);
    if (!payment_date) return fail(no_date(form_.txtpaydate));
    kernel::GlDocument document = gl_document(*payment_date);
    document.vendor_no = vendor_no;
    if (form_.cmbexrate.empty()) document.rate_doc_to_base.reset();
    kernel::GlPosting posting(kernel(), kernel::gl_rules(form_.kind().gl_form), std::move(document));
    if (!posting.open() || !gather(posting)) return false;
    if (!posting.write_lines() || !posting.write_rounding() || !posting.finish()) return false;
    form_.txtglfkey.set(posting.fkey());
    return true;
}

void PaymentLedger::add(kernel::GlPosting& posting, const std::string& accno, double amount) const {
    const double rate = foreign() ? kernel::money_value(form_.cmbexrate.text()) : 1;
    posting.add(accno, amount, foreign() ? kernel::Round(amount * rate) : amount);
}

void PaymentLedger::add_paid_from(kernel::GlPosting& posting, const std::string& accno, double amount) const {
    add(posting, accno, form_.pay_by.is_by_card() ? amount : 0 - amount);
}

bool PaymentLedger::insert_GL_reverse() {
    kernel::GlReversal reversal = gl_reversal();
    reversal.edited = entering();
    return kernel::reverse_gl_document(kernel(), kernel::gl_reversal_rules(form_.kind().gl_form), reversal);
}

}  // namespace brimley::payments
