// The rate that follows from an amount and its value in base currency.
#pragma once

namespace brimley::kernel {

// Base units per unit of the amount's currency, with as few decimals as it takes: two at least, seven
// at most. 1 when the two are equal. Throws std::runtime_error for a base amount without an amount.
[[nodiscard]] double get_exchange_rate(double amount, double base_amount);

}  // namespace brimley::kernel
