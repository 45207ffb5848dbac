// Revaluations.
#include "company/field_rules.h"

namespace brimley::company::revaluation_fields {

namespace {

using enum MustBe;

bool any(const RowInRules& /*row*/, const RowInRules* /*owner*/) { return true; }
bool of_form(const RowInRules& row, const RowInRules* /*owner*/) { return !row.is("GLFKEY", ""); }

constexpr FieldRule kHeader[]{
    {"docno company Date last_transaction_date period fyear", filled},
    {"Description", empty},
};
constexpr FieldRule kHeaderAndPosting[]{
    {"docno", as_there, "source_docno"},
    {"Date", as_there, "gldate"},
    {"company period fyear", as_there},
};
constexpr FieldRule kRow[]{{"docno", as_there}};
constexpr FieldRule kSum[]{{"docno", as_there}, {"Currency accno", filled}};
constexpr FieldRule kItem[]{{"docno", as_there}, {"new_rate", empty}, {"Currency vendor_no", filled}};

}  // namespace

std::span<const RowRules> rules() {
    constexpr const char* kHeaders = "AP_Revalue_header_table";
    const auto row = [](const char* table, std::span<const FieldRule> rules) {
        return RowRules{table, "Revaluation", nullptr, any, "fkey", kHeaders, "fkey", "its header", rules};
    };
    static const RowRules kRules[]{
        {kHeaders, "Revaluation", nullptr, of_form, nullptr, nullptr, nullptr, nullptr, kHeader},
        {kHeaders, "Revaluation", nullptr, of_form, "GLFKEY", "GL_header_table", "fkey", "its GL document",
         kHeaderAndPosting},
        row("AP_Revalue_transaction_table", kRow),
        row("AP_Revalue_Result_table", kItem),
        row("AP_Revalue_GL_summary_table", kSum),
    };
    return kRules;
}

}  // namespace brimley::company::revaluation_fields
