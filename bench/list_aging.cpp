// What the vendor aging costs, from Find to the last row in the grid, against the bare query that reads the
// same cells in the same order from the same file; and the most memory that the program had by then.
//
//   bench-list-aging [ITEMS] [FOLDER] [PAID...]
//
// PAID: how many more items are stored, which are paid and not listed.
#include <fmt/format.h>

#include "aging_items.h"
#include "bench_company.h"
#include "bench_host.h"
#include "by_turns.h"
#include "inquiries/apreport_aging.h"

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
    print_medians(
        fmt::format("{} items, {} paid ones", rows, paid),
        medians_of(
            rounds_for(items), [&] { static_cast<void>(bare.list()); }, [&] { must(form.press(104)); }));
}

}  // namespace

int main(int argc, char** argv) {
    const brimley::bench::Arguments arguments{argc, argv};
    for (const int paid : arguments.sizes(3, {0})) {
        const brimley::bench::BenchCompany company(arguments.folder(2), "bench-list-aging");
        measure(company.path(), arguments.number(1, 1'000'000), paid);
    }
    return 0;
}
