// What a run of the revaluation costs, from Find to the last row of result and ledger summary, against the
// bare query that reads the same cells in the same order from the same file and looks up each vendor and its
// account.
//
//   bench-revalue-items [ITEMS] [FOLDER] [PAID...]
//
// PAID: how many more items are stored, which are paid and not valued.
#include <fmt/format.h>

#include <filesystem>
#include <vector>

#include "aging_items.h"
#include "bench_host.h"
#include "by_turns.h"
#include "company/create.h"
#include "revaluation/apform_revalue.h"

namespace {

using brimley::bench::BenchHost;
using brimley::bench::kVendors;
using brimley::bench::Medians;
using brimley::bench::medians_of;
using brimley::bench::must;
using brimley::bench::peak_megabytes;

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
                "ORDER "
                "BY vendor_no, docno, pay_item, row_id");
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
    const int rounds = items > 100'000 ? 3 : brimley::bench::kRounds;
    const Medians ms = medians_of(
        rounds, [&] { static_cast<void>(bare.value()); }, [&] { must(form.press(104)); });
    fmt::print("{} items, {} paid ones: bare {:.1f} ms, form {:.1f} ms, ratio {:.2f}, peak {:.0f} MB\n", rows,
               paid, ms.bare, ms.form, ms.form / ms.bare, peak_megabytes());
}

}  // namespace

int main(int argc, char** argv) {
    const int items = argc > 1 ? std::atoi(argv[1]) : 100'000;
    const std::filesystem::path folder = argc > 2 ? argv[2] : std::filesystem::temp_directory_path();
    std::vector<int> sizes;
    for (int i = 3; i < argc; ++i)
        sizes.push_back(std::atoi(argv[i]));
    if (sizes.empty()) sizes = {0};
    const std::string company = (folder / "bench-revalue-items.brimley").string();
    const auto remove = [&] {
        for (const char* suffix : {"", "-wal", "-shm"})
            std::filesystem::remove(company + suffix);
    };
    for (const int paid : sizes) {
        remove();
        brimley::company::create_company_file(company, brimley::company::SampleCompany{"anna"});
        measure(company, items, paid);
    }
    remove();
    return 0;
}
