#include "kernel/visible_text.h"

#include <fmt/format.h>

#include <cstdint>

namespace brimley::kernel {

namespace {

constexpr std::uint32_t kNone = 0xFFFFFFFF;

struct Character {
    std::uint32_t code = kNone;  // kNone: the byte is no UTF-8
    std::size_t length = 1;
};

std::uint32_t byte_at(std::string_view text, std::size_t at) {
    return at < text.size() ? static_cast<unsigned char>(text[at]) : 0;
}

// How long a character with this first byte is; 0: no character begins with it.
std::size_t length_of(std::uint32_t first) {
    if (first < 0x80) return 1;
    if (first >= 0xC2 && first <= 0xDF) return 2;
    if (first >= 0xE0 && first <= 0xEF) return 3;
    return first >= 0xF0 && first <= 0xF4 ? 4 : 0;
}

// Longer than it needs to be, half of a pair, or beyond the last one.
bool is_forbidden(std::uint32_t code, std::size_t length) {
    constexpr std::uint32_t kFirstOfLength[] = {0, 0, 0x80, 0x800, 0x10000};
    return code < kFirstOfLength[length] || (code >= 0xD800 && code <= 0xDFFF) || code > 0x10FFFF;
}

Character character_at(std::string_view text, std::size_t at) {
    const std::uint32_t first = byte_at(text, at);
    const std::size_t length = length_of(first);
    if (length == 0) return {};
    constexpr std::uint32_t kBitsOfFirst[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    std::uint32_t code = first & kBitsOfFirst[length];
    for (std::size_t i = 1; i < length; ++i) {
        const std::uint32_t byte = byte_at(text, at + i);
        if ((byte & 0xC0) != 0x80) return {};
        code = code << 6 | (byte & 0x3F);
    }
    return is_forbidden(code, length) ? Character{} : Character{code, length};
}

bool is_control(std::uint32_t code) { return code < 0x20 || (code >= 0x7F && code < 0xA0); }

bool turns_direction(std::uint32_t code) {
    return (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

}  // namespace

std::size_t append_visible(std::string& into, std::string_view text, std::size_t at) {
    const Character character = character_at(text, at);
    if (character.code == '\n')
        into += "\\n";
    else if (character.code == '\t')
        into += "\\t";
    else if (character.code == kNone)
        into += fmt::format("\\x{:02x}", byte_at(text, at));
    else if (is_control(character.code))
        into += fmt::format("\\x{:02x}", character.code);
    else if (turns_direction(character.code))
        into += fmt::format("\\u{:04x}", character.code);
    else
        into += text.substr(at, character.length);
    return at + character.length;
}

std::string visible_text(std::string_view text) {
    std::string visible;
    visible.reserve(text.size());
    for (std::size_t at = 0; at < text.size();)
        at = append_visible(visible, text, at);
    return visible;
}

}  // namespace brimley::kernel
