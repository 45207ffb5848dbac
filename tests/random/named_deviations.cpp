#include "named_deviations.h"

#include <fmt/format.h>

#include <algorithm>

#include "company/books.h"
#include "kernel/money.h"

namespace brimley::testing {

using company::differ;

void NamedDeviations::take_back(store::Database& database) const {
    for (const auto& [vendor_no, amount] : owing_) {
        if (!differ(amount, 0)) continue;
        const std::string where = " WHERE vendor_no = " + store::quoted(vendor_no);
        const auto vendor = database.OpenRecordset("SELECT owing_balance FROM Vendor_table" + where,
                                                   store::RecordsetKind::snapshot);
        if (vendor.at_eof()) continue;
        database.Execute(fmt::format("UPDATE Vendor_table SET owing_balance = {}{}",
                                     kernel::Round(vendor.number("owing_balance") - amount), where));
    }
}

int NamedDeviations::vendors() const {
    return static_cast<int>(
        std::count_if(owing_.begin(), owing_.end(), [](const auto& each) { return differ(each.second, 0); }));
}

}  // namespace brimley::testing
