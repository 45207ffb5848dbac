// Rows of masters that other rows name: each must be there, and stand there once.
#include <fmt/format.h>

#include <algorithm>
#include <unordered_set>

#include "company/check.h"
#include "company/references.h"
#include "company/shown_text.h"
#include "company/table_rows.h"

namespace brimley::company {

namespace {

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
    if (reference.names_currency()) values.insert(books.base_currency());
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
        const auto missing = std::ranges::find_if(
            fields, [&](const std::string& field) { return rows.text(row, field).empty(); });
        if (missing != fields.end())
            findings.push_back(fmt::format("{}: a row has no {}", unique.table, *missing));
        else if (!seen.insert(key).second)
            findings.push_back(fmt::format("{}: {} \"{}\" stands there twice", unique.table, fields.front(),
                                           shown_text(rows.text(row, fields.front()))));
    }
}

// A vendor may be typed into an invoice before the master has a row for it. But nobody is paid, and nothing
// is issued or posted to an account of a vendor's own, without one.
void check_vendors(const Books& books, Findings& findings) {
    const RowsByKey& vendors = books.tables().by_key("Vendor_table", "vendor_no");
    std::unordered_set<std::string> reported;
    const auto require = [&](const char* table, const std::string& vendor) {
        if (vendor.empty() || vendors.contains(vendor + '\n') || !reported.insert(vendor).second) return;
        findings.push_back(
            fmt::format("{}: vendor_no \"{}\" is not in Vendor_table", table, shown_text(vendor)));
    };
    const TableRows& payments = books.tables().rows("Payment_header_table");
    for (std::int64_t row = 0; row < payments.count(); ++row) {
        const std::string form = payments.text(row, "source_form");
        if (form == "APform_payment" || form == "APform_prepayment")
            require("Payment_header_table", payments.text(row, "vendor_no"));
    }
    std::unordered_set<std::string> defaults;
    auto parameters = books.read(
        "SELECT accno FROM Account_Parameters_table WHERE parameter_name = 'Default account payable "
        "account'");
    for (; !parameters.at_eof(); parameters.MoveNext())
        defaults.insert(parameters.column(0).text());
    const TableRows& items = books.tables().rows("AP_transaction_table");
    for (std::int64_t row = 0; row < items.count(); ++row) {
        const bool by_form = items.text(row, "source_form") == "APform_invoice";
        if (by_form && !defaults.contains(items.text(row, "ap_accno")))
            require("AP_transaction_table", items.text(row, "vendor_no"));
    }
    const TableRows& generated = books.tables().rows("AP_header_table");
    for (std::int64_t row = 0; row < generated.count(); ++row)
        if (!generated.text(row, "Year").empty())
            require("AP_header_table", generated.text(row, "vendor_no"));
}

// The elements of a purchase code are read by code and kind of transaction.
void check_elements_of_codes(const Books& books, Findings& findings) {
    const RowsByKey& codes = books.tables().by_key("Tax_code_table", "tax_code transaction_type");
    const TableRows& elements = books.tables().rows("Tax_code_details_table");
    for (std::int64_t row = 0; row < elements.count(); ++row)
        if (elements.text(row, "transaction_type") == "purchase" &&
            !codes.contains(elements.key(row, {"tax_code", "transaction_type"})))
            findings.push_back(
                fmt::format("Tax_code_details_table: there is no tax code \"{}\" of kind \"{}\"",
                            shown_text(elements.text(row, "tax_code")),
                            shown_text(elements.text(row, "transaction_type"))));
}

// Accounts that something was posted to; one of them holds Current Earnings.
void check_account_types(const Books& books, Findings& findings) {
    std::unordered_set<std::string> posted;
    books.each_gl_line([&](const GlLine& line) { posted.insert(line.accno); });
    const TableRows& accounts = books.tables().rows("Account_master_table");
    int earnings = 0;
    for (std::int64_t row = 0; row < accounts.count(); ++row) {
        const std::string type = accounts.text(row, "type");
        const std::string accno = accounts.text(row, "accno");
        if (type == "X" && ++earnings > 1)
            findings.push_back(
                fmt::format("Account {} is a second one of Current Earnings", shown_text(accno)));
        if (posted.contains(accno) && type != "A" && type != "X")
            findings.push_back(fmt::format("Account {} is of type \"{}\" and was posted to",
                                           shown_text(accno), shown_text(type)));
    }
}

}  // namespace

void check_references(const Books& books, Findings& findings) {
    for (const auto& references : {references_of_masters(), references_of_documents()})
        for (const Reference& reference : references)
            check_reference(books, reference, findings);
    check_vendors(books, findings);
    check_elements_of_codes(books, findings);
    check_account_types(books, findings);
}

void check_masters(const Books& books, Findings& findings) {
    for (const Unique& unique : kUnique)
        check_unique(books, unique, findings);
}

}  // namespace brimley::company
