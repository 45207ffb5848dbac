// A value as it may stand inside a one-line message.
#pragma once

#include <string>
#include <string_view>

namespace brimley::company {

// Control characters as \n, \t or \xNN, and no more than some 60 bytes of a long text, cut between
// characters.
[[nodiscard]] std::string shown_text(std::string_view text);

}  // namespace brimley::company
