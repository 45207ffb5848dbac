// What the vendor aging costs, from Find to the last row in the grid, against the bare query that reads the
// same cells in the same order from the same file; and the most memory that the program had by then.
//
//   bench-list-aging [ITEMS] [FOLDER] [PAID...]
//
// PAID: how many more items are stored, which are paid and not listed.
#include <fmt/format.h>

#include <filesystem>
#include <vector>

#include "aging_items.h"
#include "bench_host.h"
#include "by_turns.h"
#include "company/create.h"
#include "inquiries/apreport_aging.h"

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

    int list() {
        if (list_ == nullptr)
            list_ = prepare(
                "SELECT vendor_no, docno, invoice_no, invoice_date, due_date, pay_item, gross_amount, "
                "open_amount, (2461121.5 - due_date) / 30 AS age_range FROM AP_transaction_table WHERE paid "
                "= 0 AND void = 0 ORDER BY vendor_no, docno, pay_item");
        return drain(list_);
    }

  private:
    sqlite3_stmt* list_ = nullptr;
};

void measure(const std::string& company, int items, int paid) {
    Bare bare(company);
    bare.fill(items, paid);
    BenchHost host(company);
    host.ap.showform_APform_aging();
    auto& form = *host.ap.frm_aging;
    form.txtdate.set("22/03/2026");
    must(form.press(104));
    const int rows = bare.list();
    if (form.dbgrid1.array.used_rows() != rows + kVendors)
        throw std::runtime_error(
            fmt::format("{} rows in the list, {} of the query", form.dbgrid1.array.used_rows(), rows));
    const int rounds = items > 100'000 ? 3 : brimley::bench::kRounds;
    const Medians ms = medians_of(
        rounds, [&] { static_cast<void>(bare.list()); }, [&] { must(form.press(104)); });
    fmt::print("{} items, {} paid ones: bare {:.1f} ms, form {:.1f} ms, ratio {:.2f}, peak {:.0f} MB\n", rows,
               paid, ms.bare, ms.form, ms.form / ms.bare, peak_megabytes());
}

}  // namespace

int main(int argc, char** argv) {
    const int items = argc > 1 ? std::atoi(argv[1]) : 1'000'000;
    const std::filesystem::path folder = argc > 2 ? argv[2] : std::filesystem::temp_directory_path();
    std::vector<int> sizes;
    for (int i = 3; i < argc; ++i)
        sizes.push_back(std::atoi(argv[i]));
    if (sizes.empty()) sizes = {0};
    const std::string company = (folder / "bench-list-aging.brimley").string();
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
