#include "payments/prepayment/prepayment_edit.h"

#include "kernel/money.h"
#include "payments/prepayment/apform_prepayment.h"

namespace brimley::payments {

using store::Recordset;
using store::Value;

PrepaymentEdit::PrepaymentEdit(APform_prepayment& form) : RepostingEdit(form), form_(form) {}

bool PrepaymentEdit::validate() {
    return form_.check_entry(
        checks, {"please specify pay by", "please specify bank account", "please specify Check number"});
}

double PrepaymentEdit::payment_amount() const { return form_.amount(); }

bool PrepaymentEdit::moves_money(const Recordset& header) const {
    const std::string cash_accno = form_.pay_by.is_cash() ? form_.cmbcash.text() : "";
    return RepostingEdit::moves_money(header) || header.text("cash_accno") != cash_accno;
}

void PrepaymentEdit::follow_change(const Recordset& header) {
    const bool other_amount = kernel::Round(header.number("payment_amount") - form_.amount()) != 0;
    if (other_amount || header.text("po_no") != form_.purchase_order())
        form_.insert_Prepayment_waiting_PO(form_.purchase_order(), form_.amount());
}

// The accounts are written as well: a second edit posts from those that are true, and a payment applies the
// prepayment from its own.
void PrepaymentEdit::fill_header(Recordset& header, bool moves) {
    const PayBy& pay_by = form_.pay_by;
    header.set("remit_to", form_.txtremit.text());
    header.set("payby", form_.cmbpayby.text());
    header.set("cash_accno", pay_by.is_cash() ? Value(form_.cmbcash.text()) : Value());
    header.set("bank_code", pay_by.is_by_bank() ? Value(form_.cmbbank.text()) : Value());
    if (moves) header.set("prepayment_accno", form_.prepayment_accno());
    header.set("po_no", form_.purchase_order());
    header.set("payment_amount", form_.amount());
}

void PrepaymentEdit::write_items() {
    auto item = kernel().find_to_change("AP_transaction_table", {{"fkey", form_.txtfkey.text()}});
    if (item.at_eof()) return;
    const store::DateTime now = desk().now();
    item.Edit();
    item.set("gross_amount", 0 - form_.amount());
    item.set("open_amount", 0 - form_.amount());
    item.set("date_lastmodified", now.date_only());
    item.set("time_lastmodified", now.time_text());
    item.set("user_updated", context().BRIMLEY_USER);
    item.Update();
}

bool PrepaymentEdit::post() { return form_.insert_GL_record(form_.cmbvendor.text(), checks.accno); }

}  // namespace brimley::payments
