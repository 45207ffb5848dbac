#include "controls/date_range.h"

namespace brimley::controls {

Refusal DateRange::type(const std::string& from, const std::string& to) {
    if (const Refusal why = refusal(); why != Refusal::none) return why;
    const DaySpan before = span_;
    set({texts_.read(from).value_or(before.from), texts_.read(to).value_or(before.to)});
    if (on_change && span_ != before) on_change();
    acted({.kind = Act::Kind::type_range, .text = from, .other_text = to});
    return Refusal::none;
}

}  // namespace brimley::controls
