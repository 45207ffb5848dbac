// The colour and the font picker as models.
#include "presentation/pickers.h"

#include <gtest/gtest.h>

#include "presentation/colours.h"

namespace brimley::testing {

using controls::ComboBox;
using controls::ItemLook;

class Pickers : public ::testing::Test {
  protected:
    controls::ControlSet controls;
    ComboBox combo{controls, "cmb", "0;1000;<;|1;2000;<;"};
};

TEST_F(Pickers, ColoursAreListedByCodeAndNameInTheOrderOfTheTable) {
    presentation::cColorsCombo::Init(combo);
    EXPECT_EQ(combo.item_look(), ItemLook::colour);
    ASSERT_EQ(combo.items().size(), 510U);
    EXPECT_EQ(combo.items().front(), (ComboBox::Row{"000000", "black"}));
    EXPECT_EQ(combo.items().back(), (ComboBox::Row{"ffffff", "white"}));
}

TEST_F(Pickers, ColourThatIsNotInTheTableSelectsNoItem) {
    presentation::cColorsCombo::Init(combo);
    combo.set("123456");
    EXPECT_EQ(combo.list_index(), -1);
    combo.set("8b7e66");
    EXPECT_EQ(combo.chosen(1), "wheat4");
}

TEST_F(Pickers, FontsAreListedOnceInTheOrderOfTheirEnumeration) {
    int asked = 0;
    presentation::cFontsCombo::Init(combo, [&] {
        ++asked;
        return std::vector<std::string>{"Loma", "Arial", "Loma"};
    });
    EXPECT_EQ(asked, 0);
    EXPECT_EQ(combo.item_look(), ItemLook::font);
    EXPECT_EQ(combo.items(), (std::vector<ComboBox::Row>{{"Loma"}, {"Arial"}}));
    EXPECT_EQ(asked, 1);
}

}  // namespace brimley::testing
