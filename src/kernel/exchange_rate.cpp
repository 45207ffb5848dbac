#include "kernel/exchange_rate.h"

#include <cmath>
#include <stdexcept>

namespace brimley::kernel {

namespace {

constexpr int kDecimalsMin = 2;
constexpr int kDecimalsMax = 7;

double rounded(double value, int decimals) {
    const double scale = std::pow(10.0, decimals);
    return std::nearbyint(value * scale) / scale;
}

}  // namespace

double get_exchange_rate(double amount, double base_amount) {
    if (amount == base_amount) return 1;
    if (amount == 0) throw std::runtime_error("Division by zero");
    const double rate = base_amount / amount;
    for (int decimals = kDecimalsMin; decimals < kDecimalsMax; ++decimals) {
        if (rounded(rate, decimals) == rounded(rate, decimals + 1)) return rounded(rate, decimals);
    }
    return rounded(rate, kDecimalsMax);
}

}  // namespace brimley::kernel
