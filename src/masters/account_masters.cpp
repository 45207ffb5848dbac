// The masters of the ledger, accounts and what hangs on them, and of the people who work in the company.
#include <fmt/format.h>

#include <iterator>

#include "company/forms.h"
#include "company/people.h"
#include "company/year_balances.h"
#include "kernel/module_g3.h"
#include "masters/descriptions.h"

namespace brimley::masters {

namespace {

using enum Field::Kind;

constexpr Known kClass{"Account_class_table", "class_name", "parent", "account class"};
struct Segment {
    const char* field;
    const char* caption;
};

constexpr Segment kSegments[] = {{"acccode", "Account code"}, {"subacc", "Segment 1"},
                                 {"subacc2", "Segment 2"},    {"subacc3", "Segment 3"},
                                 {"subacc4", "Segment 4"},    {"subacc5", "Segment 5"}};

// The balances of an account that nothing has been posted to: in the base currency, and in each fiscal year
// that there is.
bool add_balances(kernel::ModuleG3& kernel, const Entered& account) {
    auto balance = kernel.change("SELECT * FROM Balance_table WHERE 1 = 2");
    balance.AddNew();
    balance.set("company", 1.0);
    balance.set("ledgertype", "A");
    balance.set("accno", account.text("accno"));
    balance.set("Currency", kernel.read("SELECT Currency FROM COA_config_table").text("Currency"));
    for (const Segment& segment : kSegments) {
        const std::string text = account.text(segment.field);
        balance.set(segment.field, text.empty() ? store::Value() : store::Value(text));
    }
    balance.set("amount", 0.0);
    balance.set("base_amount", 0.0);
    balance.Update();
    auto years = kernel.read("SELECT fyear FROM Fiscalyear_table ORDER BY fyear");
    for (; !years.at_eof(); years.MoveNext())
        company::add_year_balances(kernel.database(), years.text("fyear"));
    return true;
}

// further: narrows the rows of the account, and begins with " AND", unless it is empty.
bool remove_balances(kernel::ModuleG3& kernel, const Entered& account, const std::string& further = {}) {
    for (const char* const table : {"Balance_table", "Balance_period_table"})
        kernel.database().Execute(fmt::format("DELETE * FROM {} WHERE accno = {}{}", table,
                                              store::quoted(account.text("accno")), further));
    return true;
}

std::vector<Use> uses_of_account() {
    return {{"GL_transaction_table", "accno", "postings"},
            {"Account_currency_table", "accno", "its currencies"},
            {"Allocation_Account_table", "accno", "allocations"},
            {"Allocation_Account_table", "allocate_accno", "allocations"},
            {"Account_Parameters_table", "accno", "parameters"},
            {"Vendor_table", "ap_accno", "vendors"},
            {"Vendor_table", "Payment_accno", "vendors"},
            {"Vendor_table", "prepayment_accno", "vendors"},
            {"Bank_master_table", "account_no", "banks"},
            {"Credit_card_master_table", "payable_accno", "credit cards"},
            {"Credit_card_master_table", "account_no", "credit cards"},
            {"Tax_authority_table", "acc_recoverable", "tax authorities"},
            {"Tax_authority_table", "acc_expense", "tax authorities"},
            {"AP_transaction_table", "po_accno", "invoices"}};
}

std::string fault_of_earnings(kernel::ModuleG3& kernel) {
    const auto rows = kernel.read("SELECT * FROM Account_master_table WHERE type = 'X'");
    return rows.RecordCount() == 1 ? "" : "There must be one account of type X, for current earnings.";
}

}  // namespace

Master accounts() {
    Master master{
        .identity = {"Master_account", "Accounts", ""},
        .table = "Account_master_table",
        .one = "account",
        .fields = {{.name = "accno", .caption = "Account", .key = true, .required = true, .listed = true},
                   {.name = "accname", .caption = "Name", .required = true, .listed = true},
                   {.name = "accclass",
                    .caption = "Class",
                    .kind = known,
                    .required = true,
                    .listed = true,
                    .of = kClass},
                   {.name = "acctype",
                    .caption = "Statement",
                    .kind = choice,
                    .required = true,
                    .listed = true,
                    .lasting = true,
                    .choices = {"Balance Sheet", "Income Statement"}},
                   {.name = "type",
                    .caption = "Type",
                    .kind = choice,
                    .required = true,
                    .lasting = true,
                    .choices = {"A", "X"}},
                   {.name = "debit", .caption = "Debit side", .kind = flag, .listed = true, .lasting = true},
                   {.name = "inactive", .caption = "Inactive", .kind = flag, .listed = true}}};
    for (const Segment& segment : kSegments)
        master.fields.push_back({.name = segment.field, .caption = segment.caption});
    master.used_by = uses_of_account();
    master.posted_in = {{"GL_transaction_table", "accno", "postings"}};
    master.added = add_balances;
    master.removed = [](kernel::ModuleG3& kernel, const Entered& account) {
        return remove_balances(kernel, account);
    };
    master.fault_of_company = fault_of_earnings;
    return master;
}

Master account_currencies() {
    return {.identity = {"Master_account_currency", "Currencies of accounts", ""},
            .table = "Account_currency_table",
            .one = "currency of account",
            .fields =
                {{.name = "accno",
                  .caption = "Account",
                  .kind = known,
                  .key = true,
                  .required = true,
                  .listed = true,
                  .of = kAccount},
                 {.name = "Currency",
                  .caption = "Currency",
                  .kind = known,
                  .key = true,
                  .required = true,
                  .listed = true,
                  .of = kCurrency},
                 {.name = "Description", .caption = "Description", .listed = true},
                 {.name = "revalue", .caption = "Revalue", .kind = flag, .listed = true},
                 {.name = "unrealised_gain_accno", .caption = "Gain account", .kind = known, .of = kAccount},
                 {.name = "unrealised_loss_accno", .caption = "Loss account", .kind = known, .of = kAccount}},
            .used_by = {{"GL_transaction_table", "accno", "postings", "Currency"}},
            .added =
                [](kernel::ModuleG3& kernel, const Entered& row) {
                    return kernel.create_foreign_balance_rows(row.text("accno"), row.text("Currency"));
                },
            .removed =
                [](kernel::ModuleG3& kernel, const Entered& row) {
                    return remove_balances(kernel, row,
                                           fmt::format(" AND Currency = {} AND ledgertype <> 'A'",
                                                       store::quoted(row.text("Currency"))));
                }};
}

Master allocations() {
    return {.identity = {"Master_allocation", "Allocations", ""},
            .table = "Allocation_Account_table",
            .one = "allocation",
            .fields =
                {{.name = "allocate_accno",
                  .caption = "Spread account",
                  .kind = known,
                  .key = true,
                  .required = true,
                  .listed = true,
                  .of = kAccount},
                 {.name = "accno",
                  .caption = "Over account",
                  .kind = known,
                  .key = true,
                  .required = true,
                  .listed = true,
                  .of = kAccount},
                 {.name = "Percent", .caption = "Percent", .kind = number, .required = true, .listed = true}},
            .fault = [](const Entered& row) -> std::string {
                if (row.text("allocate_accno") == row.text("accno"))
                    return "An account cannot be spread over itself.";
                return row.number("Percent") > 0 ? fault_of_percent(row, "Percent", "Percent")
                                                 : "Percent must be more than 0.";
            }};
}

Master parameters() {
    return {.identity = {"Master_parameter", "Accounts of the module", ""},
            .table = "Account_Parameters_table",
            .one = "parameter",
            .fields = {
                {.name = "module",
                 .caption = "Module",
                 .kind = choice,
                 .key = true,
                 .required = true,
                 .listed = true,
                 .choices = {"AP", "GL"}},
                {.name = "parameter_name",
                 .caption = "Parameter",
                 .kind = choice,
                 .key = true,
                 .required = true,
                 .listed = true,
                 .choices = {"AP account payable account", "AP discount account", "AP Prepayment account",
                             "AP write-off account", "Default account payable account",
                             "Default Cash account", "GL realized gain account", "GL realized loss account",
                             "GL unrealized gain account", "GL unrealized loss account"}},
                {.name = "default", .caption = "Default", .kind = flag, .key = true, .listed = true},
                {.name = "accno",
                 .caption = "Account",
                 .kind = known,
                 .required = true,
                 .listed = true,
                 .of = kAccount}}};
}

Master rights(const std::vector<Master>& others) {
    Master master{
        .identity = {"Master_right", "Users and their rights", ""},
        .table = "User_right_table",
        .one = "right",
        .fields = {{.name = "userid", .caption = "User", .key = true, .required = true, .listed = true},
                   {.name = "form",
                    .caption = "Form",
                    .kind = choice,
                    .key = true,
                    .required = true,
                    .listed = true,
                    .choices = {std::begin(company::kForms), std::end(company::kForms)}},
                   {.name = "Update", .caption = "May enter and change", .kind = flag, .listed = true},
                   {.name = "Print", .caption = "May print", .kind = flag, .listed = true},
                   {.name = "form_design", .caption = "May design", .kind = flag, .listed = true}},
        .fault_of_company = [](kernel::ModuleG3& kernel) -> std::string {
            return company::has_administrator(kernel.database())
                       ? ""
                       : "Somebody must keep every right on every form.";
        },
        .for_administrators = true};
    auto& forms = master.fields.at(1).choices;
    forms.insert(forms.end(), std::begin(company::kFormsOfAdministrators),
                 std::end(company::kFormsOfAdministrators));
    for (const Master& other : others)
        if (!other.shown_only) forms.push_back(other.identity.class_name);
    return master;
}

}  // namespace brimley::masters
