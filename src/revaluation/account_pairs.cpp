#include "revaluation/account_pairs.h"

#include <algorithm>

namespace brimley::revaluation {

void AccountPairs::add(std::string_view accno, std::string_view currency, double amount) {
    const auto end = pairs_.begin() + std::min(count(), kSlots);
    const auto pair = std::find_if(pairs_.begin(), end, [&](const AccountPair& known) {
        return known.accno == accno && known.currency == currency;
    });
    if (pair != end) {
        pair->amount += amount;
        return;
    }
    if (count() < kSlots) *pair = {std::string(accno), std::string(currency), amount};
    count_.assign(count() + 1);
}

const AccountPair* AccountPairs::at(int index) const {
    return index < std::min(count(), kSlots) ? &pairs_[static_cast<std::size_t>(index)] : nullptr;
}

}  // namespace brimley::revaluation
