// A company with many items to pay, written with bare SQLite.
#pragma once

#include <fmt/format.h>

#include "bare_connection.h"

namespace brimley::bench {

inline constexpr int kVendors = 500;

class AgingItems : public BareConnection {
  public:
    using BareConnection::BareConnection;

    // Items of 500 vendors in turn, as the year brings them; the paid ones lie between the others.
    void fill(int items, int paid) {
        exec("BEGIN");
        exec(
            fmt::format("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < {}) INSERT "
                        "INTO Vendor_table (vendor_no, VENDOR_NAME) SELECT printf('B%06d', i), 'Vendor no. ' "
                        "|| i FROM n",
                        kVendors));
        exec(fmt::format(
            "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < {0}) INSERT INTO "
            "AP_transaction_table (fkey, docno, doctype, company, vendor_no, invoice_no, invoice_date, "
            "due_date, Currency, pay_item, gross_amount, open_amount, paid, void, hold, include_tax) SELECT "
            "'1ip-' || i, 'IP-26-' || printf('%07d', i), 'ip', '1', printf('B%06d', 1 + (i + i / 10) * 7919 "
            "% {1}), "
            "'R-' || i, 2460760.5 + i % 300, 2460790.5 + i % 300, 'USD', '1', 100 + i % 900000 / 100.0, 100 "
            "+ i % 900000 / 100.0, i * {2} % {0} < {2}, 0, 0, 0 FROM n",
            items + paid, kVendors, paid));
        exec("COMMIT");
        exec("PRAGMA wal_checkpoint(TRUNCATE)");
    }
};

}  // namespace brimley::bench
