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

}  // namespace brimley::payments
