#include "company/ledger_movements.h"

#include <fmt/format.h>

#include "company/shown_text.h"

namespace brimley::company {

namespace {

std::string account_key(const std::string& fyear, double company, const std::string& accno) {
    return fmt::format("{}|{}|{}", fyear, company, accno);
}

std::string row_key(const std::string& account, const std::string& ledgertype, const std::string& currency) {
    return fmt::format("{}|{}|{}", account, ledgertype, currency);
}

std::string described(const LedgerTable& table, const std::string& fyear, const std::string& ledgertype,
                      const std::string& accno, const std::string& currency) {
    const std::string year = table.by_year ? fyear + " " : std::string();
    return shown_text(fmt::format("{} {}{} {} {}", table.name, year, ledgertype, accno, currency));
}

}  // namespace

void LedgerMovements::add_row(const std::string& fyear, double company, const std::string& ledgertype,
                              const std::string& accno, const std::string& currency) {
    const std::size_t row = movements_.size();
    movements_.emplace_back();
    names_.push_back(described(table_, fyear, ledgertype, accno, currency));
    const std::string account = account_key(fyear, company, accno);
    if (!by_key_.emplace(row_key(account, ledgertype, currency), row).second) {
        findings_.push_back(names_.back() + " is there twice");
    }
    first_rows_.emplace(account, row);
    if (ledgertype == "A") base_rows_.emplace(account, row);
}

void LedgerMovements::post_all() {
    books_.each_gl_line([&](const GlLine& line) { post(line); });
}

std::size_t LedgerMovements::require(const Rows& rows, const std::string& key, const std::string& what,
                                     const GlLine& line) {
    const auto found = rows.find(key);
    if (found != rows.end()) return found->second;
    if (missing_.insert(what).second) {
        findings_.push_back(fmt::format("{} is missing, though GL document {} was posted to it", what,
                                        shown_text(line.fkey)));
    }
    return kNoRow;
}

void LedgerMovements::move(std::size_t row, const GlLine& line, double plain, double base) {
    if (row == kNoRow) return;
    // A period that names no column moves nothing but the running balances.
    const auto movement = table_.by_year ? movement_of_period(line.period) : std::optional<int>(0);
    if (!movement) return;
    const auto at = static_cast<std::size_t>(*movement);
    movements_[row].plain[at] += plain;
    movements_[row].base[at] += base;
}

void LedgerMovements::post_to_earnings(const GlLine& line, bool debit) {
    const std::string& earnings = books_.earnings_accno().value_or("");
    const std::string fyear = table_.by_year ? line.fyear : std::string();
    const std::size_t row = require(first_rows_, account_key(fyear, line.company, earnings),
                                    described(table_, fyear, "A", earnings, "(Current Earnings)"), line);
    const double sign = debit ? -1 : 1;
    move(row, line, sign * line.amount, table_.earnings_move_base ? sign * line.base_amount : 0);
}

void LedgerMovements::post(const GlLine& line) {
    const std::string fyear = table_.by_year ? line.fyear : std::string();
    const std::string account = account_key(fyear, line.company, line.accno);
    const std::size_t own =
        require(by_key_, row_key(account, line.ledgertype, line.currency),
                described(table_, fyear, line.ledgertype, line.accno, line.currency), line);
    if (own == kNoRow) return;
    move(own, line, line.amount, line.base_amount);
    if (line.ledgertype == "F") {
        const auto base_row = base_rows_.find(account);
        if (base_row != base_rows_.end()) {
            move(base_row->second, line, line.base_amount, 0);
        } else if (table_.needs_base_row) {
            require(base_rows_, account, described(table_, fyear, "A", line.accno, ""), line);
        }
    }
    const ChartAccount* in_chart = books_.account(line.accno);
    if (in_chart && in_chart->income_statement && line.ledgertype == "A")
        post_to_earnings(line, in_chart->debit);
}

}  // namespace brimley::company
