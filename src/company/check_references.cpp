// Rows of masters that other rows name: each must be there, and stand there once.
#include <fmt/format.h>

#include <unordered_set>

#include "company/check.h"
#include "company/shown_text.h"
#include "company/table_rows.h"

namespace brimley::company {

namespace {

// Fields of a table that name a row of a master by one of its fields.
struct Reference {
    const char* table;
    const char* fields;  // parted by blanks
    const char* master;
    const char* master_field;
};

constexpr const char* kAccounts = "Account_master_table";
constexpr const char* kCurrencies = "Working_currency_table";
constexpr const char* kTerms = "Payment_term_table";
constexpr const char* kTaxCodes = "Tax_code_table";
constexpr const char* kAuthorities = "Tax_authority_table";
constexpr const char* kAuthorityFields =
    "tax_authority1 tax_authority2 tax_authority3 tax_authority4 tax_authority5";

constexpr Reference kReferences[]{
    {"Vendor_table", "ap_accno Payment_accno prepayment_accno", kAccounts, "accno"},
    {"Vendor_table", "Currency", kCurrencies, "Currency"},
    {"Account_currency_table", "accno unrealised_gain_accno unrealised_loss_accno", kAccounts, "accno"},
    {"Account_currency_table", "Currency", kCurrencies, "Currency"},
    {"Account_Parameters_table", "accno", kAccounts, "accno"},
    {"Allocation_Account_table", "allocate_accno accno", kAccounts, "accno"},
    {"Bank_master_table", "account_no", kAccounts, "accno"},
    {"Credit_card_master_table", "payable_accno account_no", kAccounts, "accno"},
    {"Exchange_rate_table", "currency", kCurrencies, "Currency"},
    {"Tax_code_details_table", "tax_code", kTaxCodes, "tax_code"},
    {"Tax_code_details_table", "tax_authority", kAuthorities, "tax_authority"},
    {"Tax_authority_table", "acc_recoverable acc_expense", kAccounts, "accno"},
    {"Period_table", "fyear", "Fiscalyear_table", "fyear"},
    {"Balance_table", "accno", kAccounts, "accno"},
    {"Balance_table", "Currency", kCurrencies, "Currency"},
    {"Balance_period_table", "accno", kAccounts, "accno"},
    {"Balance_period_table", "Currency", kCurrencies, "Currency"},
    {"Balance_period_table", "fyear", "Fiscalyear_table", "fyear"},
    {"GL_header_table", "Currency", kCurrencies, "Currency"},
    {"GL_transaction_table", "Currency", kCurrencies, "Currency"},
    {"AP_header_table", "payment_term", kTerms, "term_no"},
    {"AP_header_table", "Currency", kCurrencies, "Currency"},
    {"AP_transaction_table", "payment_term", kTerms, "term_no"},
    {"AP_transaction_table", "Currency", kCurrencies, "Currency"},
    {"AP_transaction_table", "ap_accno po_accno", kAccounts, "accno"},
    {"AP_transaction_table", "tax_code", kTaxCodes, "tax_code"},
    {"AP_transaction_table", kAuthorityFields, kAuthorities, "tax_authority"},
    {"AP_recur_header_table", "Currency", kCurrencies, "Currency"},
    {"AP_recur_transaction_table", "po_accno", kAccounts, "accno"},
    {"AP_recur_transaction_table", "tax_code", kTaxCodes, "tax_code"},
    {"Payment_header_table", "Currency total_currency", kCurrencies, "Currency"},
    {"Payment_header_table", "cash_accno bank_accno prepayment_accno expense_accno", kAccounts, "accno"},
    {"Payment_header_table", "bank_code", "Bank_master_table", "bank_code"},
    {"Payment_transaction_table", "Currency", kCurrencies, "Currency"},
    {"Payment_transaction_table", "discount_accno writeoff_accno prepay_accno", kAccounts, "accno"},
    {"Payment_misc_transaction_table", "account", kAccounts, "accno"},
    {"Payment_misc_transaction_table", "tax_code", kTaxCodes, "tax_code"},
    {"Payment_misc_transaction_table", kAuthorityFields, kAuthorities, "tax_authority"},
};

// What names a row of a table, of which there may be one alone.
struct Unique {
    const char* table;
    const char* fields;
};

constexpr Unique kUnique[]{
    {"Vendor_table", "vendor_no"},
    {"Account_master_table", "accno"},
    {"Account_currency_table", "accno Currency"},
    {"Bank_master_table", "bank_code"},
    {"Credit_card_master_table", "card_name"},
    {"Fiscalyear_table", "fyear"},
    {"Period_table", "fyear period"},
    {"Working_currency_table", "Currency"},
    {"Payment_term_table", "term_no"},
    {"Tax_code_table", "tax_code transaction_type"},
    {"Tax_code_details_table", "tax_code transaction_type item_no"},
    {"Tax_authority_table", "tax_authority"},
    {"Exchange_rate_table", "currency rate_date"},
};

// Everything that may be named in a field of a master.
std::unordered_set<std::string> named_values(const Books& books, const Reference& reference) {
    std::unordered_set<std::string> values;
    const TableRows& rows = books.tables().rows(reference.master);
    const int column = rows.column(reference.master_field);
    for (std::int64_t row = 0; row < rows.count(); ++row)
        values.insert(rows.value(row, column).text());
    if (reference.master == kCurrencies) values.insert(books.base_currency());
    return values;
}

void check_reference(const Books& books, const Reference& reference, Findings& findings) {
    const auto known = named_values(books, reference);
    const TableRows& rows = books.tables().rows(reference.table);
    std::unordered_set<std::string> reported;
    for (const std::string& field : words_of(reference.fields)) {
        const int column = rows.column(field);
        for (std::int64_t row = 0; row < rows.count(); ++row) {
            const std::string value = rows.value(row, column).text();
            if (value.empty() || known.contains(value) || !reported.insert(value).second) continue;
            findings.push_back(fmt::format("{}: {} \"{}\" is not in {}", reference.table, field,
                                           shown_text(value), reference.master));
        }
    }
}

void check_unique(const Books& books, const Unique& unique, Findings& findings) {
    const TableRows& rows = books.tables().rows(unique.table);
    const auto fields = words_of(unique.fields);
    std::unordered_set<std::string> seen;
    for (std::int64_t row = 0; row < rows.count(); ++row) {
        const std::string key = rows.key(row, fields);
        if (rows.text(row, fields.front()).empty())
            findings.push_back(fmt::format("{}: a row has no {}", unique.table, fields.front()));
        else if (!seen.insert(key).second)
            findings.push_back(fmt::format("{}: {} \"{}\" stands there twice", unique.table, fields.front(),
                                           shown_text(rows.text(row, fields.front()))));
    }
}

}  // namespace

void check_references(const Books& books, Findings& findings) {
    for (const Reference& reference : kReferences)
        check_reference(books, reference, findings);
}

void check_masters(const Books& books, Findings& findings) {
    for (const Unique& unique : kUnique)
        check_unique(books, unique, findings);
}

}  // namespace brimley::company
