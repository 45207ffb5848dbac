// How items and states print.
#pragma once

#include <array>

#include "controls/combo_box.h"

namespace brimley::console {

// "locked" or "open", "visible" or "hidden", "enabled" or "disabled".
using StateWords = std::array<const char*, 3>;
[[nodiscard]] StateWords state_words(const controls::Control& control);

// The columns of a combo's item, parted by ";".
[[nodiscard]] std::string item_text(const controls::ComboBox::Row& item);

}  // namespace brimley::console
