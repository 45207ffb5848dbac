// A value as it may stand inside a one-line message.
#pragma once

#include <string>
#include <string_view>

namespace brimley::company {

// Control characters as by kernel::visible_text, and not much more than `longest` bytes of a long text, cut
// between characters.
[[nodiscard]] std::string shown_text(std::string_view text, std::size_t longest = 60);

}  // namespace brimley::company
