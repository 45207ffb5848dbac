// The books of a company as the checks read them: snapshots of the tables, opened once, and the chart.
//
// Signs: amounts are those of the ledger, positive when they raise the account on its own side.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "kernel/store/database.h"

namespace brimley::company {

using Findings = std::vector<std::string>;

struct ChartAccount {
    bool debit = false;
    bool income_statement = false;
};

struct GlLine {
    std::string fkey;
    std::string fyear;  // generated lines hold it in another field
    std::string period;
    std::string accno;
    std::string currency;
    std::string ledgertype;
    double company = 0;
    double line_number = 0;
    double amount = 0;
    double base_amount = 0;
};

struct ApHeader {
    std::string fkey;
    std::string source;
    std::string gl_fkey;
    bool fully_paid = false;
    bool paid = false;
    bool is_void = false;
};

struct ApLine {
    std::string fkey;
    std::string doctype;
    std::string pay_item;
    std::string docno;
    double gross = 0;
    double open = 0;
    double settled = 0;  // paid, discounted or written off so far
    bool paid = false;
    bool is_void = false;
};

// Whether two sums differ by a hundredth or more.
[[nodiscard]] bool differ(double a, double b);

class Books {
  public:
    // The database must outlive the books.
    explicit Books(store::Database& database);

    // Null for an account that is not in the chart.
    [[nodiscard]] const ChartAccount* account(const std::string& accno) const;
    // The account of type "X", when there is one.
    [[nodiscard]] const std::optional<std::string>& earnings_accno() const { return earnings_accno_; }

    void each_gl_line(const std::function<void(const GlLine&)>& visit) const;
    // The lines of each GL document by line number. A key without "-" comes again in another year; such
    // documents are told apart by their year.
    void each_gl_document(const std::function<void(std::span<const GlLine>)>& visit) const;
    // The keys of GL documents that have lines.
    [[nodiscard]] std::unordered_set<std::string> posted_documents() const;
    void each_ap_header(const std::function<void(const ApHeader&)>& visit) const;
    void each_ap_line(const std::function<void(const ApLine&)>& visit) const;

    // A snapshot of the rows that the query gives.
    [[nodiscard]] store::Recordset read(const std::string& query) const;

  private:
    store::Database& database_;
    std::unordered_map<std::string, ChartAccount> chart_;
    std::optional<std::string> earnings_accno_;
    // Walked anew by each check; a snapshot in memory is cheap to walk.
    mutable store::Recordset gl_lines_;
    mutable store::Recordset ap_headers_;
    mutable store::Recordset ap_lines_;
};

}  // namespace brimley::company
