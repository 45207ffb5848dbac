#include "printing/clean_text.h"

#include <cstdint>

namespace brimley::printing {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

int following_bytes(unsigned char lead) {
    if (lead < 0x80) return 0;
    if (lead >= 0xC2 && lead < 0xE0) return 1;
    if (lead >= 0xE0 && lead < 0xF0) return 2;
    if (lead >= 0xF0 && lead < 0xF5) return 3;
    return -1;
}

// Neither half of a pair nor one of the codes that never are characters.
bool is_character(std::uint32_t code) {
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    const bool never = (code & 0xFFFE) == 0xFFFE || (code >= 0xFDD0 && code <= 0xFDEF);
    return !surrogate && !never && code <= 0x10FFFF;
}

// How many bytes the character at the start of the text has; 0 when it is none.
std::size_t character_length(std::string_view text, std::uint32_t& character) {
    const auto lead = static_cast<unsigned char>(text[0]);
    const int following = following_bytes(lead);
    if (following < 0 || text.size() <= static_cast<std::size_t>(following)) return 0;
    character = following == 0 ? lead : lead & (0x3FU >> following);
    for (int i = 1; i <= following; ++i) {
        const auto byte = static_cast<unsigned char>(text[static_cast<std::size_t>(i)]);
        if ((byte & 0xC0) != 0x80) return 0;
        character = character << 6 | (byte & 0x3FU);
    }
    const bool overlong = (following == 2 && character < 0x800) || (following == 3 && character < 0x10000);
    return overlong || !is_character(character) ? 0 : static_cast<std::size_t>(following) + 1;
}

bool ends_a_line(std::uint32_t character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0) || character == 0x2028 ||
           character == 0x2029;
}

}  // namespace

std::string clean_text(std::string_view text, std::size_t most) {
    std::string clean;
    while (!text.empty() && clean.size() < most) {
        std::uint32_t character = 0;
        const std::size_t length = character_length(text, character);
        if (length == 0)
            clean += kReplacement;
        else if (ends_a_line(character))
            clean += ' ';
        else
            clean += text.substr(0, length);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    if (!text.empty()) clean += kEllipsis;
    return clean;
}

}  // namespace brimley::printing
