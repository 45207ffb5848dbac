// The days of a date range as its user writes them.
#pragma once

#include <string>

#include "controls/date_range.h"
#include "kernel/store/value.h"

namespace brimley::presentation {

// In the user's date format, such as dd/mm/yyyy.
[[nodiscard]] controls::DayTexts user_day_texts(std::string date_format);
// The twelve months that end with the day of this moment: what a date range shows before anybody has typed
// into it.
[[nodiscard]] controls::DaySpan year_up_to(store::DateTime moment);

}  // namespace brimley::presentation
