// Texts of the company as they may stand in a terminal, on one line.
//
// What is stored was typed, imported or written by somebody else, and a terminal obeys control characters:
// they could colour a line, overwrite the one before it, or change its order.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace brimley::kernel {

// Line breaks as \n and tabs as \t; other control characters, of one byte or of two, and bytes that are no
// UTF-8 as \xNN; characters that turn the direction of what follows as \uNNNN. Everything else stays as it
// is, a backslash too.
[[nodiscard]] std::string visible_text(std::string_view text);

// The same for the character at `at`, added to `into`. Returns where the next one begins.
std::size_t append_visible(std::string& into, std::string_view text, std::size_t at);

}  // namespace brimley::kernel
