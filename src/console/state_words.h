// How items and states print.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "controls/combo_box.h"

namespace brimley::console {

// What the word for the background begins with.
inline constexpr std::string_view kBackWord = "back=";

// "locked" or "open", "visible" or "hidden", "enabled" or "disabled", and the background as "back=80000018".
[[nodiscard]] std::vector<std::string> state_words(const controls::Control& control);
// Whether `state_words` may have this word.
[[nodiscard]] bool is_state_word(const std::string& word);

// The columns of a combo's item, separated by ";".
[[nodiscard]] std::string item_text(const controls::ComboBox::Row& item);

}  // namespace brimley::console
