// What listing the checks of one year costs, against the bare query that reads the same cells on the same
// file. Of the checks half pay two items each, the others are prepayments, card bills and expenses of two
// lines.
//
//   bench-list-checks [CHECKS] [FOLDER] [OLDER...]
#include <fmt/format.h>

#include "bare_connection.h"
#include "bench_company.h"
#include "bench_host.h"
#include "payments/void_check/apform_void_check.h"

namespace {

using brimley::bench::BareConnection;
using brimley::bench::BenchHost;
using brimley::bench::median_ms;
using brimley::bench::must;

constexpr const char* kCells =
    "SELECT coalesce(h.remit_to, v.VENDOR_NAME), h.check_no, h.check_date, h.docno, h.doctype, "
    "h.payment_amount, h.Currency, h.bank_accno, h.period, h.fyear, l.pay_item, l.pay_amount, {} FROM "
    "Payment_header_table h JOIN {} l ON l.fkey = h.fkey LEFT JOIN Vendor_table v ON v.vendor_no = "
    "h.vendor_no WHERE h.payby = 'Check' AND h.void = 0 AND h.check_date >= 2460750.5 AND h.doctype {}";

class Bare : public BareConnection {
  public:
    using BareConnection::BareConnection;

    // Those that are too old come first.
    void fill(int older, int checks) {
        exec("BEGIN");
        exec(fmt::format(
            "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < {0}) "
            "INSERT INTO Payment_header_table (fkey, docno, company, doctype, vendor_no, remit_to, "
            "payment_date, Currency, payby, check_no, check_date, payment_amount, period, fyear, void) "
            "SELECT '1' || k || '-' || i, upper(k) || '-26-' || printf('%07d', i), 1, k, CASE WHEN k = 'pc' "
            "THEN 'VISA' WHEN k <> 'mpy' THEN 'V10' || printf('%02d', 1 + i % 8) END, CASE WHEN k = 'mpy' OR "
            "k = 'pp' THEN 'Payee no. ' || (i % 100) END, d, 'USD', 'Check', 70000 + i, d, 200, '2', '2026', "
            "0 FROM (SELECT i, CASE WHEN i % 2 = 0 THEN 'py' WHEN i % 6 = 1 THEN 'pp' WHEN i % 6 = 3 THEN "
            "'pc' ELSE 'mpy' END AS k, CASE WHEN i <= {1} THEN 2460100.5 ELSE 2460760.5 + i % 300 END AS d "
            "FROM n)",
            older + checks, older));
        exec(
            "INSERT INTO Payment_transaction_table (fkey, docno, company, vendor_no, item_no, ap_docno, "
            "pay_item, invoice_no, invoice_date, pay_amount, Currency, void) SELECT fkey, docno, company, "
            "vendor_no, j, 'IP-26-' || h.rowid, j, 'R-' || h.rowid, payment_date, 100, Currency, 0 FROM "
            "Payment_header_table h JOIN (SELECT 1 AS j UNION ALL SELECT 2) ON j = 1 OR doctype = 'py' WHERE "
            "doctype <> 'mpy' ORDER BY h.rowid, j");
        exec(
            "INSERT INTO Payment_misc_transaction_table (fkey, docno, company, pay_item, pay_amount, "
            "account, void) SELECT fkey, docno, company, j, 100, '6300', 0 FROM Payment_header_table h JOIN "
            "(SELECT 1 AS j UNION ALL SELECT 2) WHERE doctype = 'mpy' ORDER BY h.rowid, j");
        exec("COMMIT");
        exec("PRAGMA wal_checkpoint(TRUNCATE)");
    }

    int list() {
        if (list_ == nullptr)
            list_ = prepare(
                fmt::format(kCells,
                            "l.ap_docno, l.invoice_no, l.invoice_date, h.rowid AS at, l.rowid AS line",
                            "Payment_transaction_table", "<> 'mpy'") +
                " UNION ALL " +
                fmt::format(kCells, "NULL, NULL, NULL, h.rowid, l.rowid", "Payment_misc_transaction_table",
                            "= 'mpy'") +
                " ORDER BY at, line");
        return drain(list_);
    }

  private:
    sqlite3_stmt* list_ = nullptr;
};

void measure(const std::string& company, int older, int checks) {
    Bare bare(company);
    bare.fill(older, checks);
    BenchHost host(company);
    host.ap.showform_APform_void_check();
    auto& form = *host.ap.frm_void_check;
    must(form.press(104));
    const int rows = bare.list();
    if (form.dbgrid1.array.used_rows() != rows) throw std::runtime_error("the list is not the query's");
    const double bare_ms = median_ms([&] { static_cast<void>(bare.list()); });
    const double form_ms = median_ms([&] { must(form.press(104)); });
    fmt::print("{} checks in {} rows, {} older: bare {:.2f} ms, form {:.2f} ms, ratio {:.2f}\n", checks, rows,
               older, bare_ms, form_ms, form_ms / bare_ms);
}

}  // namespace

int main(int argc, char** argv) {
    const brimley::bench::Arguments arguments{argc, argv};
    for (const int older : arguments.sizes(3, {0, 10'000, 100'000})) {
        const brimley::bench::BenchCompany company(arguments.folder(2), "bench-list-checks");
        measure(company.path(), older, arguments.number(1, 5'000));
    }
    return 0;
}
