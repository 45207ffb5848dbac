// What paying costs: listing the open items of a vendor, and saving one payment of many of them, each against
// bare prepared statements that read and write the same on the same file.
//
//   bench-pay-items [STORED] [OPEN] [PAID] [FOLDER]
#include <fmt/format.h>
#include <sqlite3.h>

#include <algorithm>
#include <vector>

#include "bare_connection.h"
#include "bench_company.h"
#include "bench_host.h"
#include "payments/invoice_payment/apform_payment.h"

namespace {

using brimley::bench::BareConnection;
using brimley::bench::BenchHost;
using brimley::bench::cpu_ms;
using brimley::bench::kRounds;
using brimley::bench::median_ms;
using brimley::bench::must;

class Bare : public BareConnection {
  public:
    using BareConnection::BareConnection;

    // Items numbered from 1: the first `open` are the vendor's, the rest belong to a thousand others.
    void fill(int stored, int open) {
        exec("BEGIN");
        exec(fmt::format(
            "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < {}) "
            "INSERT INTO AP_header_table (fkey, docno, company, doctype, vendor_no, Currency, Source, paid, "
            "fully_paid, void, hold) SELECT '1ip-' || i, 'IP-26-' || printf('%07d', i), '1', 'ip', CASE WHEN "
            "i <= "
            "{} THEN 'V1001' ELSE 'W' || (i % 1000) END, 'USD', 'AP-INVOICE', 0, 0, 0, 0 FROM n",
            stored, open));
        exec(
            "INSERT INTO AP_transaction_table (fkey, docno, company, doctype, vendor_no, invoice_no, "
            "invoice_date, due_date, Currency, Source, early_discount, pay_item, gross_amount, open_amount, "
            "ap_accno, po_accno, Description, user_created, paid, void, hold) SELECT fkey, docno, company, "
            "doctype, vendor_no, 'R-' || fkey, 2461115.5, 2461145.5, Currency, Source, 0, '1', 100, 100, "
            "'2000', "
            "'5000', 'Green coffee, 20 bags', 'anna', 0, 0, 0 FROM AP_header_table");
        exec("COMMIT");
        exec("PRAGMA wal_checkpoint(TRUNCATE)");
    }

    int list() {
        if (list_ == nullptr)
            list_ = prepare(
                "SELECT docno, invoice_no, pay_item, gross_amount, open_amount, invoice_date, due_date, "
                "early_discount, discount_date, discount_taken, doctype, Currency, exchange_rate, fkey FROM "
                "AP_transaction_table WHERE vendor_no = 'V1001' AND paid = 0 AND void = 0 AND hold = 0 ORDER "
                "BY docno, pay_item");
        return drain(list_);
    }

    // The writes of one payment that grow with its items: line, item, and the look at what is left of the
    // document with its flags.
    void pay(int from, int items) {
        if (line_ == nullptr) prepare_payment();
        exec("BEGIN IMMEDIATE");
        for (int i = from; i < from + items; ++i) {
            const std::string docno = fmt::format("IP-26-{:07}", i);
            const std::string fkey = fmt::format("1ip-{}", i);
            bind(line_, {docno, "R-" + fkey});
            sqlite3_bind_int(line_, 3, i);
            drain(line_);
            bind(item_, {docno});
            drain(item_);
            bind(left_, {fkey});
            drain(left_);
            bind(flags_, {fkey});
            drain(flags_);
        }
        exec("COMMIT");
    }

