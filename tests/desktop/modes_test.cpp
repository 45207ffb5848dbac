// New, Edit and Void in the window, with their boxes.
#include <QCheckBox>

#include "desktop/live_desk.h"

namespace brimley::testing {

using Boxes = std::vector<std::string>;

class Modes : public LiveDesk {
  protected:
    void SetUp() override {
        LiveDesk::SetUp();
        show_invoice();
    }
    void save_invoice() {
        enter_invoice();
        trigger(101);
        boxes.clear();
    }
};

TEST_F(Modes, BandAndFieldsTellReadNewAndEdit) {
    save_invoice();
    EXPECT_EQ(window().mode_shown(), "Read");
    EXPECT_TRUE(line("txtremark").isReadOnly());
    EXPECT_FALSE(line("txtdocno").isReadOnly());
    trigger(106);
    EXPECT_EQ(window().mode_shown(), "Edit");
    EXPECT_FALSE(line("txtremark").isReadOnly());
    EXPECT_TRUE(line("txtdocno").isReadOnly());
    EXPECT_EQ(line("txtdocno").palette().color(QPalette::Base), QColor(120, 120, 220));
    trigger(106);
    trigger(105);
    EXPECT_EQ(window().mode_shown(), "New");
    EXPECT_EQ(line("txtdocno").text(), "** New **");
}

TEST_F(Modes, NewPressedAgainWithDataAsksAndDropsTheEntryOnNo) {
    enter_invoice();
    answers = {false};
    trigger(105);
    EXPECT_EQ(boxes, Boxes{"Do you want to save new entry?"});
    EXPECT_EQ(window().mode_shown(), "Read");
    EXPECT_EQ(company.list("SELECT docno FROM AP_header_table"), "");
}

TEST_F(Modes, NewPressedAgainSavesOnYes) {
    enter_invoice();
    answers = {true};
    trigger(105);
    EXPECT_EQ(boxes, (Boxes{"Do you want to save new entry?", "Add new Invoice complete"}));
    EXPECT_EQ(company.list("SELECT docno FROM AP_header_table"), "IP-26-00001");
}

TEST_F(Modes, EditPressedAgainAsksAndSaves) {
    save_invoice();
    trigger(106);
    go_to("txtremark");
    keys("checked");
    answers = {true};
    trigger(106);
    EXPECT_EQ(boxes, (Boxes{"Do you want to save editing?", "Update complete"}));
    EXPECT_EQ(company.list("SELECT remark FROM AP_header_table"), "checked");
}

TEST_F(Modes, EditPressedAgainShowsTheStoredDocumentOnNo) {
    save_invoice();
    trigger(106);
    go_to("txtremark");
    keys("checked");
    answers = {false};
    trigger(106);
    EXPECT_EQ(line("txtremark").text(), "");
    EXPECT_EQ(company.list("SELECT remark FROM AP_header_table"), "");
}

TEST_F(Modes, VoidAsksWithItsTitleAndTellsThatItIsDone) {
    save_invoice();
    answers = {true};
    trigger(1008);
    EXPECT_EQ(boxes,
              (Boxes{"Void invoice: Are you sure to void the invoice?", "Invoice IP-26-00001 is void."}));
    EXPECT_TRUE(dynamic_cast<QCheckBox&>(field("chkvoid")).isChecked());
    boxes.clear();
    trigger(106);
    EXPECT_EQ(boxes, Boxes{"IP-26-00001 was void."});
}

TEST_F(Modes, YesIsWhatEnterAnswers) {
    enter_invoice();
    trigger(105);
    EXPECT_EQ(QString::fromStdString(default_button).remove('&'), "Yes");
}

TEST_F(Modes, WhoMayNotEnterIsToldSo) {
    EXPECT_EQ(window().findChild<QLabel*>("look_only"), nullptr);
    company.db().Execute("UPDATE User_right_table SET [Update] = FALSE WHERE form = 'APform_invoice'");
    const auto* const told = show_invoice().findChild<QLabel*>("look_only");
    ASSERT_NE(told, nullptr);
    EXPECT_EQ(told->text(), "You may look, not enter.");
}

TEST_F(Modes, NoIsWhatEnterAnswersBeforeAVoid) {
    save_invoice();
    answers = {false};
    trigger(1008);
    EXPECT_EQ(QString::fromStdString(default_button).remove('&'), "No");
}

TEST_F(Modes, NewPutsTheUserIntoTheFirstFieldThatTakesTyping) {
    go_to("dbgrid1");
    trigger(105);
    EXPECT_EQ(focus(), "cmbdoctype");
}

TEST_F(Modes, EditLeavesTheUserInTheGridAndTakesHimOutOfALockedField) {
    save_invoice();
    go_to("dbgrid1");
    trigger(106);
    EXPECT_EQ(focus(), "dbgrid1");
    answers = {false};
    trigger(106);
    go_to("txtdocno");
    trigger(106);
    EXPECT_EQ(focus(), "txtinvno");
}

TEST_F(Modes, ClosingTheWindowPressesExitWithoutAQuestion) {
    enter_invoice();
    window().close();
    EXPECT_TRUE(boxes.empty());
    EXPECT_TRUE(desk.windows().empty());
    EXPECT_EQ(requests, std::vector<std::string>{"Next App |  | "});
}

TEST_F(Modes, TypingThatIsNotHandedOverYetCountsForTheCommand) {
    enter_invoice();
    go_to("txtinvno");
    keys("A-1");
    key(Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(company.list("SELECT invoice_no FROM AP_header_table"), "A-1");
}

}  // namespace brimley::testing
