// What a field accepts: the one place where a value is fitted to the field that is to hold it.
#pragma once

#include "kernel/store/catalog.h"
#include "kernel/store/value.h"

namespace brimley::store {

// The value as a field of this type holds it. The result is null, or of the one kind that belongs to the
// type: text, number (integer fields: a whole one), flag, date. Throws ErrorKind::conversion naming the
// field.
//
//   text       any value by its text()
//   number     number, flag as 0 or 1, text that is a number, empty text as null
//   integer    as number, whole
//   yes/no     flag, number (0 is FALSE), a text that says yes or no; null is FALSE where there is no null
//   date       date without its time of day, and the text "20260115"
//   datetime   the same with the time of day
[[nodiscard]] Value convert_for_field(const Value& value, const Field& field);
// The same into a value that is there already, whose memory is used again. Unchanged when it throws.
void convert_for_field(const Value& value, const Field& field, Value& into);

// "20260115" as that day; empty for any other text.
[[nodiscard]] std::optional<DateTime> parse_yyyymmdd(std::string_view text);
// What a text says where a yes/no is wanted: TRUE, YES, -1, 1 or FALSE, NO, 0 in any case; else empty.
[[nodiscard]] std::optional<bool> parse_flag_word(std::string_view text);

}  // namespace brimley::store
