// What a document on screen hands to the ledger.
#include <fmt/format.h>

#include "frame/document_form.h"
#include "kernel/money.h"

namespace brimley::frame {

std::string DocumentForm::no_date(const controls::TextField& field) {
    return fmt::format("{}: \"{}\" is no date", field.name(), field.text());
}

bool DocumentForm::draw_number(kernel::ModuleG3::TooLongMessage too_long) {
    const std::string& doctype = txtdoctype.text();
    const auto numbers = kernel().get_next_number(cmbcompany.text(), doctype, cmbfyear.text());
    if (!numbers) return false;
    txtdocno.set(kernel().format_docno(doctype, numbers->nextdocno, cmbfyear.text()));
    if (!kernel().docno_fits(txtdocno.text(), too_long)) return false;
    txtfkey.set(kernel::ModuleG3::make_fkey(cmbcompany.text(), doctype, numbers->fkeyno));
    return true;
}

kernel::GlDocument DocumentForm::gl_document(store::DateTime gldate) {
    kernel::GlDocument document;
    document.company = cmbcompany.text();
    document.gldate = gldate;
    document.source_docno = txtdocno.text();
    document.Currency = cmbcurrency.text();
    document.base_currency = context().BASE_CURRENCY;
    if (document.foreign() && !cmbexrate.empty())
        document.rate_doc_to_base = kernel::money_value(cmbexrate.text());
    // As plain digits, whatever was typed: the period is a key of the balance columns.
    document.period = store::shortest_number(store::Value(cmbperiod.text()).number());
    document.fyear = cmbfyear.text();
    document.user = context().BRIMLEY_USER;
    document.vendor_no = current_vendor();
    document.gain_account = gain_accno;
    document.loss_account = loss_accno;
    return document;
}

kernel::GlReversal DocumentForm::gl_reversal() {
    kernel::GlReversal reversal;
    reversal.fkey = txtglfkey.text();
    reversal.company = cmbcompany.empty() ? "1" : cmbcompany.text();
    reversal.Currency = cmbcurrency.text();
    reversal.period = cmbperiod.text();
    reversal.fyear = cmbfyear.text();
    reversal.source_docno = txtdocno.text();
    reversal.user = context().BRIMLEY_USER;
    return reversal;
}

}  // namespace brimley::frame
