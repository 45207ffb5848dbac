// The books of a company as the checks read them: snapshots of the tables, opened once, and the chart.
//
// Signs: amounts are those of the ledger, positive when they raise the account on its own side.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "kernel/store/database.h"
#include "kernel/store/value.h"

namespace brimley::company {

using Findings = std::vector<std::string>;

// What rounding to two places may leave out or add.
inline constexpr double kHalfCent = 0.005;

class GeneratedInvoices;
class Tables;

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
    std::string docno;
    std::string currency;
    double rate = 0;
    bool fully_paid = false;
    bool paid = false;
    bool is_void = false;
};

struct ApLine {
    std::string fkey;
    std::string doctype;
    std::string pay_item;
    std::string docno;
    std::string ap_accno;
    std::string po_accno;
    double gross = 0;
    double open = 0;
    double paid_amount = 0;
    double discount_taken = 0;
    double writeoff = 0;
    std::optional<store::DateTime> written;  // the day
    bool paid = false;
    bool is_void = false;

    // Whether anything was ever paid, discounted or written off.
    [[nodiscard]] bool touched() const {
        return paid || paid_amount != 0 || discount_taken != 0 || writeoff != 0;
    }
};

// A payment of any kind.
struct PaymentHeader {
    std::string fkey;
    std::string doctype;
    std::string vendor_no;
    std::string gl_fkey;
    std::string source_form;
    std::string cash_accno;
    std::string currency;
    double rate = 0;
    double payment_amount = 0;
    double payment_base_amount = 0;
    std::optional<double> total_amount;
    double total_base_amount = 0;
    std::string total_currency;
    std::optional<store::DateTime> void_date;
    bool is_void = false;
    std::string docno;
    bool invoiced = false;  // of a prepayment: it counts as applied

    [[nodiscard]] bool of_payment_form() const { return source_form == "APform_payment"; }
    [[nodiscard]] bool of_misc_form() const { return source_form == "APform_misc_payment"; }
    // By any form of this module. A card payment does not name its form.
    [[nodiscard]] bool saved_here() const {
        return of_payment_form() || of_misc_form() || source_form == "APform_prepayment" ||
               (doctype == "pc" && !gl_fkey.empty());
    }
};

// What a payment pays of one item, in the item's currency.
struct PaymentLine {
    std::string fkey;
    std::string item_no;
    std::string ap_docno;
    std::string ap_doctype;
    std::string pay_item;
    std::string currency;
    std::string discount_accno;
    std::string writeoff_accno;
    std::string prepay_accno;
    double gross = 0;
    double open = 0;
    double pay = 0;
    double discount = 0;
    double writeoff = 0;
    double balance = 0;
    double invoice_rate = 0;
    double payment_rate = 0;
    double pay_base = 0;
    bool is_void = false;

    [[nodiscard]] double sum() const { return pay + discount + writeoff; }
};

// Whether two sums differ by a hundredth or more.
[[nodiscard]] bool differ(double a, double b);
// Whether it is no whole number of cents.
[[nodiscard]] bool has_parts_of_a_cent(double amount);

// The number of a key that the counter which never restarts has given: 12 of "1gl-12". Of two GL documents
// the one with the higher number was begun later. Empty for a key of another form.
[[nodiscard]] std::optional<double> running_number_of(const std::string& fkey);

class Books {
  public:
    // The database must outlive the books.
    explicit Books(store::Database& database);
    ~Books();
    Books(const Books&) = delete;
    Books& operator=(const Books&) = delete;

    // Null for an account that is not in the chart.
    [[nodiscard]] const ChartAccount* account(const std::string& accno) const;
    // The account of type "X", when there is one.
    [[nodiscard]] const std::optional<std::string>& earnings_accno() const { return earnings_accno_; }
    [[nodiscard]] const std::string& base_currency() const { return base_currency_; }

    void each_gl_line(const std::function<void(const GlLine&)>& visit) const;
    // The lines of each GL document by line number. A key without "-" may repeat in another year; such
    // documents differ in their year.
    void each_gl_document(const std::function<void(std::span<const GlLine>)>& visit) const;
    // The keys of GL documents that have lines.
    [[nodiscard]] std::unordered_set<std::string> posted_documents() const;
    void each_ap_header(const std::function<void(const ApHeader&)>& visit) const;
    void each_ap_line(const std::function<void(const ApLine&)>& visit) const;
    // Both by key.
    void each_payment(const std::function<void(const PaymentHeader&)>& visit) const;
    void each_payment_line(const std::function<void(const PaymentLine&)>& visit) const;

    // Read when they are first asked for.
    [[nodiscard]] const GeneratedInvoices& generated() const;

    // Whole tables, each read when it is first asked for.
    [[nodiscard]] Tables& tables() const;

    // A snapshot of the rows that the query gives.
    [[nodiscard]] store::Recordset read(const std::string& query) const;

  private:
    store::Database& database_;
    std::unordered_map<std::string, ChartAccount> chart_;
    std::optional<std::string> earnings_accno_;
    std::string base_currency_;
    // Walked again by each check; a snapshot in memory is cheap to walk.
    mutable store::Recordset gl_lines_;
    mutable store::Recordset ap_headers_;
    mutable store::Recordset ap_lines_;
    mutable store::Recordset payments_;
    mutable store::Recordset payment_lines_;
    mutable std::unique_ptr<const GeneratedInvoices> generated_;
    mutable std::unique_ptr<Tables> tables_;
};

// The day in a field of the current row; empty when there is none.
[[nodiscard]] std::string day_of(const store::Recordset& rows, const char* field);

}  // namespace brimley::company
