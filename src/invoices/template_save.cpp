// Saving a new recurring template: header and lines in one transaction, or nothing.
//
// A template has no date, makes no entry in the ledger and keeps of its taxes the codes and amounts only.
#include <fmt/format.h>

#include "frame/transaction.h"
#include "invoices/apform_invoice.h"
#include "kernel/money.h"
#include "kernel/user_dates.h"

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

// --- validation: one message at a time, and nothing is written before it ends ---

// Null when there is none.
const char* APform_invoice::fault_of_template_terms() const {
    if (txtrecurname.empty()) return "Please specify recurring name";
    if (cmbterm.empty()) return "Please specify Payment term";
    if (cmbcurrency.empty()) return "Please specify Currency";
    if (txtrecurdate.empty()) return kRecurDateRange;
    if (!kernel::is_numeric(txtrecurdate.text())) return "recurring date is not numeric";
    const double recur_date = money_value(txtrecurdate.text());
    if (recur_date < 0 || recur_date > kEndOfMonth) return kRecurDateRange;
    // A customer is asked for, though it is the vendor that is missing.
    if (recur_date != 0 && cmbvendor.empty())
        return "For automatic recurring invoice please specify customer";
    return nullptr;
}

const char* APform_invoice::fault_of_template_issue() const {
    if (is_filled_and_no_number(txtnoinvoice.text())) return "Number of invoice is invalid";
    if (cmbfreq.text() != "monthly" && cmbfreq.text() != "quarterly") return "recurring frequency is invalid";
    if (dbgrid1.cell(0, "pay item").empty()) return "No data input";
    return nullptr;
}

bool APform_invoice::read_template_date(const controls::DateField& field, const char* missing, bool required,
                                        std::optional<std::string>& yyyymmdd) {
    const std::string& text = field.text();
    const bool has_slashes = text.find('/') != text.rfind('/');
    if (has_slashes) {
        yyyymmdd = kernel::user_date_to_yyyymmdd(text, {context().BRIMLEY_DATE_FORMAT}, desk());
        return yyyymmdd.has_value();
    }
    // The kernel has no message for a text without two slashes, which names no date.
    if (required) {
        tell(missing);
    } else if (!text.empty()) {
        tell("Date is invalid (" + text + ")");
    }
    return !required && text.empty();
}

std::optional<APform_invoice::CheckedTemplate> APform_invoice::validate_template() {
    if (cmbcompany.empty()) cmbcompany.set("1");
    const auto passes = [this](const char* fault) {
        if (fault != nullptr) tell(fault);
        return fault == nullptr;
    };
    if (!passes(fault_of_template_terms())) return std::nullopt;
    CheckedTemplate checked;
    checked.recur_date = money_value(txtrecurdate.text());
    const bool automatic = checked.recur_date != 0;
    const bool valid =
        read_template_date(txteffectdate, "please specify effective date", automatic, checked.begin_date) &&
        read_template_date(txtexpiredate, "please specify expiry date", automatic, checked.end_date) &&
        passes(fault_of_template_issue());
    return valid ? std::optional(checked) : std::nullopt;
}

// --- writing ---
// A failure that is foreseen has its own message, or none. What the store has refused, such as a quote in an
// account or a letter that it cannot keep, is told in its own words.
bool APform_invoice::insert_new_recurring() {
    const std::int64_t failures = has_database() ? kernel().passed_over().count() : 0;
    std::optional<CheckedTemplate> checked;
    if (step("validate_template", [&] { checked = validate_template(); }) && !checked) return false;
    const bool saved =
        checked && in_transaction("insert_new_recurring", [&] { return write_new_template(*checked); });
    if (saved) {
        txtglfkey.set("");  // that of the document on screen before; a template has none
        open_documents.document_on_screen(kTemplateDoctype);
        tell("Add Recurring invoice complete");
    } else {
        txtdocno.set(frame::kNewDocno);
        txtfkey.set("");
        txtdoctype.set("");  // the entry may yet become a document
        if (has_database() && kernel().passed_over().count() != failures)
            tell_failure(kernel().passed_over().last_failure());
    }
    return saved;
}

bool APform_invoice::write_new_template(const CheckedTemplate& checked) {
    txtdoctype.set(kTemplateDoctype);
    if (!draw_number(kernel::ModuleG3::TooLongMessage::text_first)) return false;
    auto header = kernel().change("SELECT * FROM AP_recur_header_table WHERE 1 = 2");
    header.AddNew();
    fill_template_header(header, checked);
    auto lines = kernel().change("SELECT * FROM AP_recur_transaction_table WHERE 1 = 2");
    for (int row = 0; row <= line_rows; ++row) {
        if (!dbgrid1.cell(row, "pay item").empty() && !write_template_line(lines, header, row)) return false;
    }
    header.Update();
    return true;
}

void APform_invoice::fill_template_header(Recordset& header, const CheckedTemplate& checked) {
    header.set("recurno", txtdocno.text());
    header.set("recur_name", txtrecurname.text());
    header.set("vendor_no", cmbvendor.text());
    header.set("doctype", txtdoctype.text());
    header.set("company", cmbcompany.text());
    header.set("fkey", txtfkey.text());
    header.set("Currency", cmbcurrency.text());
    if (const auto term_no = cmbterm.chosen(1)) header.set("payment_term", *term_no);
    header.set("remark", txtremark.text());
    header.set("recur_date", checked.recur_date);
    if (checked.begin_date) header.set("begin_date", *checked.begin_date);
    if (checked.end_date) header.set("end_date", *checked.end_date);
    if (!txtnoinvoice.empty()) header.set("no_invoice", money_value(txtnoinvoice.text()));
    header.set("Frequency", cmbfreq.text());
    header.set("date_created", desk().now().date_only());
}

bool APform_invoice::write_template_line(Recordset& lines, const Recordset& header, int row) {
    const std::string typed_account = dbgrid1.cell(row, "purchase account");
    if (typed_account.empty()) {
        tell("Please specify purchase account");
        return false;
    }
    const std::string po_accno = get_accno(typed_account);
    if (po_accno.empty()) {
        tell("purchase account is invalid");
        return false;
    }
    const store::DateTime now = desk().now();
    lines.AddNew();
    lines.set("pay_item", dbgrid1.cell(row, "pay item"));
    lines.set("gross_amount", cell_money(row, "gross amount"));
    lines.set("open_amount", cell_money(row, "open amount"));
    lines.set("taxable_amount", cell_money(row, "taxable amount"));
    lines.set("tax_amount", cell_money(row, "tax amount"));
    if (const std::string tax_code = dbgrid1.cell(row, "tax code"); !tax_code.empty())
        lines.set("tax_code", tax_code);
    lines.set("po_accno", po_accno);
    lines.set("date_created", now.date_only());
    lines.set("time_created", now.time_text());
    lines.set("user_created", context().BRIMLEY_USER);
    for (const char* field : {"company", "fkey", "vendor_no", "Currency", "payment_term"})
        lines.set(field, header.field(field));
    lines.Update();
    return true;
}

}  // namespace brimley::invoices
