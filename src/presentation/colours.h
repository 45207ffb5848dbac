// Named colours, and colour numbers from their codes.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "controls/control.h"

namespace brimley::presentation {

inline constexpr std::size_t kNamedColours = 510;

struct NamedColour {
    std::string_view code;  // six hexadecimal digits in lower case: red, green, blue
    std::string_view name;
};

// In the order in which the colour picker lists them.
[[nodiscard]] const std::array<NamedColour, kNamedColours>& named_colours();
// The colour number of the first colour of this name.
[[nodiscard]] std::optional<controls::Colour> colour_named(std::string_view name);

// Two hexadecimal digits as 0 to 255, in either case; a bad digit counts 0.
[[nodiscard]] int Hex2Int(std::string_view two_digits);
// Six hexadecimal digits, red first, as a colour number with red in the low byte.
[[nodiscard]] controls::Colour HTMLToRGB(std::string_view code);

// The code of a colour number, as HTMLToRGB reads it.
[[nodiscard]] std::string colour_code(controls::Colour colour);

// The module's colour slots, in the order in which set_BRIMLEY_COLOR fills them. The same for every theme.
using Palette = std::array<controls::Colour, 10>;
[[nodiscard]] Palette brimley_palette();

// What single slots paint.
inline constexpr std::size_t kHeaderSlot = 7;  // white captions can be read on it
inline constexpr std::size_t kEvenRowSlot = 2;

}  // namespace brimley::presentation
