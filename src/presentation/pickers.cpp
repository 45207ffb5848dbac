#include "presentation/pickers.h"

#include <algorithm>

#include "presentation/colours.h"

namespace brimley::presentation {

using controls::ComboBox;
using controls::ItemLook;

void cColorsCombo::Init(ComboBox& combo) {
    combo.set_item_look(ItemLook::colour);
    combo.set_source([] {
        std::vector<ComboBox::Row> colours;
        for (const NamedColour& colour : named_colours())
            colours.push_back({std::string(colour.code), std::string(colour.name)});
        return colours;
    });
}

void cFontsCombo::Init(ComboBox& combo, Enumerate enumerate) {
    combo.set_item_look(ItemLook::font);
    combo.set_source([enumerate = std::move(enumerate)] {
        std::vector<ComboBox::Row> families;
        for (std::string& family : enumerate()) {
            ComboBox::Row item{std::move(family)};
            if (std::find(families.begin(), families.end(), item) == families.end())
                families.push_back(std::move(item));
        }
        return families;
    });
}

}  // namespace brimley::presentation
