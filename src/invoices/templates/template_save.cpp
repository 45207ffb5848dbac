#include "invoices/templates/template_save.h"

#include <fmt/format.h>

#include "invoices/apform_invoice.h"
#include "kernel/money.h"

namespace brimley::invoices {

using kernel::money_value;
using store::Recordset;

namespace {

constexpr double kEndOfMonth = 31;

// "issueing" is the product's spelling.
constexpr const char* kRecurDateRange =
    "please specify recurring date 0-31 (31 = end of month, 0 = manual issueing)";

bool is_filled_and_no_number(const std::string& text) { return !text.empty() && !kernel::is_numeric(text); }

}  // namespace

TemplateSave::TemplateSave(APform_invoice& form) : DocumentPart(form), form_(form) {}

// --- validation: one message at a time, and nothing is written before it ends ---

// Null when there is none.
const char* TemplateSave::fault_of_terms() const {
    if (form_.txtrecurname.empty()) return "Please specify recurring name";
    if (form_.cmbterm.empty()) return "Please specify Payment term";
    if (form_.cmbcurrency.empty()) return "Please specify Currency";
    if (form_.txtrecurdate.empty()) return kRecurDateRange;
    if (!kernel::is_numeric(form_.txtrecurdate.text())) return "recurring date is not numeric";
    const double recur_date = money_value(form_.txtrecurdate.text());
    if (recur_date < 0 || recur_date > kEndOfMonth) return kRecurDateRange;
    // A customer is asked for, though it is the vendor that is missing.
    if (recur_date != 0 && form_.cmbvendor.empty())
        return "For automatic recurring invoice please specify customer";
    return nullptr;
}

const char* TemplateSave::fault_of_issue() const {
    if (is_filled_and_no_number(form_.txtnoinvoice.text())) return "Number of invoice is invalid";
    if (form_.cmbfreq.text() != "monthly" && form_.cmbfreq.text() != "quarterly")
        return "recurring frequency is invalid";
    if (!form_.lines.has_any()) return "No data input";
    return nullptr;
}

bool TemplateSave::read_date(const controls::DateField& field, const char* missing, bool required,
                             std::optional<std::string>& yyyymmdd) {
    if (!required && field.empty()) return true;
    const auto date = required_date(field, required ? missing : "Date is invalid (" + field.text() + ")");
    if (date) yyyymmdd = date->yyyymmdd();
    return date.has_value();
}

std::optional<TemplateSave::Checked> TemplateSave::validate() {
    if (form_.cmbcompany.empty()) form_.cmbcompany.set("1");
    const auto passes = [this](const char* fault) {
        if (fault != nullptr) tell(fault);
        return fault == nullptr;
    };
    if (!passes(fault_of_terms())) return std::nullopt;
    Checked checked;
    checked.recur_date = money_value(form_.txtrecurdate.text());
    const bool automatic = checked.recur_date != 0;
    const bool valid =
        read_date(form_.txteffectdate, "please specify effective date", automatic, checked.begin_date) &&
        read_date(form_.txtexpiredate, "please specify expiry date", automatic, checked.end_date) &&
        passes(fault_of_issue());
    return valid ? std::optional(checked) : std::nullopt;
}

// --- writing ---
bool TemplateSave::insert_new_recurring() {
    const std::int64_t failures = failed_steps();
    std::optional<Checked> checked;
    if (step("validate_template", [&] { checked = validate(); }) && !checked) return false;
    const bool saved = checked && in_transaction("insert_new_recurring", [&] { return write(*checked); });
    if (saved) {
        form_.txtglfkey.set("");  // that of the document on screen before; a template has none
        form_.open_documents.document_on_screen(kTemplateDoctype);
        tell("Add Recurring invoice complete");
        return true;
    }
    form_.txtdocno.set(frame::kNewDocno);
    form_.txtfkey.set("");
    form_.txtdoctype.set("");  // the entry may yet become a document
    if (failed_steps() != failures) tell_failure(last_failure());
    return false;
}

bool TemplateSave::write(const Checked& checked) {
    form_.txtdoctype.set(kTemplateDoctype);
    if (!draw_number(kernel::ModuleG3::TooLongMessage::text_first)) return false;
    auto header = kernel().change("SELECT * FROM AP_recur_header_table WHERE 1 = 2");
    header.AddNew();
    fill_header(header, checked);
    auto lines = kernel().change("SELECT * FROM AP_recur_transaction_table WHERE 1 = 2");
    for (const InvoiceLine& line : form_.lines.read()) {
        if (!line.pay_item.empty() && !write_line(lines, header, line)) return false;
    }
    header.Update();
    return true;
}

void TemplateSave::fill_header(Recordset& header, const Checked& checked) {
    header.set("recurno", form_.txtdocno.text());
    header.set("recur_name", form_.txtrecurname.text());
    header.set("vendor_no", form_.cmbvendor.text());
    header.set("doctype", form_.txtdoctype.text());
    header.set("company", form_.cmbcompany.text());
    header.set("fkey", form_.txtfkey.text());
    header.set("Currency", form_.cmbcurrency.text());
    if (const auto term_no = form_.cmbterm.chosen(1)) header.set("payment_term", *term_no);
    header.set("remark", form_.txtremark.text());
    header.set("recur_date", checked.recur_date);
    if (checked.begin_date) header.set("begin_date", *checked.begin_date);
    if (checked.end_date) header.set("end_date", *checked.end_date);
    if (!form_.txtnoinvoice.empty()) header.set("no_invoice", money_value(form_.txtnoinvoice.text()));
    header.set("Frequency", form_.cmbfreq.text());
    header.set("date_created", desk().now().date_only());
}

bool TemplateSave::write_line(Recordset& lines, const Recordset& header, const InvoiceLine& line) {
    if (line.po_accno.empty()) return refuse("Please specify purchase account");
    const std::string po_accno = form_.accounts.get_accno(line.po_accno);
    if (po_accno.empty()) return refuse("purchase account is invalid");
    lines.AddNew();
    lines.set("pay_item", line.pay_item);
    lines.set("gross_amount", line.gross.value_or(0));
    lines.set("open_amount", line.open);
    lines.set("taxable_amount", line.taxable.value_or(0));
    lines.set("tax_amount", line.tax);
    if (!line.tax_code.empty()) lines.set("tax_code", line.tax_code);
    lines.set("po_accno", po_accno);
    stamp_created(lines);
    for (const char* field : {"company", "fkey", "vendor_no", "Currency", "payment_term"})
        lines.set(field, header.field(field));
    lines.Update();
    return true;
}

}  // namespace brimley::invoices
