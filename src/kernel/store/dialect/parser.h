// Recursive descent over the tokens of a query text. Everything that is not of the dialect, trailing text
// included, is ErrorKind::syntax with the place and the offending word.
#pragma once

#include <string_view>

#include "kernel/store/dialect/syntax.h"

namespace brimley::store::dialect {

[[nodiscard]] Select parse_select(std::string_view query);
// UPDATE or DELETE.
[[nodiscard]] Change parse_change(std::string_view statement);
// What follows a WHERE: the criteria of FindFirst.
[[nodiscard]] ExpressionPtr parse_criteria(std::string_view criteria);

}  // namespace brimley::store::dialect
