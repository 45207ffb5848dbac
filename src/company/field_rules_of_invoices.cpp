// Invoices, debit and credit notes, generated ones, and templates.
#include "company/field_rules.h"

namespace brimley::company::invoice_fields {

namespace {

using enum MustBe;

// --- entered in the form ---

bool of_form(const RowInRules& row) {
    return row.is("Source", "AP-INVOICE") && row.is("source_form", "APform_invoice");
}
bool header_of_form(const RowInRules& row, const RowInRules* /*owner*/) { return of_form(row); }
// One of the two would do: what another hand has changed is a difference from the other.
bool names_form(const RowInRules& row) {
    return row.is("Source", "AP-INVOICE") || row.is("source_form", "APform_invoice");
}
bool line_of_form(const RowInRules& row, const RowInRules* header) {
    return names_form(row) || names_form(*header);
}
bool header_by_posting(const RowInRules& /*row*/, const RowInRules* posting) {
    return posting->is("Source", "AP-INVOICE") && posting->is("source_form", "APform_invoice");
}
bool void_header(const RowInRules& row, const RowInRules* /*owner*/) {
    return of_form(row) && row.flag("void");
}
bool header_in_use(const RowInRules& row, const RowInRules* /*owner*/) {
    return of_form(row) && !row.flag("void");
}

constexpr FieldRule kHeader[]{
    {"docno company fyear period invoice_date GLFKEY Currency", filled},
    {"doctype", one_of, "ip|vdn|vcn"},
    {"rate_date source_docno recurno gldate Month Year", empty},
    {"duedays early_days exchange_rate", amount_above_or_0},
    {"early_discount", percent},
};

constexpr FieldRule kHeaderNeverVoid[]{{"date_lastmodified time_lastmodified", empty}};
constexpr FieldRule kHeaderOnceVoid[]{{"date_lastmodified time_lastmodified", filled}};

constexpr FieldRule kHeaderAndPosting[]{
    {"docno", as_there, "source_docno"},
    {"invoice_date", as_there, "gldate"},
    {"Source source_form company Currency exchange_rate", as_there},
};

constexpr FieldRule kLine[]{
    {"docno doctype company vendor_no invoice_no invoice_date Currency exchange_rate payment_term duedays "
     "early_days early_discount due_date discount_date Source source_docno source_form period fyear "
     "date_lastmodified time_lastmodified",
     as_there},
    {"include_tax gldate Month Year userid form_name user_updated discount_available", empty},
    {"po_accno pay_item ap_accno", filled},
};

// --- generated from templates ---

bool generated(const RowInRules& row, const RowInRules* /*owner*/) {
    const bool dated = !row.is("gldate", "") || !row.is("Month", "") || !row.is("Year", "");
    return row.is("Source", "AP") && !row.is("recurno", "") && dated;
}
bool generated_line(const RowInRules& /*row*/, const RowInRules* header) {
    return generated(*header, nullptr);
}

constexpr FieldRule kGeneratedHeader[]{
    {"invoice_no invoice_date exchange_rate rate_date duedays early_days early_discount due_date "
     "discount_date "
     "source_docno source_form period fyear GLFKEY user_created",
     empty},
    {"docno company gldate Month Year date_created time_created recurno", filled},
    {"doctype", one_of, "ip"},
};

constexpr FieldRule kGeneratedLine[]{
    {"docno company vendor_no Currency payment_term gldate date_created time_created Month Year", as_there},
    {"doctype invoice_no invoice_date exchange_rate Source source_docno source_form period fyear "
     "user_created "
     "user_updated discount_available",
     empty},
    {"userid", filled},
    {"form_name", one_of, "APform_invoice"},
    {"duedays early_days", amount_above_or_0},
    {"early_discount", percent},
};

bool generated_in_use(const RowInRules& row, const RowInRules* /*owner*/) {
    return generated(row, nullptr) && !row.flag("void");
}
bool generated_line_in_use(const RowInRules& row, const RowInRules* header) {
    return generated_line(row, header) && !row.flag("void");
}

constexpr FieldRule kGeneratedAndTemplate[]{{"vendor_no Currency payment_term company remark", as_there}};

// --- the items of prepayments ---

bool item_of_prepayment(const RowInRules& row, const RowInRules* header) {
    return header->is("source_form", "APform_prepayment") &&
           (row.is("doctype", "pp") || row.is("Source", "AP-PREPAY"));
}

// An edit says when and by whom.
bool edited_item(const RowInRules& row, const RowInRules* header) {
    if (!item_of_prepayment(row, header)) return false;
    return !row.is("date_lastmodified", "") || !row.is("time_lastmodified", "") ||
           !row.is("user_updated", "");
}

constexpr FieldRule kEditedItem[]{{"date_lastmodified time_lastmodified user_updated", filled}};

constexpr FieldRule kPrepaidItem[]{
    {"docno doctype company vendor_no Currency period fyear", as_there},
    {"invoice_date", as_there, "payment_date"},
    {"Source", one_of, "AP-PREPAY"},
    {"source_form", one_of, "APform_prepayment"},
    {"pay_item", one_of, "1"},
    {"date_created", made_with_it},
    {"user_created", as_there},
    {"tax_authority1 tax_authority2 tax_authority3 tax_authority4 tax_authority5", empty},
    {"invoice_no exchange_rate payment_term duedays early_days early_discount due_date discount_date "
     "source_docno taxable_amount tax_amount tax_code po_accno ap_accno include_tax void hold gldate Month "
     "Year userid form_name discount_available",
     empty},
};

// --- templates ---

bool any(const RowInRules& /*row*/, const RowInRules* /*owner*/) { return true; }
bool numbered_template(const RowInRules& row, const RowInRules* /*owner*/) {
    return row.is("doctype", "recur");
}

constexpr FieldRule kTemplate[]{{"recurno company Currency date_created", filled}};

constexpr FieldRule kTemplateLine[]{
    {"company vendor_no Currency payment_term", as_there},
    {"pay_item", filled},
    {"date_created", as_there},
};

}  // namespace

std::span<const RowRules> rules() {
    constexpr const char* kHeaders = "AP_header_table";
    constexpr const char* kLines = "AP_transaction_table";
    static const RowRules kRules[]{
        {kHeaders, "Invoice", nullptr, header_of_form, nullptr, nullptr, nullptr, nullptr, kHeader},
        {kHeaders, "Invoice", nullptr, header_in_use, nullptr, nullptr, nullptr, nullptr, kHeaderNeverVoid},
        {kHeaders, "Invoice", nullptr, void_header, nullptr, nullptr, nullptr, nullptr, kHeaderOnceVoid},
        {kHeaders, "Invoice", nullptr, header_by_posting, "GLFKEY", "GL_header_table", "fkey",
         "its GL document", kHeaderAndPosting},
        {kLines, "Invoice", "pay_item", line_of_form, "fkey", kHeaders, "fkey", "its header", kLine},
        {kHeaders, "Generated invoice", nullptr, generated, nullptr, nullptr, nullptr, nullptr,
         kGeneratedHeader},
        {kHeaders, "Generated invoice", nullptr, generated_in_use, nullptr, nullptr, nullptr, nullptr,
         kHeaderNeverVoid},
        {kLines, "Generated invoice", "pay_item", generated_line_in_use, "fkey Year", kHeaders, "fkey Year",
         "its header", kHeaderNeverVoid},
        {kHeaders, "Generated invoice", nullptr, generated, "recurno", "AP_recur_header_table", "recurno",
         "its template", kGeneratedAndTemplate},
        {kLines, "Generated invoice", "pay_item", generated_line, "fkey Year", kHeaders, "fkey Year",
         "its header", kGeneratedLine},
        {kLines, "Prepayment", "pay_item", item_of_prepayment, "fkey", "Payment_header_table", "fkey",
         "its header", kPrepaidItem},
        {kLines, "Prepayment", "pay_item", edited_item, "fkey", "Payment_header_table", "fkey", "its header",
         kEditedItem},
        {"AP_recur_header_table", "Template", nullptr, numbered_template, nullptr, nullptr, nullptr, nullptr,
         kTemplate},
        {"AP_recur_transaction_table", "Template", "pay_item", any, "fkey", "AP_recur_header_table", "fkey",
         "its header", kTemplateLine},
    };
    return kRules;
}

}  // namespace brimley::company::invoice_fields
