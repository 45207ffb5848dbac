// Money as users type it: never anything but a number, and what is shown reads back as itself.
#include <cmath>

#include "fuzz.h"
#include "kernel/money.h"

namespace brimley::testing {

const std::vector<std::string>& fuzz_words() {
    static const std::vector<std::string> kWords{
        ",", ".", "-", "+", "0", "9", "999", "1e9", "inf", "nan", "0x1", " ", "9999999999999.99", "\xC2\xA0"};
    return kWords;
}

void fuzz_one(std::string_view input) {
    const double value = kernel::money_value(input);
    if (std::isnan(value) || std::isinf(value)) throw Finding("not a number");
    const std::string shown = kernel::format_money(value);
    if (!kernel::is_numeric(input)) return;
    if (std::fabs(value) >= 1e13) throw Finding("numeric, and more than is held to the cent");
    const double read_back = kernel::money_value(shown);
    if (std::fabs(read_back - value) > 0.005 + std::fabs(value) * 1e-15)
        throw Finding("shown as " + shown + ", which is another amount");
    if (kernel::format_money(read_back) != shown) throw Finding(shown + " does not read back as itself");
    if (!kernel::is_numeric(shown)) throw Finding(shown + " is no number");
}

}  // namespace brimley::testing
