// Which rows the balance tables have.
#include <fmt/format.h>

#include <set>

#include "company/check.h"
#include "company/shown_text.h"
#include "company/table_rows.h"

namespace brimley::company {

namespace {

constexpr const char* kAmounts =
    "opening_balance period1 Period2 Period3 period4 ytd_balance e_opening_balance e_ytd_balance";

// "Balance_period_table 2026 E 2000 EUR".
std::string balance_row_name(const TableRows& rows, std::int64_t row, const char* table, bool by_year) {
    return shown_text(fmt::format("{} {}{} {} {}", table, by_year ? rows.text(row, "fyear") + " " : "",
                                  rows.text(row, "ledgertype"), rows.text(row, "accno"),
                                  rows.text(row, "Currency")));
}

void check_keys(const Books& books, const char* table, bool by_year, const std::set<std::string>& ledgers,
                Findings& findings) {
    const TableRows& rows = books.tables().rows(table);
    for (std::int64_t row = 0; row < rows.count(); ++row) {
        const std::string ledger = rows.text(row, "ledgertype");
        const bool base = rows.text(row, "Currency") == books.base_currency();
        if (rows.text(row, "company") == "1" && ledgers.contains(ledger) && base == (ledger == "A") &&
            !rows.text(row, "accno").empty())
            continue;
        findings.push_back(balance_row_name(rows, row, table, by_year) + " is of no ledger of this company");
    }
}

}  // namespace

void check_balance_rows(const Books& books, Findings& findings) {
    constexpr const char* kYears = "Balance_period_table";
    check_keys(books, "Balance_table", false, {"A", "F"}, findings);
    check_keys(books, kYears, true, {"A", "F", "E"}, findings);
    const TableRows& rows = books.tables().rows(kYears);
    std::set<std::string> foreign, twins;
    for (std::int64_t row = 0; row < rows.count(); ++row) {
        const std::string ledger = rows.text(row, "ledgertype");
        const std::string key = rows.key(row, {"fyear", "company", "accno", "Currency"});
        if (ledger == "F") foreign.insert(key);
        for (const std::string total : {"ytd_balance", "e_ytd_balance"})
            if (ledger == "F" && rows.value(row, rows.column(total)).is_null() &&
                !is_nothing(rows.value(
                    row, rows.column(total.starts_with("e_") ? "e_opening_balance" : "opening_balance"))))
                findings.push_back(balance_row_name(rows, row, kYears, true) +
                                   " opens with a balance that its total does not have");
        if (ledger != "E") continue;
        if (!twins.insert(key).second)
            findings.push_back(balance_row_name(rows, row, kYears, true) + " stands there twice");
        for (const std::string& field : words_of(kAmounts))
            if (!is_nothing(rows.value(row, rows.column(field))))
                findings.push_back(
                    fmt::format("{}: {} is never written", balance_row_name(rows, row, kYears, true), field));
    }
    for (std::int64_t row = 0; row < rows.count(); ++row) {
        const std::string ledger = rows.text(row, "ledgertype");
        const std::string key = rows.key(row, {"fyear", "company", "accno", "Currency"});
        if (ledger == "E" && !foreign.contains(key))
            findings.push_back(balance_row_name(rows, row, kYears, true) +
                               " has no row of ledger F beside it");
    }
}

}  // namespace brimley::company
