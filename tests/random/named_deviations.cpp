#include "named_deviations.h"

#include <algorithm>
#include <cstdlib>

#include "company/books.h"

namespace brimley::testing {

using company::differ;

bool NamedDeviations::explains(const std::string& finding) const {
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

int NamedDeviations::vendors() const {
    return static_cast<int>(
        std::count_if(owing_.begin(), owing_.end(), [](const auto& each) { return differ(each.second, 0); }));
}

}  // namespace brimley::testing
