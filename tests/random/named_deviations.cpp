#include "named_deviations.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>

#include "company/books.h"

namespace brimley::testing {

using company::differ;

void NamedDeviations::payment_saved(const ShownPayment& payment) {
    const std::string name = "Payment " + payment.fkey;
    double pay = 0;
    double base_of_emptied_rows = 0;
    int item_no = 0;
    for (const ShownPayment::Row& row : payment.rows) {
        pay += row.pay;
        if (!row.stored()) {
            base_of_emptied_rows += row.base;
            continue;
        }
        ++item_no;
        const double left = row.open - row.discount - row.writeoff - row.pay;
        if (!differ(row.balance, left)) continue;
        payments_.insert(payment.fkey);
        findings_.insert(
            fmt::format("{}: line {}, balance is {:.2f}, expected {:.2f}", name, item_no, row.balance, left));
    }
    const bool total_is_old = payment.has_total && differ(payment.total, pay);
    if (total_is_old)
        findings_.insert(
            fmt::format("{}: total_amount is {:.2f}, its lines come to {:.2f}", name, payment.total, pay));
    if (!total_is_old && !differ(base_of_emptied_rows, 0)) return;
    payments_.insert(payment.fkey);
    starts_.insert(fmt::format("{}: total_base_amount is {:.2f}, ", name, payment.total_base));
    starts_.insert(name + (payment.has_total ? " has a total_amount" : " has no total_amount"));
}

bool NamedDeviations::explains_owing(const std::string& finding) const {
    static const std::string kStart = "Vendor ";
    static const std::string kIs = ": owing_balance is ";
    static const std::string kBy = ", by its documents ";
    const std::size_t is = finding.find(kIs);
    const std::size_t by = finding.find(kBy);
    if (!finding.starts_with(kStart) || is == std::string::npos || by == std::string::npos) return false;
    const auto vendor = owing_.find(finding.substr(kStart.size(), is - kStart.size()));
    const double owing = std::atof(finding.c_str() + is + kIs.size());
    const double by_documents = std::atof(finding.c_str() + by + kBy.size());
    return vendor != owing_.end() && !differ(owing - by_documents, vendor->second);
}

bool NamedDeviations::explains(const std::string& finding) const {
    if (findings_.contains(finding) || explains_owing(finding)) return true;
    return std::any_of(starts_.begin(), starts_.end(),
                       [&](const std::string& start) { return finding.starts_with(start); });
}

int NamedDeviations::vendors() const {
    return static_cast<int>(
        std::count_if(owing_.begin(), owing_.end(), [](const auto& each) { return differ(each.second, 0); }));
}

}  // namespace brimley::testing
