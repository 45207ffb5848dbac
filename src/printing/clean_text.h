// Texts from anywhere, made fit for one line on paper.
#pragma once

#include <string>
#include <string_view>

namespace brimley::printing {

// The text as UTF-8 without control characters and line ends: bytes that are none become U+FFFD, as do
// codes that never are characters; control characters become blanks. Of a text of more than `most` bytes the
// beginning, followed by an ellipsis.
[[nodiscard]] std::string clean_text(std::string_view text, std::size_t most);

inline constexpr std::string_view kEllipsis = "\xE2\x80\xA6";

}  // namespace brimley::printing
