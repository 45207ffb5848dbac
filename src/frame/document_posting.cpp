// What a document on screen tells the ledger about itself.
#include "frame/document_form.h"
#include "kernel/money.h"

namespace brimley::frame {

bool DocumentForm::draw_number(kernel::ModuleG3::TooLongMessage too_long) {
    const std::string& doctype = txtdoctype.text();
    const auto numbers = kernel().get_next_number(cmbcompany.text(), doctype, cmbfyear.text());
    if (!numbers) return false;
    txtdocno.set(kernel().format_docno(doctype, numbers->nextdocno, cmbfyear.text()));
    if (!kernel().docno_fits(txtdocno.text(), too_long)) return false;
    txtfkey.set(kernel::ModuleG3::make_fkey(cmbcompany.text(), doctype, numbers->fkeyno));
    return true;
}

kernel::GlHeader DocumentForm::gl_document(const char* source, store::DateTime gldate) {
    kernel::GlHeader header;
    header.company = cmbcompany.text();
    header.gldate = gldate;
    header.Source = source;
    header.source_docno = txtdocno.text();
    header.Currency = cmbcurrency.text();
    header.base_currency = context().BASE_CURRENCY;
    if (header.foreign()) header.rate_doc_to_base = kernel::money_value(cmbexrate.text());
    // As plain digits, whatever was typed: the period is a key of the balance columns.
    header.period = store::shortest_number(store::Value(cmbperiod.text()).number());
    header.fyear = cmbfyear.text();
    header.user = context().BRIMLEY_USER;
    header.vendor_no = current_vendor();
    header.gain_account = gain_accno;
    header.loss_account = loss_accno;
    return header;
}

kernel::GlReversal DocumentForm::gl_reversal(const char* source, kernel::ModuleG3::TooLongMessage too_long) {
    kernel::GlReversal reversal;
    reversal.fkey = txtglfkey.text();
    reversal.company = cmbcompany.empty() ? "1" : cmbcompany.text();
    reversal.Currency = cmbcurrency.text();
    reversal.period = cmbperiod.text();
    reversal.fyear = cmbfyear.text();
    reversal.origin = {
        source, txtdocno.text(), identity().class_name, context().BRIMLEY_USER, cmbcurrency.text(), too_long};
    return reversal;
}

}  // namespace brimley::frame
