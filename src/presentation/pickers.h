// The colour picker and the font picker: a plain combo turned into one.
//
// What is drawn for an item, a swatch or a sample of the face, is the host's; the combo says which of them it
// wants.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "controls/combo_box.h"

namespace brimley::presentation {

// The named colours: code and name, in the order of the table.
class cColorsCombo {
  public:
    static void Init(controls::ComboBox& combo);
};

// The installed fonts, as they are enumerated; a family that comes twice is listed once.
class cFontsCombo {
  public:
    using Enumerate = std::function<std::vector<std::string>()>;

    // `enumerate` is asked when somebody opens the list, and must live as long as the combo.
    static void Init(controls::ComboBox& combo, Enumerate enumerate);
};

}  // namespace brimley::presentation
