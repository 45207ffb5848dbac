#include "field_classes.h"

#include <algorithm>
#include <stdexcept>

namespace brimley::testing {

namespace {

using enum FieldClass;
using enum Provable;

constexpr std::string_view kSlots =
    "tax_authority1 tax_authority2 tax_authority3 tax_authority4 tax_authority5";
constexpr std::string_view kSlotAmounts =
    "taxable_amount1 taxable_amount2 taxable_amount3 taxable_amount4 taxable_amount5 "
    "tax_amount1 tax_amount2 tax_amount3 tax_amount4 tax_amount5 "
    "tax_allocated1 tax_allocated2 tax_allocated3 tax_allocated4 tax_allocated5 "
    "tax_recoverable1 tax_recoverable2 tax_recoverable3 tax_recoverable4 tax_recoverable5 "
    "tax_expensed1 tax_expensed2 tax_expensed3 tax_expensed4 tax_expensed5";
constexpr std::string_view kSlotRates = "tax_rate1 tax_rate2 tax_rate3 tax_rate4 tax_rate5";
constexpr std::string_view kSlotFlags = "taxable1 taxable2 taxable3 taxable4 taxable5";
constexpr std::string_view kSegments = "acccode subacc subacc2 subacc3 subacc4 subacc5";

constexpr ClassOfFields kClasses[]{
    {"Trail_table", entry, nothing,
     "entry_no entry_date user_created computer_id document rows_written hash"},

    {"Password_table", entry, nothing, "userid password_hash"},

    {"User_right_table", layout, nothing, "form userid Update Print form_design"},
    {"Form_property_table", layout, nothing, "userid form toolbar_text Fontbar"},
    {"Recent_value_table", layout, nothing, "form_name control_name Value"},

    {"Vendor_table", vendor, every_change, "vendor_no"},
    {"Vendor_table", money, every_change, "owing_balance"},
    {"Vendor_table", currency, names_nothing, "Currency"},
    {"Vendor_table", account, names_nothing, "ap_accno Payment_accno prepayment_accno"},
    {"Vendor_table", words, nothing, "VENDOR_NAME vendor_group address"},

    {"Account_master_table", account, every_change, "accno"},
    {"Account_master_table", flag, every_change, "debit"},
    {"Account_master_table", text, every_change, "type acctype"},
    {"Account_master_table", text, every_change, kSegments},
    {"Account_master_table", setting, nothing, "accclass inactive"},
    {"Account_master_table", words, nothing, "accname"},
    {"Account_class_table", setting, nothing, "class_name parent"},
    {"Account_currency_table", account, every_change, "accno"},
    {"Account_currency_table", currency, every_change, "Currency"},
    {"Account_currency_table", account, names_nothing, "unrealised_gain_accno unrealised_loss_accno"},
    {"Account_currency_table", setting, nothing, "revalue"},
    {"Account_currency_table", words, nothing, "Description"},
    {"Account_Parameters_table", account, names_nothing, "accno"},
    {"Account_Parameters_table", setting, nothing, "module parameter_name default"},
    {"Allocation_Account_table", account, names_nothing, "allocate_accno accno"},
    {"Allocation_Account_table", setting, nothing, "Percent"},
    {"COA_config_table", currency, every_change, "Currency"},
    {"COA_config_table", setting, nothing,
     "activate_working_period working_start_fyear working_end_fyear working_start_period working_end_period "
     "allow_start_fyear allow_end_fyear allow_start_period allow_end_period allow_history_update"},
    {"Bank_master_table", key, every_change, "bank_code"},
    {"Bank_master_table", account, names_nothing, "account_no"},
    {"Bank_master_table", words, nothing, "bank_name bank_branch bank_account_type"},
    {"Credit_card_master_table", key, every_change, "card_name"},
    {"Credit_card_master_table", account, names_nothing, "payable_accno account_no"},
    {"Credit_card_master_table", setting, nothing, "used"},

    {"Fiscalyear_table", key, every_change, "fyear"},
    {"Fiscalyear_table", date, every_change, "StartDate EndDate"},
    {"Fiscalyear_table", setting, nothing, "history"},
    {"Period_table", key, every_change, "fyear period"},
    {"Period_table", date, every_change, "StartDate EndDate"},
    {"Working_currency_table", currency, every_change, "Currency"},
    {"Working_currency_table", words, nothing, "description"},
    {"Exchange_rate_table", currency, names_nothing, "currency"},
    {"Exchange_rate_table", setting, nothing, "rate_date Rate"},
    {"Payment_term_table", key, every_change, "term_no"},
    {"Payment_term_table", setting, nothing, "duedays early_days payment_term early_discount default"},
    {"Payment_term_table", words, nothing, "term_name Description"},
    {"Tax_code_table", key, every_change, "tax_code transaction_type"},
    {"Tax_code_table", setting, nothing, "default"},
    {"Tax_code_table", words, nothing, "Description"},
    {"Tax_code_details_table", key, every_change, "tax_code transaction_type"},
    {"Tax_code_details_table", key, names_nothing, "tax_authority"},
    {"Tax_code_details_table", setting, nothing, "item_no taxable percent_refund include_itemcost"},
    {"Tax_authority_table", key, every_change, "tax_authority"},
    {"Tax_authority_table", account, names_nothing, "acc_recoverable acc_expense"},
    {"Tax_authority_table", setting, nothing, "Rate min_charged max_charged percent_refund include_itemcost"},

    {"Docno_master_table", key, every_change, "company doctype fiscalyear"},
    {"Docno_master_table", counter, every_change, "nextdocno"},
    {"Next_number_fkey_table", key, every_change, "company doctype"},
    {"Next_number_fkey_table", counter, every_change, "fkeyno"},
    {"Next_number_config_table", setting, nothing, "structure fyear_digit seperator1 seperator2"},
    {"Next_number_format_table", setting, nothing, "doctype prefix running_no_digit"},

    {"GL_header_table", key, every_change, "company fkey"},
    {"GL_header_table", docno, every_change, "docno source_docno"},
    {"GL_header_table", date, every_change, "gldate date_created"},
    {"GL_header_table", currency, every_change, "Currency"},
    {"GL_header_table", flag, every_change, "Reverse"},
    {"GL_header_table", number, every_change, "exchange_rate"},
    {"GL_header_table", text, every_change,
     "doctype remark Source source_form period fyear Description user_created time_created ledgertype"},
    {"GL_transaction_table", key, every_change, "company fkey"},
    {"GL_transaction_table", docno, every_change, "docno source_docno"},
    {"GL_transaction_table", date, every_change, "gldate date_created"},
    {"GL_transaction_table", account, every_change, "accno"},
    {"GL_transaction_table", money, every_change, "amount base_amount"},
    {"GL_transaction_table", currency, every_change, "Currency"},
    {"GL_transaction_table", vendor, every_change, "vendor_no"},
    {"GL_transaction_table", number, every_change, "lineno exchange_rate"},
    {"GL_transaction_table", text, every_change, kSegments},
    {"GL_transaction_table", text, every_change,
     "period fyear ledgertype Source source_form time_created user_created userid fiscalyear Month Year"},
    {"Balance_table", key, every_change, "company"},
    {"Balance_table", account, every_change, "accno"},
    {"Balance_table", currency, every_change, "Currency"},
    {"Balance_table", money, every_change, "amount base_amount"},
    {"Balance_table", text, every_change, "ledgertype"},
    {"Balance_table", text, every_change, kSegments},
    {"Balance_period_table", key, every_change, "company fyear"},
    {"Balance_period_table", account, every_change, "accno"},
    {"Balance_period_table", currency, every_change, "Currency"},
    {"Balance_period_table", text, every_change, "ledgertype"},
    {"Balance_period_table", text, every_change, kSegments},
    {"Balance_period_table", money, every_change,
     "opening_balance period1 Period2 Period3 period4 period5 period6 period7 period8 period9 period10 "
     "period11 period12 period13 adjust closing balperiod1 balperiod2 balperiod3 balperiod4 balperiod5 "
     "balperiod6 balperiod7 balperiod8 balperiod9 balperiod10 balperiod11 balperiod12 balperiod13 "
     "ytd_balance e_opening_balance e_period1 e_period2 e_period3 e_period4 e_period5 e_period6 e_period7 "
     "e_period8 e_period9 e_period10 e_period11 e_period12 e_period13 e_adjust e_closing e_balperiod1 "
     "e_balperiod2 e_balperiod3 e_balperiod4 e_balperiod5 e_balperiod6 e_balperiod7 e_balperiod8 "
     "e_balperiod9 e_balperiod10 e_balperiod11 e_balperiod12 e_balperiod13 e_ytd_balance"},

    {"PO_header_table", absent, nothing, "docno received void vendor_no"},
    {"PO_invoice_header_table", absent, nothing, "company docno paid fully_paid"},
    {"AR_transaction_table", absent, nothing, "docno open_amount paid"},

    {"AP_header_table", key, every_change, "fkey company GLFKEY recurno"},
    {"AP_header_table", docno, every_change, "docno source_docno"},
    {"AP_header_table", vendor, every_change, "vendor_no"},
    {"AP_header_table", currency, every_change, "Currency"},
    {"AP_header_table", date, every_change,
     "invoice_date rate_date due_date discount_date date_created date_lastmodified gldate"},
    {"AP_header_table", flag, every_change, "fully_paid paid void hold"},
    {"AP_header_table", number, every_change, "exchange_rate duedays early_days early_discount period"},
    {"AP_header_table", text, every_change,
     "doctype invoice_no payment_term Source source_form fyear user_created time_created time_lastmodified "
     "Month Year"},
    {"AP_header_table", absent, nothing, "printed"},
    {"AP_header_table", words, nothing, "remark"},
    {"AP_transaction_table", key, every_change, "fkey company pay_item"},
    {"AP_transaction_table", docno, every_change, "docno source_docno"},
    {"AP_transaction_table", vendor, every_change, "vendor_no"},
    {"AP_transaction_table", currency, every_change, "Currency"},
    {"AP_transaction_table", account, every_change, "po_accno ap_accno"},
    {"AP_transaction_table", date, every_change,
     "invoice_date due_date discount_date date_created date_lastmodified gldate"},
    {"AP_transaction_table", money, every_change,
     "gross_amount open_amount taxable_amount tax_amount discount_available discount_taken writeoff "
     "paid_amount"},
    {"AP_transaction_table", money, every_change, kSlotAmounts},
    {"AP_transaction_table", flag, every_change, "include_tax paid void hold"},
    {"AP_transaction_table", setting, nothing, kSlotFlags},  // ticks in the panel of taxes
    {"AP_transaction_table", number, every_change, "exchange_rate duedays early_days early_discount period"},
    {"AP_transaction_table", number, every_change, kSlotRates},
    {"AP_transaction_table", text, every_change, kSlots},
    {"AP_transaction_table", text, every_change,
     "doctype invoice_no payment_term Source source_form fyear tax_code user_created time_created "
     "user_updated time_lastmodified Month Year userid form_name"},
    {"AP_transaction_table", words, nothing, "Description computer_id"},

    {"AP_recur_header_table", key, every_change, "fkey company"},
    {"AP_recur_header_table", docno, every_change, "recurno"},
    {"AP_recur_header_table", vendor, every_change, "vendor_no"},
    {"AP_recur_header_table", currency, every_change, "Currency"},
    {"AP_recur_header_table", date, every_change, "date_created"},
    {"AP_recur_header_table", text, every_change, "doctype payment_term"},
    {"AP_recur_header_table", setting, nothing,
     "recur_date Frequency begin_date end_date no_invoice no_issue inactive"},
    {"AP_recur_header_table", words, nothing, "recur_name remark"},
    {"AP_recur_transaction_table", key, every_change, "fkey company pay_item"},
    {"AP_recur_transaction_table", vendor, every_change, "vendor_no"},
    {"AP_recur_transaction_table", currency, every_change, "Currency"},
    {"AP_recur_transaction_table", account, names_nothing, "po_accno"},
    {"AP_recur_transaction_table", money, every_change, "gross_amount open_amount"},
    {"AP_recur_transaction_table", money, every_change, "taxable_amount tax_amount"},
    {"AP_recur_transaction_table", date, every_change, "date_created"},
    {"AP_recur_transaction_table", absent, nothing, "include_tax"},
    {"AP_recur_transaction_table", text, every_change, "payment_term time_created user_created"},
    {"AP_recur_transaction_table", key, names_nothing, "tax_code"},
    {"AP_recur_transaction_table", words, nothing, "Description"},

    {"Payment_header_table", key, every_change, "fkey company GLFKEY"},
    {"Payment_header_table", docno, every_change, "docno source_docno"},
    {"Payment_header_table", vendor, every_change, "vendor_no"},
    {"Payment_header_table", currency, every_change, "Currency total_currency"},
    {"Payment_header_table", account, every_change, "cash_accno bank_accno prepayment_accno expense_accno"},
    {"Payment_header_table", date, every_change, "payment_date rate_date date_created void_date"},
    {"Payment_header_table", money, every_change,
     "payment_amount payment_base_amount total_amount total_base_amount card_balance fee_amount"},
    {"Payment_header_table", flag, every_change, "invoiced void"},
    {"Payment_header_table", number, every_change, "exchange_rate"},
    {"Payment_header_table", text, every_change,
     "doctype payby bank_code po_no Source period fyear source_form user_created time_created"},
    {"Payment_header_table", absent, nothing, "printed"},
    {"Payment_header_table", words, nothing, "remit_to remark check_no check_date"},
    {"Payment_transaction_table", key, every_change, "fkey company item_no pay_item"},
    {"Payment_transaction_table", docno, every_change, "docno ap_docno"},
    {"Payment_transaction_table", vendor, every_change, "vendor_no"},
    {"Payment_transaction_table", currency, every_change, "Currency"},
    {"Payment_transaction_table", account, every_change, "discount_accno writeoff_accno prepay_accno"},
    {"Payment_transaction_table", date, every_change, "payment_date invoice_date date_created"},
    {"Payment_transaction_table", money, every_change,
     "gross_amount open_amount pay_amount discount_available discount_taken writeoff balance "
     "pay_base_amount"},
    {"Payment_transaction_table", flag, every_change, "void"},
    {"Payment_transaction_table", number, every_change, "invoice_exchange_rate payment_exchange_rate"},
    {"Payment_transaction_table", text, every_change, "ap_doctype invoice_no time_created user_created"},
    {"Payment_transaction_table", words, nothing, "remark computer_id"},
    {"Payment_misc_transaction_table", key, every_change, "fkey company pay_item"},
    {"Payment_misc_transaction_table", docno, every_change, "docno"},
    {"Payment_misc_transaction_table", account, every_change, "account"},
    {"Payment_misc_transaction_table", date, every_change, "payment_date date_created"},
    {"Payment_misc_transaction_table", money, every_change, "pay_amount tax_amount"},
    {"Payment_misc_transaction_table", money, every_change, kSlotAmounts},
    {"Payment_misc_transaction_table", flag, every_change, "include_tax void"},
    {"Payment_misc_transaction_table", flag, every_change, kSlotFlags},
    {"Payment_misc_transaction_table", number, every_change, kSlotRates},
    {"Payment_misc_transaction_table", text, every_change, kSlots},
    {"Payment_misc_transaction_table", text, every_change, "tax_code time_created"},
    {"Payment_misc_transaction_table", words, nothing, "description Reference computer_id"},
    {"Prepayment_waiting_PO_table", text, every_change, "po_no"},
    {"Prepayment_waiting_PO_table", docno, every_change, "prepayment_no"},
    {"Prepayment_waiting_PO_table", key, every_change, "prepayment_fkey"},
    {"Prepayment_waiting_PO_table", money, every_change, "amount"},
    {"AP_matching_table", absent, nothing,
     "matching_no matching_date lineno company invoice_no invoice_date pay_item invoice_gross invoice_open "
     "invoice_pay invoice_balance discount discount_account writeoff writeoff_account deposit_no "
     "deposit_payitem deposit_gross deposit_open deposit_pay deposit_balance receipt_no receipt_open "
     "receipt_pay receipt_balance"},

    {"AP_Revalue_header_table", key, every_change, "fkey company GLFKEY"},
    {"AP_Revalue_header_table", docno, every_change, "docno"},
    {"AP_Revalue_header_table", date, every_change, "Date"},
    {"AP_Revalue_header_table", setting, nothing, "last_transaction_date"},
    {"AP_Revalue_header_table", text, every_change, "period fyear"},
    {"AP_Revalue_header_table", words, nothing, "Description"},
    {"AP_Revalue_transaction_table", key, every_change, "fkey"},
    {"AP_Revalue_transaction_table", docno, every_change, "docno"},
    {"AP_Revalue_transaction_table", currency, every_change, "Currency"},
    {"AP_Revalue_transaction_table", vendor, every_change, "vendor_no"},
    {"AP_Revalue_transaction_table", flag, every_change, "every_vendor"},
    {"AP_Revalue_transaction_table", number, every_change, "Rate"},
    {"AP_Revalue_transaction_table", words, nothing, "vendor_group"},
    {"AP_Revalue_Result_table", key, every_change, "fkey pay_item"},
    {"AP_Revalue_Result_table", docno, every_change, "docno document_no"},
    {"AP_Revalue_Result_table", vendor, every_change, "vendor_no"},
    {"AP_Revalue_Result_table", currency, every_change, "Currency"},
    {"AP_Revalue_Result_table", date, every_change, "document_date"},
    {"AP_Revalue_Result_table", money, every_change,
     "invoice_amount original_base_amount unrealized_gain_loss new_base_amount"},
    {"AP_Revalue_Result_table", number, every_change, "original_rate new_rate"},
    {"AP_Revalue_GL_summary_table", key, every_change, "fkey"},
    {"AP_Revalue_GL_summary_table", docno, every_change, "docno"},
    {"AP_Revalue_GL_summary_table", account, every_change, "accno"},
    {"AP_Revalue_GL_summary_table", currency, every_change, "Currency"},
    {"AP_Revalue_GL_summary_table", money, every_change, "amount"},

    {"Grid_property", layout, nothing,
     "form_name grid_name col_order Caption Visible Locked col_width row_height font_name font_size "
     "font_italic font_bold font_underline font_color Alignment cell_type AutoCompletion no_coldivider "
     "no_headerdivider col_fetchstyle row_merge Print"},
    {"Report_format_table", layout, nothing,
     "user form_name Orientation font_name font_size row_height top_margin bottom_margin left_margin "
     "right_margin font_color evenrow_color disabled_evenrow_color Bold use_grid_font column_divider "
     "split_page PaperSize Width Height unit"},
};

// A counter that has given no number may stand anywhere.
constexpr SampledTable kSampled[]{
    {"Vendor_table", "Currency", "vendor_no", "AP_transaction_table.vendor_no"},
    {"Account_master_table", "acctype type", "accno", "GL_transaction_table.accno"},
    {"Account_currency_table", "Currency", "accno", "GL_transaction_table.accno"},
    {"Bank_master_table", "", "bank_code", "Payment_header_table.bank_code"},
    {"Credit_card_master_table", "", "card_name", "Payment_header_table.payby"},
    {"Payment_term_table", "", "term_no", "AP_header_table.payment_term"},
    {"Tax_code_table", "", "tax_code", "AP_transaction_table.tax_code"},
    {"Tax_code_details_table", "", "tax_code", "AP_transaction_table.tax_code"},
    {"Tax_authority_table", "", "tax_authority", "Tax_code_details_table.tax_authority"},
    {"Working_currency_table", "", "Currency", "AP_header_table.Currency"},
    {"Docno_master_table", "doctype", "nextdocno", kUsedCounters},
    {"Next_number_fkey_table", "doctype", "fkeyno", kUsedCounters},
    {"GL_header_table", "Source Reverse ledgertype Currency Description", "", ""},
    {"GL_transaction_table", "Source source_form ledgertype vendor_no", "", ""},
    {"Balance_table", "ledgertype Currency", "accno", "GL_transaction_table.accno"},
    {"Balance_period_table", "ledgertype fyear Currency", "accno", "GL_transaction_table.accno"},
    {"AP_header_table", "doctype Source void hold paid fully_paid Currency", "", ""},
    {"AP_transaction_table", "doctype Source void hold paid Currency tax_code", "", ""},
    {"AP_recur_header_table", "Frequency", "", ""},
    {"AP_recur_transaction_table", "tax_code", "", ""},
    {"Payment_header_table", "doctype payby void Currency invoiced", "", ""},
    {"Payment_transaction_table", "ap_doctype void Currency discount_accno writeoff_accno", "", ""},
    {"Payment_misc_transaction_table", "tax_code void include_tax", "", ""},
    {"AP_Revalue_transaction_table", "every_vendor", "", ""},
};

constexpr std::string_view kNames[]{"money", "key",    "vendor",  "currency", "account", "docno",
                                    "date",  "flag",   "counter", "number",   "text",    "setting",
                                    "words", "layout", "entry",   "absent"};

}  // namespace

std::string_view name_of(FieldClass held) { return kNames[static_cast<std::size_t>(held)]; }

namespace {

// In each, what the check does not find.
constexpr std::string_view kUnseenByBoth[]{
    "Vendor_table.owing_balance",       // of a vendor with an edited invoice: a note says so
    "Vendor_table.vendor_no",           // of a vendor with invoices alone
    "Working_currency_table.Currency",  // the base currency, which needs no row
};

// In each, what the books do not prove, so that only the trail finds it.
constexpr std::string_view kKnownGaps[]{
    "AP_recur_transaction_table.taxable_amount",   // until an invoice has been issued
    "AP_recur_transaction_table.tax_amount",       // likewise
    "AP_recur_transaction_table.pay_item",         // another number that no other line has
    "AP_recur_header_table.recurno",               // of a template that was never issued
    "AP_header_table.hold",                        // of an edited document, whose lines have lost theirs
    "AP_transaction_table.pay_item",               // another number that no other line has
    "AP_transaction_table.taxable_amount",         // by cents where taxes are mixed in
    "AP_transaction_table.tax_amount",             // with a sixth tax
    "AP_transaction_table.taxable_amount1",        // by a cent, as rounding makes it
    "AP_transaction_table.taxable_amount2",        // likewise
    "AP_transaction_table.taxable_amount3",        // likewise
    "AP_transaction_table.taxable_amount4",        // likewise
    "AP_transaction_table.taxable_amount5",        // likewise
    "AP_transaction_table.po_accno",               // accounts that taxes use, or that are spread over others
    "AP_transaction_table.ap_accno",               // likewise
    "GL_transaction_table.vendor_no",              // emptied on a rounding line
    "Payment_header_table.bank_accno",             // only an edit writes it
    "Payment_header_table.rate_date",              // another day
    "Payment_header_table.total_currency",         // where a cut line may have had another base value
    "Payment_header_table.void_date",              // of a payment that posted nothing
    "Payment_misc_transaction_table.include_tax",  // without a tax
    "Payment_misc_transaction_table.taxable_amount1",  // by a cent, as rounding makes it
    "Payment_misc_transaction_table.account",          // one that taxes use
    "Payment_misc_transaction_table.pay_item",         // another number that no other line has
    "AP_Revalue_GL_summary_table.Currency",            // another one
    "AP_Revalue_Result_table.pay_item",                // where the document has such an item
    "AP_Revalue_transaction_table.Currency",   // where a note tells that the items are not valued by it
    "AP_Revalue_transaction_table.vendor_no",  // an unknown one
};

}  // namespace

bool is_known_gap(const std::string& table_and_field, bool seen_by_trail) {
    if (std::ranges::find(kUnseenByBoth, table_and_field) != std::end(kUnseenByBoth)) return true;
    return seen_by_trail && std::ranges::find(kKnownGaps, table_and_field) != std::end(kKnownGaps);
}

bool must_be_found_always(FieldClass held) { return held <= counter; }

std::vector<std::string> words_of(std::string_view text) {
    std::vector<std::string> words;
    while (!text.empty()) {
        const std::size_t blank = std::min(text.find(' '), text.size());
        words.emplace_back(text.substr(0, blank));
        text.remove_prefix(std::min(blank + 1, text.size()));
    }
    return words;
}

ClassOfField class_of(const std::string& table, const std::string& field) {
    const ClassOfFields* found = nullptr;
    for (const ClassOfFields& row : kClasses) {
        if (row.table != table) continue;
        const auto fields = words_of(row.fields);
        const auto times = std::count(fields.begin(), fields.end(), field);
        if (times == 0) continue;
        if (found != nullptr || times > 1) throw std::out_of_range(table + "." + field + " is classed twice");
        found = &row;
    }
    if (found == nullptr) throw std::out_of_range(table + "." + field + " has no class");
    return {found->held, found->provable};
}

SampledTable sampling_of(const std::string& table) {
    const auto* const row = std::ranges::find(kSampled, table, &SampledTable::table);
    return row == std::end(kSampled) ? SampledTable{table, "", "", ""} : *row;
}

}  // namespace brimley::testing
