// VAL of the dialect.
#pragma once

#include <string_view>

namespace brimley::store::dialect {

// The number that a text begins with: blanks, a sign, digits, decimals. 0 when there is none.
[[nodiscard]] double leading_number(std::string_view text);

}  // namespace brimley::store::dialect
