// The masters of a company.
#include <algorithm>

#include "masters/descriptions.h"

namespace brimley::masters {

std::string fault_of_percent(const Entered& row, const char* field, const char* caption) {
    const double percent = row.number(field);
    return percent < 0 || percent > 100 ? std::string(caption) + " must be from 0 to 100." : std::string{};
}

namespace {

using enum Field::Kind;

constexpr Known kTaxCode{"Tax_code_table", "tax_code", "Description", "tax code"};
constexpr Known kAuthority{"Tax_authority_table", "tax_authority", "", "tax authority"};

Master vendors() {
    return {
        .identity = {"Master_vendor", "Vendors", ""},
        .table = "Vendor_table",
        .one = "vendor",
        .fields =
            {{.name = "vendor_no", .caption = "Vendor no", .key = true, .required = true, .listed = true},
             {.name = "VENDOR_NAME", .caption = "Name", .required = true, .listed = true},
             {.name = "Currency",
              .caption = "Currency",
              .kind = known,
              .required = true,
              .listed = true,
              .of = kCurrency},
             {.name = "ap_accno",
              .caption = "Payable account",
              .kind = known,
              .required = true,
              .listed = true,
              .of = kAccount},
             {.name = "Payment_accno", .caption = "Payment account", .kind = known, .of = kAccount},
             {.name = "prepayment_accno", .caption = "Prepayment account", .kind = known, .of = kAccount},
             {.name = "vendor_group", .caption = "Group", .listed = true},
             {.name = "owing_balance", .caption = "Owing", .kind = number, .listed = true, .computed = true},
             {.name = "address", .caption = "Address", .kind = long_text}},
        .used_by = {{"AP_header_table", "vendor_no", "invoices"},
                    {"Payment_header_table", "vendor_no", "payments"},
                    {"PO_header_table", "vendor_no", "purchase orders"}}};
}

Master payment_terms() {
    return {.identity = {"Master_payment_term", "Payment terms", ""},
            .table = "Payment_term_table",
            .one = "payment term",
            .fields =
                {{.name = "term_no", .caption = "Term no", .key = true, .required = true, .listed = true},
                 {.name = "term_name", .caption = "Name", .required = true, .listed = true},
                 {.name = "duedays", .caption = "Net days", .kind = number, .required = true, .listed = true},
                 {.name = "early_days", .caption = "Discount days", .kind = number, .listed = true},
                 {.name = "early_discount", .caption = "Discount %", .kind = number, .listed = true},
                 {.name = "payment_term", .caption = "Code", .required = true},
                 {.name = "Description", .caption = "Description"},
                 {.name = "default", .caption = "Default", .kind = flag, .listed = true}},
            .fault = [](const Entered& row) -> std::string {
                if (row.number("duedays") < 0) return "Net days must not be negative.";
                if (row.number("early_days") < 0) return "Discount days must not be negative.";
                if (row.number("early_days") > row.number("duedays"))
                    return "Discount days must not be more than the net days.";
                return fault_of_percent(row, "early_discount", "Discount %");
            }};
}

Master tax_authorities() {
    return {
        .identity = {"Master_tax_authority", "Tax authorities", ""},
        .table = "Tax_authority_table",
        .one = "tax authority",
        .fields =
            {{.name = "tax_authority", .caption = "Authority", .key = true, .required = true, .listed = true},
             {.name = "Rate", .caption = "Rate %", .kind = number, .required = true, .listed = true},
             {.name = "min_charged", .caption = "Least tax", .kind = number},
             {.name = "max_charged", .caption = "Most tax", .kind = number},
             {.name = "acc_recoverable",
              .caption = "Recoverable account",
              .kind = known,
              .listed = true,
              .of = kAccount},
             {.name = "acc_expense",
              .caption = "Expense account",
              .kind = known,
              .listed = true,
              .of = kAccount},
             {.name = "percent_refund", .caption = "Refund %", .kind = number},
             {.name = "include_itemcost", .caption = "In the item's cost", .kind = flag}},
        .used_by = {{"Tax_code_details_table", "tax_authority", "tax codes"}},
        .fault = [](const Entered& row) -> std::string {
            if (row.number("Rate") < 0) return "Rate % must not be negative.";
            return fault_of_percent(row, "percent_refund", "Refund %");
        }};
}

Master tax_codes() {
    return {
        .identity = {"Master_tax_code", "Tax codes", ""},
        .table = "Tax_code_table",
        .one = "tax code",
        .fields = {{.name = "tax_code", .caption = "Tax code", .key = true, .required = true, .listed = true},
                   {.name = "transaction_type",
                    .caption = "For",
                    .kind = choice,
                    .key = true,
                    .required = true,
                    .listed = true,
                    .choices = {"purchase", "sale"}},
                   {.name = "Description", .caption = "Description", .listed = true},
                   {.name = "default", .caption = "Default", .kind = flag, .listed = true}},
        .used_by = {{"Tax_code_details_table", "tax_code", "its taxes"},
                    {"AP_transaction_table", "tax_code", "invoices"}}};
}

Master tax_details() {
    return {.identity = {"Master_tax_detail", "Taxes of the tax codes", ""},
            .table = "Tax_code_details_table",
            .one = "tax",
            .fields =
                {{.name = "tax_code",
                  .caption = "Tax code",
                  .kind = known,
                  .key = true,
                  .required = true,
                  .listed = true,
                  .of = kTaxCode},
                 {.name = "transaction_type",
                  .caption = "For",
                  .kind = choice,
                  .key = true,
                  .required = true,
                  .listed = true,
                  .choices = {"purchase", "sale"}},
                 {.name = "item_no", .caption = "No", .key = true, .required = true, .listed = true},
                 {.name = "tax_authority",
                  .caption = "Authority",
                  .kind = known,
                  .required = true,
                  .listed = true,
                  .of = kAuthority},
                 {.name = "taxable", .caption = "Taxed by those after it", .kind = flag, .listed = true},
                 {.name = "percent_refund", .caption = "Refund %", .kind = number, .listed = true},
                 {.name = "include_itemcost", .caption = "In the item's cost", .kind = flag, .listed = true}},
            .fault = [](const Entered& row) { return fault_of_percent(row, "percent_refund", "Refund %"); }};
}

Master currencies() {
    return {
        .identity = {"Master_currency", "Currencies", ""},
        .table = "Working_currency_table",
        .one = "currency",
        .fields = {{.name = "Currency", .caption = "Currency", .key = true, .required = true, .listed = true},
                   {.name = "description", .caption = "Name", .listed = true}},
        .used_by = {{"Vendor_table", "Currency", "vendors"},
                    {"Exchange_rate_table", "currency", "exchange rates"},
                    {"Account_currency_table", "Currency", "accounts"},
                    {"AP_header_table", "Currency", "invoices"},
                    {"Balance_table", "currency", "balances"}},
        .fault = [](const Entered& row) -> std::string {
            return row.text("Currency").size() == 3 ? "" : "Currency must be three letters, such as EUR.";
        }};
}

Master exchange_rates() {
    return {.identity = {"Master_exchange_rate", "Exchange rates", ""},
            .table = "Exchange_rate_table",
            .one = "exchange rate",
            .fields = {{.name = "currency",
                        .caption = "Currency",
                        .kind = known,
                        .key = true,
                        .required = true,
                        .listed = true,
                        .of = kCurrency},
                       {.name = "rate_date",
                        .caption = "Date",
                        .kind = date,
                        .key = true,
                        .required = true,
                        .listed = true},
                       {.name = "Rate", .caption = "Rate", .kind = number, .required = true, .listed = true}},
            .fault = [](const Entered& row) -> std::string {
                return row.number("Rate") > 0 ? "" : "Rate must be more than 0.";
            }};
}

Master banks() {
    return {.identity = {"Master_bank", "Banks", ""},
            .table = "Bank_master_table",
            .one = "bank",
            .fields =
                {{.name = "bank_code", .caption = "Bank code", .key = true, .required = true, .listed = true},
                 {.name = "bank_name", .caption = "Name", .required = true, .listed = true},
                 {.name = "bank_branch", .caption = "Branch", .listed = true},
                 {.name = "bank_account_type", .caption = "Account type"},
                 {.name = "account_no",
                  .caption = "Ledger account",
                  .kind = known,
                  .required = true,
                  .listed = true,
                  .of = kAccount}},
            .used_by = {{"Payment_header_table", "bank_code", "payments"}}};
}

Master cards() {
    return {
        .identity = {"Master_card", "Credit cards", ""},
        .table = "Credit_card_master_table",
        .one = "credit card",
        .fields = {{.name = "card_name", .caption = "Card", .key = true, .required = true, .listed = true},
                   {.name = "payable_accno",
                    .caption = "Payable account",
                    .kind = known,
                    .listed = true,
                    .of = kAccount},
                   {.name = "account_no", .caption = "Paid from account", .kind = known, .of = kAccount},
                   {.name = "used", .caption = "In use", .kind = flag, .listed = true}},
        .used_by = {{"Payment_header_table", "payby", "payments"}}};
}

Master account_classes() {
    return {
        .identity = {"Master_account_class", "Account classes", ""},
        .table = "Account_class_table",
        .one = "account class",
        .fields = {{.name = "class_name", .caption = "Class", .key = true, .required = true, .listed = true},
                   {.name = "parent",
                    .caption = "Part of",
                    .kind = choice,
                    .required = true,
                    .listed = true,
                    .choices = {"ASSET", "LIABILITY", "EQUITY", "INCOME", "EXPENSE"}}},
        .used_by = {{"Account_master_table", "accclass", "accounts"}}};
}

}  // namespace

const std::vector<Master>& all_masters() {
    static const std::vector<Master> kMasters = [] {
        std::vector<Master> all{
            vendors(),         purchase_orders(), payment_terms(),      tax_codes(),   tax_details(),
            tax_authorities(), currencies(),      exchange_rates(),     banks(),       cards(),
            accounts(),        account_classes(), account_currencies(), allocations(), parameters(),
            fiscal_years(),    periods(),         working_period(),     numbers(),     number_formats(),
            counters()};
        all.push_back(rights(all));
        return all;
    }();
    return kMasters;
}

const Master* find_master(std::string_view class_name) {
    const auto found = std::ranges::find_if(
        all_masters(), [&](const Master& master) { return master.identity.class_name == class_name; });
    return found == all_masters().end() ? nullptr : &*found;
}

}  // namespace brimley::masters
