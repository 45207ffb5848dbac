// What the invoice inquiry and the payment history cost, from Find to the last row in the grid, against bare
// queries that read the same cells in the same order from the same file; and the most memory that the program
// had by then. Every invoice has one item and one payment, and a tenth of them are open.
//
//   bench-list-inquiries [INVOICES] [FOLDER]
#include <fmt/format.h>

#include "aging_items.h"
#include "bench_company.h"
#include "bench_host.h"
#include "by_turns.h"
#include "inquiries/apreport_inquiry.h"
#include "inquiries/apreport_payhistory.h"

namespace {

using brimley::bench::BenchHost;
using brimley::bench::must;
namespace bench = brimley::bench;

constexpr const char* kItemCells =
    "SELECT i.vendor_no, i.docno, i.invoice_no, i.pay_item, i.invoice_date, i.due_date, i.gross_amount, "
    "i.open_amount, i.paid, i.hold FROM ";
constexpr const char* kDays = "invoice_date >= 2460700.5 AND {0}.invoice_date <= 2462000.5";

class Bare : public bench::AgingItems {
  public:
    using AgingItems::AgingItems;

    void fill(int invoices) {
        AgingItems::fill(invoices / 10, invoices - invoices / 10);
        exec("BEGIN");
        exec(
            "INSERT INTO AP_header_table (fkey, docno, company, doctype, invoice_no, invoice_date, "
            "vendor_no, Currency, paid, void, hold, fully_paid, printed) SELECT fkey, docno, company, "
            "doctype, invoice_no, invoice_date, vendor_no, Currency, paid, void, hold, paid, 0 FROM "
            "AP_transaction_table");
        exec(
            "INSERT INTO Payment_header_table (fkey, docno, company, doctype, vendor_no, payment_date, "
            "Currency, payby, payment_amount, void) SELECT '1py-' || rowid, 'PY-26-' || rowid, company, "
            "'py', "
            "vendor_no, invoice_date, Currency, 'Cash', gross_amount, 0 FROM AP_transaction_table");
        exec(
            "INSERT INTO Payment_transaction_table (fkey, docno, company, vendor_no, payment_date, ap_docno, "
            "invoice_no, pay_item, gross_amount, open_amount, pay_amount, balance, discount_taken, writeoff, "
            "void) SELECT '1py-' || rowid, 'PY-26-' || rowid, company, vendor_no, invoice_date, docno, "
            "invoice_no, pay_item, gross_amount, gross_amount, gross_amount, 0, 0, 0, 0 FROM "
            "AP_transaction_table");
        exec("COMMIT");
        exec("PRAGMA wal_checkpoint(TRUNCATE)");
    }
};

// One list: what the form presses, and the bare statement.
void measure(const char* name, Bare& bare, brimley::frame::ListForm& form, const std::string& sql) {
    sqlite3_stmt* const statement = bare.prepare(sql);
    must(form.press(104));
    const int rows = Bare::drain(statement);
    if (form.dbgrid1.array.used_rows() != rows)
        throw std::runtime_error(
            fmt::format("{}: {} rows, {} of the query", name, form.dbgrid1.array.used_rows(), rows));
    bench::print_medians(
        fmt::format("{}: {} rows", name, rows),
        bench::medians_of(
            3, [&] { static_cast<void>(Bare::drain(statement)); }, [&] { must(form.press(104)); }));
}

void measure(const std::string& company, int invoices) {
    Bare bare(company);
    bare.fill(invoices);
    BenchHost host(company);
    host.ap.showform_APform_inquiry();
    auto& inquiry = *host.ap.frm_inquiry;
    must(inquiry.cal1.type("01/01/2025", "31/12/2027"));
    measure("all items", bare, inquiry,
            kItemCells + std::string("AP_transaction_table i WHERE i.") + fmt::format(kDays, "i") +
                " AND i.void = 0");
    must(inquiry.opt_open.click());
    measure("items of open documents", bare, inquiry,
            kItemCells +
                std::string("AP_header_table h, AP_transaction_table i WHERE h.fkey = i.fkey AND h.") +
                fmt::format(kDays, "h") + " AND h.paid = 0 AND h.void = 0 ORDER BY h.rowid, i.rowid");
    host.ap.showform_APform_payhistory();
    auto& history = *host.ap.frm_payhistory;
    must(history.cal1.type("01/01/2025", "31/12/2027"));
    measure("payments", bare, history,
            "SELECT h.docno, h.check_no, h.check_date, h.doctype, h.fee_amount, p.vendor_no, p.invoice_no, "
            "p.ap_docno, p.pay_item, p.payment_date, p.gross_amount, p.open_amount, p.pay_amount, p.balance, "
            "p.discount_taken, p.writeoff FROM Payment_header_table h JOIN Payment_transaction_table p ON "
            "h.fkey = p.fkey WHERE p.payment_date >= 2460700.5 AND p.payment_date <= 2462000.5 ORDER BY "
            "h.rowid, p.rowid");
}

}  // namespace

int main(int argc, char** argv) {
    const brimley::bench::Arguments arguments{argc, argv};
    const brimley::bench::BenchCompany company(arguments.folder(2), "bench-list-inquiries");
    measure(company.path(), arguments.number(1, 1'000'000));
    return 0;
}