  private:
    static void bind(sqlite3_stmt* statement, const std::vector<std::string>& values) {
        for (std::size_t i = 0; i < values.size(); ++i)
            sqlite3_bind_text(statement, static_cast<int>(i + 1), values[i].c_str(),
                              static_cast<int>(values[i].size()), SQLITE_TRANSIENT);
    }
    void prepare_payment() {
        line_ = prepare(
            "INSERT INTO Payment_transaction_table (fkey, docno, company, vendor_no, payment_date, item_no, "
            "ap_docno, pay_item, ap_doctype, invoice_no, invoice_date, gross_amount, open_amount, "
            "pay_amount, discount_available, discount_taken, writeoff, balance, Currency, pay_base_amount, "
            "date_created, time_created, user_created, computer_id, void) VALUES ('1py-900', 'PY-26-00900', "
            "1, 'V1001', 2461115.5, ?3, ?1, 1, 'ip', ?2, 2461115.5, 100, 100, 100, 0, 0, 0, 0, 'USD', 100, "
            "2461115.5, '00:00:00', 'anna', 'BENCH', 0)");
        item_ = prepare(
            "UPDATE AP_transaction_table SET open_amount = 0, paid_amount = 100, paid = 1 WHERE docno = ?1 "
            "AND company = '1' AND pay_item = '1'");
        left_ = prepare("SELECT fkey FROM AP_transaction_table WHERE fkey = ?1 AND paid = 0");
        flags_ = prepare("UPDATE AP_header_table SET paid = 1, fully_paid = 1 WHERE fkey = ?1");
    }

    sqlite3_stmt *list_ = nullptr, *line_ = nullptr, *item_ = nullptr, *left_ = nullptr, *flags_ = nullptr;
};

void measure_listing(BenchHost& host, Bare& bare) {
    auto& form = *host.ap.frm_payment;
    const int rows = bare.list();
    const double bare_ms = median_ms([&] { static_cast<void>(bare.list()); });
    const double form_ms = median_ms([&] { form.list_vendor_invoice("V1001"); });
    if (form.dbgrid1.array.used_rows() != rows) throw std::runtime_error("the list is not the query's");
    fmt::print("list {} items: bare {:.2f} ms, form {:.2f} ms, ratio {:.2f}\n", rows, bare_ms, form_ms,
               form_ms / bare_ms);
}

void enter(brimley::payments::APform_payment& form, int items) {
    if (form.mode() == brimley::frame::Mode::read) must(form.press(105));
    must(form.cmbvendor.type("V1001"));
    must(form.cmbpayby.type("Cash"));
    must(form.cmbcash.type("1000"));
    const int column = form.dbgrid1.get_column("pay amount");
    for (int row = 0; row < items; ++row)
        must(form.dbgrid1.visit_cell(row, column));
    must(form.txtpayment.type(form.txttotal.text()));
}

// In turns, each on items of its own; the median of what one item takes. The bare side takes the vendor's
// last items, the form the first of the list.
void measure_payment(BenchHost& host, Bare& bare, int open, int items) {
    auto& form = *host.ap.frm_payment;
    std::vector<double> form_ms;
    std::vector<double> bare_ms;
    for (int round = 0; round < kRounds; ++round) {
        enter(form, items);
        const double before = cpu_ms();
        must(form.press(101));
        const double between = cpu_ms();
        bare.pay(open - (round + 1) * items + 1, items);
        bare_ms.push_back(cpu_ms() - between);
        form_ms.push_back(between - before);
        if (form.mode() != brimley::frame::Mode::read) throw std::runtime_error(host.desk.messages.back());
    }
    std::sort(form_ms.begin(), form_ms.end());
    std::sort(bare_ms.begin(), bare_ms.end());
    const double form_us = form_ms[kRounds / 2] * 1000 / items;
    const double bare_us = bare_ms[kRounds / 2] * 1000 / items;
    fmt::print("pay {} items: bare {:.1f} us an item, form {:.1f} us an item, ratio {:.2f}\n", items, bare_us,
               form_us, form_us / bare_us);
}

}  // namespace

int main(int argc, char** argv) {
    const brimley::bench::Arguments arguments{argc, argv};
    const brimley::bench::BenchCompany company(arguments.folder(4), "bench-pay-items");
    const int open = arguments.number(2, 5'000);
    Bare bare(company.path());
    bare.fill(arguments.number(1, 1'000'000), open);
    BenchHost host(company.path());
    host.ap.showform_APform_payment();
    must(host.ap.frm_payment->press(105));
    measure_listing(host, bare);
    measure_payment(host, bare, open, arguments.number(3, 200));
    return 0;
}
