// What a run of the revaluation costs, from Find to the last row of result and ledger summary, against the
// bare query that reads the same cells in the same order from the same file and looks up each vendor and its
// account.
//
//   bench-revalue-items [ITEMS] [FOLDER] [PAID...]
//
// PAID: how many more items are stored, which are paid and not valued.
#include <fmt/format.h>

#include "aging_items.h"
#include "bench_company.h"
#include "bench_host.h"
#include "by_turns.h"
#include "revaluation/apform_revalue.h"

namespace {

using brimley::bench::BenchHost;
using brimley::bench::kVendors;
using brimley::bench::medians_of;
using brimley::bench::must;
using brimley::bench::print_medians;
using brimley::bench::rounds_for;

class Bare : public brimley::bench::AgingItems {
  public:
    using AgingItems::AgingItems;

    void fill_in_euro(int items, int paid) {
        fill(items, paid);
        exec("UPDATE AP_transaction_table SET Currency = 'EUR', exchange_rate = 1.1 + rowid % 100 / 1000.0");
        exec("UPDATE Vendor_table SET ap_accno = '2010' WHERE vendor_no LIKE 'B%'");
        exec("PRAGMA wal_checkpoint(TRUNCATE)");
    }

    int value() {
        if (items_ == nullptr) {
            items_ = prepare(
                "SELECT vendor_no, docno, pay_item, invoice_date, Currency, open_amount, exchange_rate FROM "
                "AP_transaction_table WHERE paid = 0 AND Currency = 'EUR' AND invoice_date <= 2461131.5 "
                "ORDER BY vendor_no, docno, pay_item");
            vendor_ = prepare("SELECT * FROM Vendor_table WHERE vendor_no = ?");
            account_ =
                prepare("SELECT * FROM Account_currency_table WHERE accno = '2010' AND Currency = 'EUR'");
        }
        int rows = 0;
        std::size_t read = 0;
        std::string vendor_no;
        while (sqlite3_step(items_) == SQLITE_ROW) {
            ++rows;
            read += read_row(items_);
            const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(items_, 0));
            if (vendor_no == text) continue;
            vendor_no = text;
            sqlite3_bind_text(vendor_, 1, text, -1, SQLITE_TRANSIENT);
            drain(vendor_);
            drain(account_);
        }
        sqlite3_reset(items_);
        return read == static_cast<std::size_t>(-1) ? 0 : rows;
    }

  private:
    sqlite3_stmt* items_ = nullptr;
    sqlite3_stmt* vendor_ = nullptr;
    sqlite3_stmt* account_ = nullptr;
};

void measure(const std::string& company, int items, int paid) {
    Bare bare(company);
    bare.fill_in_euro(items, paid);
    BenchHost host(company);
    host.ap.showform_APform_revalue();
    auto& form = *host.ap.frm_revalue;
    must(form.press(105));
    form.txtlastdate.set("31/03/2026");
    const auto type = [&](const char* caption, const char* text) {
        must(form.dbgridcmd.edit_cell(0, form.dbgridcmd.get_column(caption), text));
    };
    type("currency", "EUR");
    type("rate", "1.25");
    type("every vendor", "True");
    must(form.press(104));
    const int rows = bare.value();
    // A row of sums for each vendor, an empty one, and two of the summary.
    if (form.dbgrid1.array.used_rows() != rows + kVendors + 3)
        throw std::runtime_error(
            fmt::format("{} rows in the result, {} of the query", form.dbgrid1.array.used_rows(), rows));
    print_medians(
        fmt::format("{} items, {} paid ones", rows, paid),
        medians_of(
            rounds_for(items), [&] { static_cast<void>(bare.value()); }, [&] { must(form.press(104)); }));
}

}  // namespace

int main(int argc, char** argv) {
    const brimley::bench::Arguments arguments{argc, argv};
    for (const int paid : arguments.sizes(3, {0})) {
        const brimley::bench::BenchCompany company(arguments.folder(2), "bench-revalue-items");
        measure(company.path(), arguments.number(1, 100'000), paid);
    }
    return 0;
}
