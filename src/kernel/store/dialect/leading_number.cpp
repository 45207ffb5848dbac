#include "kernel/store/dialect/leading_number.h"

#include <algorithm>
#include <charconv>

namespace brimley::store::dialect {

double leading_number(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    // from_chars knows words for infinity and for no number; VAL does not.
    const std::size_t first = text.starts_with('-') ? 1 : 0;
    if (first < text.size() && (text[first] < '0' || text[first] > '9') && text[first] != '.') return 0;
    double number = 0;
    const auto end =
        std::from_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
    return end.ec == std::errc{} ? number : 0;
}

}  // namespace brimley::store::dialect
