// Saving a new invoice, debit note or credit note: header, lines, GL document, balances and the vendor's
// owing balance in one transaction, or nothing. What an edit needs as well is in reach of update.cpp.
#include <fmt/format.h>

#include "frame/transaction.h"
#include "frame/working_period.h"
#include "invoices/apform_invoice.h"
#include "kernel/money.h"
#include "kernel/owing_balance.h"
#include "kernel/user_dates.h"

namespace brimley::invoices {

using kernel::money_value;
using store::DateTime;
using store::quoted;
using store::Recordset;

std::string APform_invoice::get_apaccno(const std::string& vendor_no) {
    const auto vendor = kernel().read(
        fmt::format("SELECT ap_accno FROM Vendor_table WHERE vendor_no = {}", quoted(vendor_no)));
    const std::string own = vendor.at_eof() ? std::string{} : vendor.text("ap_accno");
    return own.empty() ? default_ap_accno : own;
}

std::string APform_invoice::get_accno(const std::string& text) {
    const std::string accno = text.substr(0, text.find(' '));
    const auto account = kernel().read(
        fmt::format("SELECT accno FROM Account_master_table WHERE accno = {} AND type = 'A'", quoted(accno)));
    return account.at_eof() ? std::string{} : accno;
}

// --- validation: one message at a time, and nothing is written before it ends ---
bool APform_invoice::validate_header(NewDocument& document) {
    if (cmbcompany.empty()) cmbcompany.set("1");
    if (cmbterm.empty()) {
        tell("Please specify Payment term");
        return false;
    }
    const auto term = chosen_term();
    if (!term) return false;
    document.term.term_no = term->text("term_no");
    document.term.duedays = term->field("duedays");
    document.term.early_days = term->field("early_days");
    document.term.early_discount = term->field("early_discount");
    if (cmbcurrency.empty()) {
        tell("please specify currency");
        return false;
    }
    return currency_is_in_use() && validate_rate();
}

std::optional<Recordset> APform_invoice::chosen_term() {
    auto term = kernel().read(fmt::format("SELECT * FROM Payment_term_table WHERE term_no = {}",
                                          quoted(cmbterm.chosen(1).value_or(""))));
    if (!term.at_eof()) return term;
    tell("payment term is invalid");
    return std::nullopt;
}

// A slip of the pen must not open accounts for a currency that nobody uses.
bool APform_invoice::currency_is_in_use() {
    if (!foreign()) return true;
    const auto row = kernel().read(fmt::format(
        "SELECT Currency FROM Working_currency_table WHERE Currency = {}", quoted(cmbcurrency.text())));
    if (row.at_eof()) tell(cmbcurrency.text() + " is not a working currency.");
    return !row.at_eof();
}

bool APform_invoice::validate_rate() {
    if (!foreign()) return true;
    if (cmbexrate.empty()) {
        tell("please specify exchange rate");
        return false;
    }
    if (!kernel::is_numeric(cmbexrate.text()) || money_value(cmbexrate.text()) <= 0) {
        tell("exchange rate is invalid");
        return false;
    }
    return true;
}

bool APform_invoice::validate_invoice_date(NewDocument& document) {
    const auto date = required_date(txtinvdate, "please specify invoice date");
    if (!date) return false;
    document.invoice_date = *date;
    return true;
}

bool APform_invoice::validate_optional_dates(CheckedEntry& entry) {
    const auto read = [this](const controls::DateField& field, std::optional<DateTime>& date) {
        if (field.empty()) return true;
        date = required_date(field, "Date is invalid (" + field.text() + ")");
        return date.has_value();
    };
    return read(txtdiscdate, entry.discount_date) && read(txtduedate, entry.due_date);
}

bool APform_invoice::validate_lines_and_period(CheckedEntry& entry) {
    const auto refuse = [this](const std::string& text) {
        tell(text);
        return false;
    };
    if (dbgrid1.cell(0, "pay item").empty()) return refuse("No data input");
    if (cmbperiod.empty()) return refuse("please specify period");
    if (cmbfyear.empty()) return refuse("please specify fiscal year");
    entry.period = store::Value(cmbperiod.text()).number();
    if (!frame::period_is_open(kernel(), cmbfyear.text(), entry.period)) return false;
    entry.ap_accno = get_apaccno(cmbvendor.text());
    if (entry.ap_accno.empty()) return refuse(cmbvendor_name.text() + " : Account payable has not been set.");
    return validate_optional_dates(entry);
}

std::optional<APform_invoice::NewDocument> APform_invoice::validate_new() {
    NewDocument document;
    const bool valid =
        validate_header(document) && validate_invoice_date(document) && validate_lines_and_period(document);
    return valid ? std::optional(document) : std::nullopt;
}

// --- writing ---
bool APform_invoice::insert_new_record() {
    if (chkrecur.is_set()) return insert_new_recurring();
    const std::string kind = cmbdoctype.text();
    std::optional<NewDocument> document;
    if (step("validate_new", [&] { document = validate_new(); }) && !document) return false;
    const bool saved =
        document && in_transaction("insert_new_record", [&] { return write_new_document(*document); });
    if (saved) {
        open_documents.document_on_screen(txtdoctype.text());
        open_documents.get_list_open_doc();  // it has one document more
        tell("Add new " + kind + " complete");
    } else {
        txtdocno.set(frame::kNewDocno);
        txtfkey.set("");
        txtglfkey.set("");
        tell_failure("Add new " + kind + " failed");
    }
    return saved;
}

bool APform_invoice::write_new_document(const NewDocument& document) {
    set_doctype_of_kind();
    if (!draw_number(kernel::ModuleG3::TooLongMessage::text_first)) return false;
    auto header = kernel().change("SELECT * FROM AP_header_table WHERE 1 = 2");
    header.AddNew();
    fill_header(header, document);
    if (!insert_new_record_transaction(header, document.ap_accno)) return false;
    header.Update();
    if (!insert_GL_record(document.ap_accno)) return false;
    update_vendor_owing_balance();
    header.Bookmark(header.LastModified());
    header.Edit();
    header.set("GLFKEY", txtglfkey.text());
    header.Update();
    return true;
}

void APform_invoice::fill_header(Recordset& header, const NewDocument& document) {
    const DateTime now = desk().now();
    header.set("docno", txtdocno.text());
    header.set("invoice_date", document.invoice_date);
    header.set("invoice_no", txtinvno.text());
    header.set("vendor_no", cmbvendor.text());
    header.set("doctype", txtdoctype.text());
    header.set("company", cmbcompany.text());
    header.set("fkey", txtfkey.text());
    header.set("Currency", cmbcurrency.text());
    if (foreign() && !cmbexrate.empty()) header.set("exchange_rate", money_value(cmbexrate.text()));
    header.set("remark", txtremark.text());
    header.set("payment_term", document.term.term_no);
    header.set("duedays", document.term.duedays);
    header.set("early_days", document.term.early_days);
    header.set("early_discount", document.term.early_discount);
    if (document.discount_date) header.set("discount_date", *document.discount_date);
    if (document.due_date) header.set("due_date", *document.due_date);
    header.set("Source", kSource);
    header.set("source_form", identity().class_name);
    header.set("period", document.period);
    header.set("fyear", cmbfyear.text());
    header.set("user_created", context().BRIMLEY_USER);
    header.set("date_created", now.date_only());
    header.set("time_created", now.time_text());
}

void APform_invoice::update_vendor_owing_balance() {
    const double side = cmbdoctype.text() == kCreditNote.caption ? -1 : 1;
    kernel::change_owing_balance(kernel(), cmbvendor.text(),
                                 {side * money_value(txttotal.text()), side * old_total},
                                 kernel::kOwingOfSavedInvoice);
}

}  // namespace brimley::invoices
