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
    auto line = kernel().change("SELECT * FROM Payment_transaction_table WHERE 1 = 2");
    line.AddNew();
    copy_header(line, header, {"docno", "payment_date", "company", "fkey", "vendor_no", "Currency"});
    line.set("pay_item", 1);
    line.set("gross_amount", paid.balance);
    line.set("open_amount", paid.balance);
    line.set("pay_amount", paid.payment);
    line.set("balance", kernel::Round(paid.balance - paid.on_card()));
    stamp_line(line);
    line.Update();
    return true;
}

bool CardSave::post() { return form_.insert_GL_record(form_.cmbcard.text(), checks.accno); }

}  // namespace brimley::payments
