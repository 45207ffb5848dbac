#include "payments/card/card_edit.h"

#include "payments/card/apform_creditcard_payment.h"

namespace brimley::payments {

CardEdit::CardEdit(APform_creditcard_payment& form) : RepostingEdit(form), form_(form) {}

bool CardEdit::validate() { return form_.check_entry(checks); }

double CardEdit::payment_amount() const { return form_.amounts().payment; }

void CardEdit::fill_header(store::Recordset& header, bool /*moves*/) { header.set("po_no", ""); }

bool CardEdit::post() { return form_.insert_GL_record(form_.cmbcard.text(), checks.accno); }

}  // namespace brimley::payments
