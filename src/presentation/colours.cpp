#include "presentation/colours.h"

#include <fmt/format.h>

#include <algorithm>

namespace brimley::presentation {

namespace {

int hex_digit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return 0;
}

}  // namespace

std::optional<controls::Colour> colour_named(std::string_view name) {
    const auto& colours = named_colours();
    const auto found = std::find_if(colours.begin(), colours.end(),
                                    [&](const NamedColour& colour) { return colour.name == name; });
    if (found == colours.end()) return std::nullopt;
    return HTMLToRGB(found->code);
}

int Hex2Int(std::string_view two_digits) {
    const std::string digits = controls::upper_case(two_digits);
    const int first = digits.empty() ? 0 : hex_digit(digits[0]);
    const int second = digits.size() < 2 ? 0 : hex_digit(digits[1]);
    return first * 16 + second;
}

controls::Colour HTMLToRGB(std::string_view code) {
    const auto part = [&](std::size_t from) {
        return static_cast<std::uint32_t>(from < code.size() ? Hex2Int(code.substr(from, 2)) : 0);
    };
    return controls::rgb(part(0), part(2), part(4));
}

std::string colour_code(controls::Colour colour) {
    return fmt::format("{:02x}{:02x}{:02x}", colour & 0xff, colour >> 8 & 0xff, colour >> 16 & 0xff);
}

Palette brimley_palette() {
    const auto named = [](std::string_view name) { return colour_named(name).value_or(controls::kWhite); };
    return {0xffc0c0,
            named("lavender"),
            controls::rgb(220, 220, 255),
            named("gray94"),
            controls::rgb(230, 230, 245),
            named("gray75"),
            named("lightcyan3"),
            named("navy"),
            controls::rgb(235, 220, 255),
            controls::rgb(215, 210, 235)};
}

}  // namespace brimley::presentation
