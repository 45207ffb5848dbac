#include "company/references.h"

namespace brimley::company {

namespace {

constexpr const char* kChart = "Account_master_table";
constexpr const char* kCurrencies = "Working_currency_table";
constexpr const char* kTermsOfPayment = "Payment_term_table";
constexpr const char* kTaxCodes = "Tax_code_table";
constexpr const char* kAuthorities = "Tax_authority_table";
constexpr const char* kAuthorityFields =
    "tax_authority1 tax_authority2 tax_authority3 tax_authority4 tax_authority5";

constexpr Reference kOfMasters[]{
    {"Vendor_table", "ap_accno Payment_accno prepayment_accno", kChart, "accno"},
    {"Vendor_table", "Currency", kCurrencies, "Currency"},
    {"Account_currency_table", "accno unrealised_gain_accno unrealised_loss_accno", kChart, "accno"},
    {"Account_currency_table", "Currency", kCurrencies, "Currency"},
    {"Account_Parameters_table", "accno", kChart, "accno"},
    {"Allocation_Account_table", "allocate_accno accno", kChart, "accno"},
    {"Bank_master_table", "account_no", kChart, "accno"},
    {"Credit_card_master_table", "payable_accno account_no", kChart, "accno"},
    {"Exchange_rate_table", "currency", kCurrencies, "Currency"},
    {"Tax_code_details_table", "tax_code", kTaxCodes, "tax_code"},
    {"Tax_code_details_table", "tax_authority", kAuthorities, "tax_authority"},
    {"Tax_authority_table", "acc_recoverable acc_expense", kChart, "accno"},
    {"Period_table", "fyear", "Fiscalyear_table", "fyear"},
};

constexpr Reference kOfDocuments[]{
    {"Balance_table", "accno", kChart, "accno"},
    {"Balance_table", "Currency", kCurrencies, "Currency"},
    {"Balance_period_table", "accno", kChart, "accno"},
    {"Balance_period_table", "Currency", kCurrencies, "Currency"},
    {"Balance_period_table", "fyear", "Fiscalyear_table", "fyear"},
    {"GL_header_table", "Currency", kCurrencies, "Currency"},
    {"GL_transaction_table", "Currency", kCurrencies, "Currency"},
    {"AP_header_table", "payment_term", kTermsOfPayment, "term_no"},
    {"AP_header_table", "Currency", kCurrencies, "Currency"},
    {"AP_transaction_table", "payment_term", kTermsOfPayment, "term_no"},
    {"AP_transaction_table", "Currency", kCurrencies, "Currency"},
    {"AP_transaction_table", "ap_accno po_accno", kChart, "accno"},
    {"AP_transaction_table", "tax_code", kTaxCodes, "tax_code"},
    {"AP_transaction_table", kAuthorityFields, kAuthorities, "tax_authority"},
    {"AP_recur_header_table", "Currency", kCurrencies, "Currency"},
    {"AP_recur_transaction_table", "po_accno", kChart, "accno"},
    {"AP_recur_transaction_table", "tax_code", kTaxCodes, "tax_code"},
    {"AP_Revalue_transaction_table", "Currency", kCurrencies, "Currency"},
    {"AP_Revalue_Result_table", "Currency", kCurrencies, "Currency"},
    {"AP_Revalue_GL_summary_table", "Currency", kCurrencies, "Currency"},
    {"AP_Revalue_GL_summary_table", "accno", kChart, "accno"},
    {"Payment_header_table", "Currency total_currency", kCurrencies, "Currency"},
    {"Payment_header_table", "cash_accno bank_accno prepayment_accno expense_accno", kChart, "accno"},
    {"Payment_header_table", "bank_code", "Bank_master_table", "bank_code"},
    {"Payment_transaction_table", "Currency", kCurrencies, "Currency"},
    {"Payment_transaction_table", "discount_accno writeoff_accno prepay_accno", kChart, "accno"},
    {"Payment_misc_transaction_table", "account", kChart, "accno"},
    {"Payment_misc_transaction_table", "tax_code", kTaxCodes, "tax_code"},
    {"Payment_misc_transaction_table", kAuthorityFields, kAuthorities, "tax_authority"},
};

}  // namespace

std::span<const Reference> references_of_masters() { return kOfMasters; }
std::span<const Reference> references_of_documents() { return kOfDocuments; }

}  // namespace brimley::company
