// GL documents, and what the ledger copies from the chart.
#include "company/field_rules.h"

namespace brimley::company::ledger_fields {

namespace {

using enum MustBe;

struct Origin {
    const char* header_source;
    const char* header_form;
    const char* line_source;
    const char* line_form;
};

// As they are stored; generated documents name no form in their headers.
constexpr Origin kInvoice{"AP-INVOICE", "APform_invoice", "AP-INVOICE", "APform_invoice"};
constexpr Origin kPayment{"AP-PAYMENT", "Payment Entry", "AP-PAYMENT", "APform_payment|APform_void_check"};
constexpr Origin kPrepayment{"AP", "A/P Prepayment", "AP-PREPAY", "APform_prepayment|APform_void_check"};
constexpr Origin kMisc{"AP-MISCPAY", "APform_misc_payment", "AP-MISCPAY",
                       "APform_misc_payment|APform_void_check"};
constexpr Origin kCard{"AP-CARD", "Credit Card Payment", "AP-CARD",
                       "APform_creditcard_payment|APform_void_check"};
constexpr Origin kRevaluation{"AP-REVALUE", "A/P Revaluation", "AP-REVALUE", "A/P Revaluation"};
constexpr Origin kGenerated{"AP", "", "AP", "APform_invoice"};

bool is_of(const RowInRules& header, const Origin& origin) {
    return header.is("Source", origin.header_source) && header.is("source_form", origin.header_form);
}
template <const Origin* kOrigin>
bool line_of(const RowInRules& /*row*/, const RowInRules* header) {
    return is_of(*header, *kOrigin);
}
bool of_any_form(const RowInRules& row) {
    for (const Origin* origin : {&kInvoice, &kPayment, &kPrepayment, &kMisc, &kCard, &kRevaluation})
        if (is_of(row, *origin)) return true;
    return false;
}
bool header_of_form(const RowInRules& row, const RowInRules* /*owner*/) { return of_any_form(row); }
bool line_of_form(const RowInRules& /*row*/, const RowInRules* header) { return of_any_form(*header); }
bool generated(const RowInRules& row, const RowInRules* /*owner*/) {
    return is_of(row, kGenerated) && row.text("fkey").find('-') == std::string::npos;
}
bool generated_line(const RowInRules& /*row*/, const RowInRules* header) {
    return generated(*header, nullptr);
}
bool any(const RowInRules& /*row*/, const RowInRules* /*owner*/) { return true; }
// The reverse of an invoice or a payment in a document of its own does not say who made it, and when.
bool reverse_without_maker(const RowInRules& row, const RowInRules* /*owner*/) {
    return of_any_form(row) && !is_of(row, kRevaluation) && row.text("remark").starts_with("Reverse GL ");
}
bool with_maker(const RowInRules& row, const RowInRules* /*owner*/) {
    return of_any_form(row) && !reverse_without_maker(row, nullptr);
}

constexpr FieldRule kHeader[]{
    {"doctype", one_of, "gl"},
    {"company docno gldate period fyear Currency source_docno remark", filled},
    {"ledgertype", empty},
    {"exchange_rate", amount_above_or_0},
};
constexpr FieldRule kWithMaker[]{{"user_created date_created time_created", filled}};
constexpr FieldRule kWithoutMaker[]{{"user_created date_created time_created exchange_rate", empty}};

constexpr FieldRule kLine[]{
    {"company docno gldate period fyear source_docno", as_there},
    {"userid fiscalyear Month Year", empty},
    {"Currency accno user_created date_created time_created", filled},
};

constexpr FieldRule kGeneratedHeader[]{
    {"doctype", one_of, "gl"},
    {"ledgertype", one_of, "A"},
    {"company docno gldate period fyear Currency source_docno remark", filled},
    {"exchange_rate Reverse Description user_created date_created time_created", empty},
};

constexpr FieldRule kGeneratedLine[]{
    {"company docno gldate period source_docno Currency ledgertype", as_there},
    {"fyear user_created acccode subacc subacc2 subacc3 subacc4 subacc5 base_amount exchange_rate vendor_no",
     empty},
    {"userid Month Year date_created time_created", filled},
};

constexpr FieldRule kSegments[]{{"acccode subacc subacc2 subacc3 subacc4 subacc5", as_there}};

bool with_segments(const RowInRules& row, const RowInRules* /*owner*/) { return !row.is("fyear", ""); }

// Where the lines of a form come from.
template <const Origin* kOrigin>
RowRules origin_of_lines() {
    static const FieldRule kRules[]{{"Source", one_of, kOrigin->line_source},
                                    {"source_form", one_of, kOrigin->line_form}};
    return {
        "GL_transaction_table", "GL document", "lineno", line_of<kOrigin>, "fkey", "GL_header_table", "fkey",
        "its header",           kRules};
}

}  // namespace

std::span<const RowRules> rules() {
    constexpr const char* kHeaders = "GL_header_table";
    constexpr const char* kLines = "GL_transaction_table";
    const auto header = [](bool (*apply)(const RowInRules&, const RowInRules*),
                           std::span<const FieldRule> rules) {
        return RowRules{kHeaders, "GL document", nullptr, apply, nullptr, nullptr, nullptr, nullptr, rules};
    };
    static const RowRules kRules[]{
        header(header_of_form, kHeader),
        header(with_maker, kWithMaker),
        header(reverse_without_maker, kWithoutMaker),
        header(generated, kGeneratedHeader),
        {kLines, "GL document", "lineno", line_of_form, "fkey", kHeaders, "fkey", "its header", kLine},
        {kLines, "GL document", "lineno", generated_line, "fkey fiscalyear", kHeaders, "fkey fyear",
         "its header", kGeneratedLine},
        origin_of_lines<&kInvoice>(),
        origin_of_lines<&kPayment>(),
        origin_of_lines<&kPrepayment>(),
        origin_of_lines<&kMisc>(),
        origin_of_lines<&kCard>(),
        origin_of_lines<&kRevaluation>(),
        {kLines, "GL document", "lineno", with_segments, "accno", "Account_master_table", "accno",
         "its account", kSegments},
        {"Balance_table", "Balance", "accno", any, "accno", "Account_master_table", "accno", "its account",
         kSegments},
        {"Balance_period_table", "Balance of a year", "accno", any, "accno", "Account_master_table", "accno",
         "its account", kSegments},
    };
    return kRules;
}

}  // namespace brimley::company::ledger_fields
