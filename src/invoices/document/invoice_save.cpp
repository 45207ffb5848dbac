#include "invoices/document/invoice_save.h"

#include "invoices/apform_invoice.h"
#include "kernel/money.h"

namespace brimley::invoices {

using kernel::money_value;
using store::Recordset;

InvoiceSave::InvoiceSave(APform_invoice& form) : DocumentSave(form), form_(form) {}

// --- validation ---

bool InvoiceSave::validate() {
    checked_ = {};
    if (form_.cmbcompany.empty()) form_.cmbcompany.set("1");
    if (!validate_term() || !currency_is_in_use() || !validate_rate()) return false;
    const auto date = required_date(form_.txtinvdate, "please specify invoice date");
    if (!date) return false;
    checked_.invoice_date = *date;
    auto entry = form_.entry_checks.check();
    if (!entry) return false;
    checked_.entry = std::move(*entry);
    return true;
}

bool InvoiceSave::validate_term() {
    if (form_.cmbterm.empty()) return refuse("Please specify Payment term");
    const auto term = form_.payment_term.chosen();
    if (!term) return false;
    checked_.term = {term->text("term_no"), term->field("duedays"), term->field("early_days"),
                     term->field("early_discount")};
    return true;
}

bool InvoiceSave::validate_rate() const {
    if (!foreign()) return true;
    const std::string& rate = form_.cmbexrate.text();
    if (rate.empty()) return refuse("please specify exchange rate");
    return (kernel::is_numeric(rate) && money_value(rate) > 0) || refuse("exchange rate is invalid");
}

// --- writing ---

void InvoiceSave::set_doctype() { form_.set_doctype_of_kind(); }

void InvoiceSave::fill_header(Recordset& header) {
    header.set("docno", form_.txtdocno.text());
    header.set("invoice_date", checked_.invoice_date);
    header.set("invoice_no", form_.txtinvno.text());
    header.set("vendor_no", form_.cmbvendor.text());
    header.set("doctype", form_.txtdoctype.text());
    header.set("company", form_.cmbcompany.text());
    header.set("fkey", form_.txtfkey.text());
    header.set("Currency", form_.cmbcurrency.text());
    if (foreign() && !form_.cmbexrate.empty())
        header.set("exchange_rate", money_value(form_.cmbexrate.text()));
    header.set("remark", form_.txtremark.text());
    fill_terms(header);
    header.set("Source", kSource);
    header.set("source_form", identity().class_name);
    header.set("period", checked_.entry.period);
    header.set("fyear", form_.cmbfyear.text());
    stamp_created(header);
}

void InvoiceSave::fill_terms(Recordset& header) const {
    header.set("payment_term", checked_.term.term_no);
    header.set("duedays", checked_.term.duedays);
    header.set("early_days", checked_.term.early_days);
    header.set("early_discount", checked_.term.early_discount);
    if (checked_.entry.discount_date) header.set("discount_date", *checked_.entry.discount_date);
    if (checked_.entry.due_date) header.set("due_date", *checked_.entry.due_date);
}

bool InvoiceSave::write_lines(Recordset& header) {
    return form_.line_writer.insert_new_record_transaction(header, checked_.entry.lines,
                                                           checked_.entry.ap_accno);
}

bool InvoiceSave::post() {
    if (!form_.posting.insert_GL_record(checked_.entry.ap_accno, checked_.entry.lines)) return false;
    form_.owing.update_vendor_owing_balance();
    return true;
}

void InvoiceSave::report_success() {
    form_.open_documents.document_on_screen(form_.txtdoctype.text());
    form_.open_documents.get_list_open_doc();  // it has one document more
    tell("Add new " + form_.cmbdoctype.text() + " complete");
}

std::string InvoiceSave::failure_message() const { return "Add new " + form_.cmbdoctype.text() + " failed"; }

}  // namespace brimley::invoices
