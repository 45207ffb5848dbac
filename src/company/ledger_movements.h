// What the GL lines make of the rows of a balance table, by the rules of posting.
//
// A line moves the row of its own ledger, account and currency. A line of the foreign ledger also moves the
// account's row of the base ledger, by its base amount. A line of the base ledger on an account of the income
// statement also moves Current Earnings, down for a debit account and up for others. The two tables differ in
// small things:
//
//   Balance_table           Current Earnings moves in `amount` alone; a foreign line needs the base row
//   Balance_period_table    by fiscal year; Current Earnings moves in both families; a missing base row is
//   ignored
#pragma once

#include <array>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "company/books.h"
#include "company/period_balances.h"

namespace brimley::company {

struct LedgerTable {
    const char* name;
    bool by_year;
    bool earnings_move_base;
    bool needs_base_row;
};
inline constexpr LedgerTable kBalanceTable{"Balance_table", false, false, true};
inline constexpr LedgerTable kPeriodTable{"Balance_period_table", true, true, false};

// The sums for one row. Without a year everything is in the first place.
struct Movements {
    std::array<double, kMovements> plain{};
    std::array<double, kMovements> base{};
};

class LedgerMovements {
  public:
    LedgerMovements(const Books& books, const LedgerTable& table, Findings& findings)
        : books_(books), table_(table), findings_(findings) {}

    // Makes the table's next row known, in the order in which posting would find it. A second row of the same
    // key is a finding.
    void add_row(const std::string& fyear, double company, const std::string& ledgertype,
                 const std::string& accno, const std::string& currency);
    // Posts every GL line. A line that finds no row is a finding, once per row.
    void post_all();

    [[nodiscard]] const Movements& of_row(std::size_t row) const { return movements_[row]; }
    // "Balance_table A 2000 USD", for findings.
    [[nodiscard]] const std::string& name_of_row(std::size_t row) const { return names_[row]; }

  private:
    static constexpr std::size_t kNoRow = static_cast<std::size_t>(-1);
    using Rows = std::unordered_map<std::string, std::size_t>;

    void post(const GlLine& line);
    void post_to_earnings(const GlLine& line, bool debit);
    void move(std::size_t row, const GlLine& line, double plain, double base);
    // The row, or kNoRow after a finding.
    std::size_t require(const Rows& rows, const std::string& key, const std::string& described,
                        const GlLine& line);

    const Books& books_;
    LedgerTable table_;
    Findings& findings_;
    std::vector<Movements> movements_;
    std::vector<std::string> names_;
    Rows by_key_;      // year, company, ledger, account, currency
    Rows base_rows_;   // year, company, account: the first row of the base ledger
    Rows first_rows_;  // year, company, account: the first row of any ledger
    std::unordered_set<std::string> missing_;
};

}  // namespace brimley::company
