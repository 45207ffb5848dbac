// What a real new company starts with: as little as lets every form work.
#include <fmt/format.h>

#include <algorithm>

#include "company/countries.h"
#include "company/create.h"
#include "company/fiscal_year.h"
#include "company/refusal.h"
#include "company/shown_text.h"
#include "company/table_writer.h"
#include "company/year_balances.h"

namespace brimley::company {

namespace {

constexpr const char* kIncomeStatement = "Income Statement";
constexpr const char* kBalanceSheet = "Balance Sheet";

struct Account {
    const char* accno;
    const char* accname;
    const char* accclass;
    const char* acctype;
    bool debit;
    const char* type = "A";
};

// Realized gain and loss stand on the debit side: a rounding difference is written so that it clears on such
// an account only.
constexpr Account kAccounts[] = {
    {"1000", "Cash on hand", "Cash", kBalanceSheet, true},
    {"1050", "Bank account", "Bank", kBalanceSheet, true},
    {"1300", "Recoverable input tax", "Current Assets", kBalanceSheet, true},
    {"1400", "Prepayments to vendors", "Current Assets", kBalanceSheet, true},
    {"2000", "Accounts payable", "Current Liabilities", kBalanceSheet, false},
    {"3000", "Owner's equity", "Equity", kBalanceSheet, false},
    {"3900", "Current earnings", "Equity", kBalanceSheet, false, "X"},
    {"4000", "Sales", "Income", kIncomeStatement, false},
    {"5000", "Purchases", "Cost of Sales", kIncomeStatement, true},
    {"6000", "General expenses", "Expenses", kIncomeStatement, true},
    {"6100", "Bank charges", "Expenses", kIncomeStatement, true},
    {"7000", "Purchase discounts", "Other Income", kIncomeStatement, false},
    {"7100", "Write-offs of payables", "Other Income", kIncomeStatement, false},
    {"7500", "Realized exchange gain", "Exchange Differences", kIncomeStatement, true},
    {"7510", "Realized exchange loss", "Exchange Differences", kIncomeStatement, true},
    {"7600", "Unrealized exchange gain", "Exchange Differences", kIncomeStatement, false},
    {"7610", "Unrealized exchange loss", "Exchange Differences", kIncomeStatement, true},
};

struct AccountClass {
    const char* class_name;
    const char* parent;
};

constexpr AccountClass kClasses[] = {
    {"Cash", "ASSET"},           {"Bank", "ASSET"},
    {"Current Assets", "ASSET"}, {"Current Liabilities", "LIABILITY"},
    {"Equity", "EQUITY"},        {"Income", "INCOME"},
    {"Other Income", "INCOME"},  {"Cost of Sales", "EXPENSE"},
    {"Expenses", "EXPENSE"},     {"Exchange Differences", "EXPENSE"},
};

struct Parameter {
    const char* module;
    const char* parameter_name;
    const char* accno;
};

constexpr Parameter kParameters[] = {
    {"GL", "GL realized gain account", "7500"},   {"GL", "GL realized loss account", "7510"},
    {"GL", "GL unrealized gain account", "7600"}, {"GL", "GL unrealized loss account", "7610"},
    {"GL", "Default Cash account", "1000"},       {"AP", "Default account payable account", "2000"},
    {"AP", "AP account payable account", "2000"}, {"AP", "AP discount account", "7000"},
    {"AP", "AP write-off account", "7100"},       {"AP", "AP Prepayment account", "1400"},
};

struct Term {
    const char* term_no;
    const char* term_name;
    const char* payment_term;  // "00": documents have no due date
    int duedays;
    int early_days;
    double early_discount;
    bool is_default;
};

constexpr Term kTerms[] = {
    {"01", "Due on receipt", "01", 0, 0, 0, false},
    {"30", "Net 30 days", "30", 30, 0, 0, true},
    {"60", "Net 60 days", "60", 60, 0, 0, false},
    {"90", "No due date", "00", 0, 0, 0, false},
};

// Rows that forms write into but never add.
struct RecentValue {
    const char* form_name;
    const char* control_name;
};

constexpr RecentValue kRecentValues[] = {
    {"APform_revalue", "cmbfyear"},     {"APform_revalue", "cmbperiod"},     {"APform_revalue", "date1"},
    {"APform_revalue", "date2"},        {"APreport_aging", "asof_date"},     {"APform_revalue", "cmbautho"},
    {"APreport_inquiry", "cmbcompany"}, {"APform_invoice", "evenrow_color"},
};

void add_configuration(store::Database& database, const std::string& base_currency) {
    TableWriter(database, "COA_config_table").add({{"Currency", base_currency}});
    TableWriter(database, "Working_currency_table")
        .add({{"Currency", base_currency}, {"description", base_currency}});
    TableWriter(database, "Next_number_config_table")
        .add({{"structure", "1"}, {"fyear_digit", 2}, {"seperator1", true}, {"seperator2", true}});
    TableWriter formats(database, "Next_number_format_table");
    TableWriter keys(database, "Next_number_fkey_table");
    for (const DocumentKind& kind : document_kinds()) {
        formats.add({{"doctype", kind.doctype}, {"prefix", kind.prefix}, {"running_no_digit", "5"}});
        keys.add({{"company", kCompany}, {"doctype", kind.doctype}, {"fkeyno", 1}});
    }
}

void add_chart(store::Database& database, const std::string& base_currency) {
    TableWriter classes(database, "Account_class_table");
    for (const AccountClass& row : kClasses) {
        classes.add({{"class_name", row.class_name}, {"parent", row.parent}});
    }
    TableWriter accounts(database, "Account_master_table");
    TableWriter balances(database, "Balance_table");
    for (const Account& row : kAccounts) {
        accounts.add({{"accno", row.accno},
                      {"accname", row.accname},
                      {"type", row.type},
                      {"accclass", row.accclass},
                      {"acctype", row.acctype},
                      {"debit", row.debit},
                      {"acccode", row.accno}});
        balances.add({{"company", kCompany},
                      {"ledgertype", "A"},
                      {"accno", row.accno},
                      {"Currency", base_currency},
                      {"acccode", row.accno},
                      {"amount", 0.0},
                      {"base_amount", 0.0}});
    }
}

void add_parameters(store::Database& database) {
    TableWriter parameters(database, "Account_Parameters_table");
    for (const Parameter& row : kParameters) {
        parameters.add({{"module", row.module},
                        {"parameter_name", row.parameter_name},
                        {"default", true},
                        {"accno", row.accno}});
    }
}

void add_defaults(store::Database& database) {
    // Description and term_name are the same text: the default term is found in the list of names by its
    // description.
    TableWriter terms(database, "Payment_term_table");
    for (const Term& row : kTerms) {
        terms.add({{"term_no", row.term_no},
                   {"term_name", row.term_name},
                   {"duedays", row.duedays},
                   {"early_days", row.early_days},
                   {"payment_term", row.payment_term},
                   {"early_discount", row.early_discount},
                   {"default", row.is_default},
                   {"Description", row.term_name}});
    }
    TableWriter recent(database, "Recent_value_table");
    for (const RecentValue& row : kRecentValues) {
        recent.add({{"form_name", row.form_name}, {"control_name", row.control_name}});
    }
}

// Every invoice line needs a tax row, also where no tax is due: a code with one authority at rate 0.
void add_no_tax(store::Database& database) {
    TableWriter(database, "Tax_code_table")
        .add({{"tax_code", "NOTAX"},
              {"transaction_type", "purchase"},
              {"default", true},
              {"Description", "No tax"}});
    TableWriter(database, "Tax_authority_table")
        .add({{"tax_authority", "NOTAX"}, {"Rate", 0.0}, {"percent_refund", 0.0}});
    TableWriter(database, "Tax_code_details_table")
        .add({{"tax_code", "NOTAX"},
              {"transaction_type", "purchase"},
              {"item_no", "1"},
              {"tax_authority", "NOTAX"},
              {"percent_refund", 0.0},
              {"include_itemcost", true}});
}

// On the accounts that every chart of ours has.
void add_first_rows(store::Database& database, const StarterCompany& starter) {
    if (starter.bank)
        TableWriter(database, "Bank_master_table")
            .add({{"bank_code", starter.bank->code},
                  {"bank_name", starter.bank->name},
                  {"bank_branch", starter.bank->branch},
                  {"account_no", "1050"}});
    if (starter.vendor)
        TableWriter(database, "Vendor_table")
            .add({{"vendor_no", starter.vendor->number},
                  {"VENDOR_NAME", starter.vendor->name},
                  {"Currency", starter.base_currency},
                  {"ap_accno", "2000"},
                  {"Payment_accno", "1050"},
                  {"prepayment_accno", "1400"},
                  {"owing_balance", 0.0},
                  {"address", starter.vendor->address}});
}

bool is_currency_code(const std::string& code) {
    return code.size() == 3 &&
           std::all_of(code.begin(), code.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
}

}  // namespace

void add_starter(store::Database& database, const StarterCompany& starter) {
    if (!is_currency_code(starter.base_currency)) {
        throw UnusableValue(shown_text(starter.base_currency) +
                            " is no currency code of three capital letters");
    }
    require_usable_year(starter.year);
    add_configuration(database, starter.base_currency);
    if (starter.country.empty()) {
        add_chart(database, starter.base_currency);
        add_parameters(database);
        add_no_tax(database);
    } else {
        add_country(database, starter.country, starter.base_currency);
    }
    add_defaults(database);
    add_first_rows(database, starter);
    const auto start = store::DateTime::from_ymd(std::stoi(starter.year), starter.first_month, 1);
    add_calendar(database, year_from(starter.year, start));
    add_counters(database, starter.year);
    add_year_balances(database, starter.year);
    add_full_rights(database, starter.user);
}

}  // namespace brimley::company
