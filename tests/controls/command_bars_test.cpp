#include "controls/command_bars.h"

#include <gtest/gtest.h>

namespace brimley::testing {

class Commands : public ::testing::Test {
  protected:
    void SetUp() override {
        bars.add({105, "&New", "", "", {"File", "Standard"}, 'N'});
        bars.add({106, "&Edit", "", "", {"File"}});
        bars.on_shown_change = [&] { ++heard; };
    }

    controls::CommandBars bars;
    int heard = 0;
};

TEST_F(Commands, CommandIsFoundByItsId) {
    ASSERT_NE(bars.find(105), nullptr);
    EXPECT_EQ(bars.find(105)->caption, "&New");
    EXPECT_EQ(bars.find(105)->ctrl_key, 'N');
    EXPECT_TRUE(bars.find(105)->enabled);
    EXPECT_EQ(bars.find(999), nullptr);
    EXPECT_EQ(bars.commands().size(), 2U);
}

TEST_F(Commands, PressedStateBelongsToItsCommand) {
    bars.set_pressed(105, true);
    EXPECT_TRUE(bars.pressed(105));
    EXPECT_FALSE(bars.pressed(106));
}

TEST_F(Commands, CommandThatTheFormLacksIsIgnored) {
    bars.set_pressed(999, true);
    bars.set_enabled(999, false);
    EXPECT_FALSE(bars.pressed(999));
    EXPECT_EQ(heard, 0);
}

TEST_F(Commands, ObserverHearsOfChangesOnly) {
    bars.set_pressed(105, false);
    bars.set_enabled(105, true);
    EXPECT_EQ(heard, 0);
    bars.set_pressed(105, true);
    bars.set_enabled(105, false);
    EXPECT_EQ(heard, 2);
}

}  // namespace brimley::testing
