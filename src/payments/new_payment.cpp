#include "payments/new_payment.h"

#include "payments/payment_form.h"

namespace brimley::payments {

NewPayment::NewPayment(PaymentForm& form) : DocumentSave(form), checks(form), form_(form) {}

void NewPayment::set_doctype() { form_.txtdoctype.set(form_.kind().doctype); }

void NewPayment::fill_header(store::Recordset& header) {
    form_.fill_header(header, checks.dates);
    stamp_created(header);
}

void NewPayment::report_success() {
    tell(form_.kind().saved_prefix + form_.txtdocno.text() + " complete");
    form_.Recordx_fkey();
}

std::string NewPayment::failure_message() const { return form_.kind().save_failed; }

void NewPayment::copy_header(store::Recordset& line, const store::Recordset& header,
                             std::initializer_list<const char*> fields) {
    for (const char* field : fields)
        line.set(field, header.field(field));
}

void NewPayment::stamp_line(store::Recordset& line) const {
    stamp_created(line);
    line.set("computer_id", kernel().get_computer_name());
}

void NewPayment::write_only_line(const store::Recordset& header, const OnlyLine& amounts) {
    auto line = kernel().change("SELECT * FROM Payment_transaction_table WHERE 1 = 2");
    line.AddNew();
    copy_header(line, header, {"docno", "payment_date", "company", "fkey", "vendor_no", "Currency"});
    if (!amounts.ap_docno.empty()) line.set("ap_docno", amounts.ap_docno);
    line.set("pay_item", 1);
    line.set("gross_amount", amounts.open);
    line.set("open_amount", amounts.open);
    line.set("pay_amount", amounts.pay);
    line.set("balance", amounts.balance);
    stamp_line(line);
    line.Update();
}

}  // namespace brimley::payments
