#include "payments/card/card_save.h"

#include "kernel/money.h"
#include "payments/card/apform_creditcard_payment.h"

namespace brimley::payments {

using store::Recordset;

CardSave::CardSave(APform_creditcard_payment& form) : NewPayment(form), form_(form) {}

bool CardSave::validate() { return form_.check_entry(checks); }

void CardSave::fill_header(Recordset& header) {
    NewPayment::fill_header(header);
    const CardAmounts paid = form_.amounts();
    header.set("vendor_no", form_.cmbcard.text());
    header.set("card_balance", paid.balance);
    header.set("payment_amount", paid.payment);
    header.set("fee_amount", paid.fee);
    if (paid.fee > 0) header.set("expense_accno", form_.cmbexpacc.text());
}

bool CardSave::write_lines(Recordset& header) {
    const CardAmounts paid = form_.amounts();
    write_only_line(header, {paid.balance, paid.payment, kernel::Round(paid.balance - paid.on_card())});
    return true;
}

bool CardSave::post() { return form_.insert_GL_record(form_.cmbcard.text(), checks.accno); }

}  // namespace brimley::payments
