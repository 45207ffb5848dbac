#include "controls/control.h"

#include <gtest/gtest.h>

#include "controls/fields.h"

namespace brimley::testing {

using controls::Refusal;

class Controls : public ::testing::Test {
  protected:
    controls::ControlSet set;
    controls::Frame frame{set, "frame_outer"};
    controls::Frame inner{set, "frame_inner"};
    controls::TextField field{set, "txtremark"};
};

TEST_F(Controls, HiddenIsToldBeforeDisabledAndDisabledBeforeLocked) {
    EXPECT_EQ(field.refusal(), Refusal::none);
    field.set_locked(true);
    EXPECT_EQ(field.refusal(), Refusal::locked);
    field.set_enabled(false);
    EXPECT_EQ(field.refusal(), Refusal::disabled);
    field.set_visible(false);
    EXPECT_EQ(field.refusal(), Refusal::hidden);
}

TEST_F(Controls, ControlInAHiddenFrameCannotBeReached) {
    field.lies_in(inner);
    inner.lies_in(frame);
    EXPECT_EQ(field.refusal(), Refusal::none);
    frame.set_visible(false);
    EXPECT_EQ(field.refusal(), Refusal::hidden);
    EXPECT_TRUE(field.visible());
}

TEST_F(Controls, FormFindsAControlByNameInAnyCase) {
    EXPECT_EQ(set.find("TxtRemark"), &field);
    EXPECT_EQ(set.find("txtremar"), nullptr);
    EXPECT_EQ(set.find(""), nullptr);
}

TEST_F(Controls, ControlsStandInTheOrderOfTheirDeclaration) {
    const std::vector<controls::Control*> expected{&frame, &inner, &field};
    EXPECT_EQ(set.all(), expected);
}

TEST_F(Controls, ObserverHearsOfChangesOnly) {
    int heard = 0;
    field.on_shown_change = [&] { ++heard; };
    field.set_locked(false);
    field.set_visible(true);
    field.set("");
    EXPECT_EQ(heard, 0);
    field.set_locked(true);
    field.set_back_colour(controls::kReadOnlyBack);
    field.set_font_name("Arial");
    field.set("text");
    EXPECT_EQ(heard, 4);
    field.set("text");
    EXPECT_EQ(heard, 4);
}

TEST_F(Controls, ColourNumbersHaveRedInTheLowByte) {
    EXPECT_EQ(controls::rgb(1, 2, 3), 0x030201U);
    EXPECT_EQ(controls::rgb(255, 255, 255), controls::kWhite);
}

// --- fields

class Fields : public Controls {
  protected:
    void SetUp() override {
        field.on_change = [&] { ++changes; };
        field.on_enter = [&] { ++enters; };
        box.on_click = [&] { ++clicks; };
        button.on_click = [&] { ++clicks; };
        first.on_click = [&] { ++clicks; };
        second.on_click = [&] { ++clicks; };
        controls::OptionButton::group({&first, &second});
    }

    controls::CheckBox box{set, "chkvoid", "Void"};
    controls::PushButton button{set, "cmdsave", "Save"};
    controls::OptionButton first{set, "opt_all", "All"};
    controls::OptionButton second{set, "opt_hold", "On hold"};
    int changes = 0;
    int enters = 0;
    int clicks = 0;
};

TEST_F(Fields, AssignmentFromCodeFiresNothing) {
    field.set("text");
    box.set(true);
    box.set(2);
    first.choose();
    EXPECT_EQ(changes + enters + clicks, 0);
    EXPECT_EQ(field.text(), "text");
    EXPECT_EQ(box.value(), 2);
    EXPECT_TRUE(first.is_set());
}

TEST_F(Fields, TypingReplacesTheTextAndFiresOnce) {
    field.set("old");
    EXPECT_EQ(field.type("new"), Refusal::none);
    EXPECT_EQ(field.text(), "new");
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(field.press_enter(), Refusal::none);
    EXPECT_EQ(enters, 1);
}

TEST_F(Fields, ActsOnALockedHiddenOrDisabledControlChangeNothing) {
    const auto refused = [&](Refusal why) {
        EXPECT_EQ(field.type("new"), why);
        EXPECT_EQ(field.press_enter(), why);
        EXPECT_EQ(box.click(true), why);
        EXPECT_EQ(first.click(), why);
        EXPECT_EQ(button.click(), why);
    };
    for (controls::Control* control : set.all())
        control->set_locked(true);
    refused(Refusal::locked);
    for (controls::Control* control : set.all())
        control->set_enabled(false);
    refused(Refusal::disabled);
    for (controls::Control* control : set.all())
        control->set_visible(false);
    refused(Refusal::hidden);
    EXPECT_EQ(changes + enters + clicks, 0);
    EXPECT_EQ(field.text(), "");
    EXPECT_EQ(box.value(), 0);
    EXPECT_FALSE(first.is_set());
}

TEST_F(Fields, ClickOnABoxThatIsThereAlreadyDoesNothing) {
    EXPECT_EQ(box.click(false), Refusal::none);
    EXPECT_EQ(clicks, 0);
    EXPECT_EQ(box.click(true), Refusal::none);
    EXPECT_EQ(box.click(true), Refusal::none);
    EXPECT_EQ(clicks, 1);
}

TEST_F(Fields, ButtonRunsEachTimeItIsClicked) {
    EXPECT_EQ(button.click(), Refusal::none);
    EXPECT_EQ(button.click(), Refusal::none);
    EXPECT_EQ(clicks, 2);
    EXPECT_EQ(button.shown(), "Save");
}

TEST_F(Fields, GreyBoxCountsAsSetAndCanBeTicked) {
    box.set(2);
    EXPECT_TRUE(box.is_set());
    EXPECT_EQ(box.shown(), "2");
    EXPECT_EQ(box.click(true), Refusal::none);
    EXPECT_EQ(box.value(), 1);
    EXPECT_EQ(clicks, 1);
}

TEST_F(Fields, ChoosingAnOptionClearsTheOthersOfItsGroup) {
    EXPECT_EQ(first.click(), Refusal::none);
    EXPECT_EQ(second.click(), Refusal::none);
    EXPECT_EQ(second.click(), Refusal::none);
    EXPECT_FALSE(first.is_set());
    EXPECT_TRUE(second.is_set());
    EXPECT_EQ(clicks, 2);
}

TEST_F(Fields, PaneClosedByTheUserIsHiddenWithWhatLiesInIt) {
    controls::Frame pane{set, "frame_tax", "Tax Details Window"};
    box.lies_in(pane);
    EXPECT_EQ(pane.close(), Refusal::none);
    EXPECT_FALSE(pane.visible());
    EXPECT_EQ(box.click(true), Refusal::hidden);
    EXPECT_EQ(pane.close(), Refusal::hidden);
}

TEST_F(Fields, FrameWithoutACaptionCannotBeClosed) {
    controls::Frame status{set, "frame_status"};
    EXPECT_EQ(status.close(), Refusal::locked);
    EXPECT_TRUE(status.visible());
}

}  // namespace brimley::testing
