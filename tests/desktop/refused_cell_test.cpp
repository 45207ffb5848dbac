// A cell whose new text the form refuses: the user stays in it, with the edit cancelled. Moving on would let
// the refused amount become a payment in full at the next visit.
#include <gmock/gmock.h>

#include "desktop/live_desk.h"

namespace brimley::testing {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RefusedCell : public LiveDesk {
  protected:
    std::string here() {
        const QModelIndex at = lines().currentIndex();
        return std::to_string(at.row()) + " " +
               lines().grid().columns.at(static_cast<std::size_t>(at.column())).caption;
    }
    std::string cell(int row, const char* caption) { return lines().grid().cell(row, caption); }
    // The editor of the cell with the text in it, not left yet.
    void type_over(int row, const char* caption, const QString& text) {
        go_to_cell(row, caption);
        key(Qt::Key_F2);
        qobject_cast<QLineEdit*>(QApplication::focusWidget())->selectAll();
        keys(text);
    }
    void leave_by(Qt::Key last, Qt::KeyboardModifiers modifiers = {}) {
        key(last, modifiers);
        QApplication::setActiveWindow(&window());  // a box that was closed may have taken it away
        window().settle();
    }
    void click_cell(int row, const char* caption) {
        const QModelIndex at = lines().model()->index(row, lines().grid().get_column(caption));
        lines().scrollTo(at);
        QTest::mouseClick(lines().viewport(), Qt::LeftButton, {}, lines().visualRect(at).center());
        QApplication::setActiveWindow(&window());
        QApplication::processEvents();
        window().settle();
    }
    std::vector<std::string> take_boxes() { return std::exchange(boxes, {}); }
};

// --- on the payment form ---
class RefusedPayment : public RefusedCell {
  protected:
    void SetUp() override {
        LiveDesk::SetUp();
        show_invoice();
        enter_invoice();
        type_cell(1, "purchase account", "5000");
        type_cell(1, "gross amount", "100.00");
        trigger(101);
        ap.showform_APform_payment();
        trigger(105);
        go_to("cmbvendor");
        keys("V1001");
        key(Qt::Key_Tab);
        boxes.clear();
    }
};

TEST_F(RefusedPayment, EnterAndTabStayInTheCellWhichIsEmptied) {
    for (const Qt::Key last : {Qt::Key_Return, Qt::Key_Tab, Qt::Key_Backtab}) {
        type_over(0, "pay amount", "-5");
        leave_by(last);
        EXPECT_THAT(take_boxes(), ElementsAre("pay amount is invalid."));
        EXPECT_EQ(here(), "0 pay amount");
        EXPECT_EQ(cell(0, "pay amount"), "");
        EXPECT_TRUE(lines().hasFocus());
    }
}

TEST_F(RefusedPayment, StayingFillsInNothing) {
    type_over(0, "pay amount", "-5");
    leave_by(Qt::Key_Return);
    keys("30");
    leave_by(Qt::Key_Return);
    EXPECT_EQ(cell(0, "pay amount"), "30.00");
    EXPECT_EQ(here(), "0 discount taken");
}

TEST_F(RefusedPayment, NextEnterMovesOn) {
    type_over(0, "pay amount", "-5");
    leave_by(Qt::Key_Return);
    leave_by(Qt::Key_Return);
    EXPECT_EQ(here(), "0 discount taken");
    EXPECT_EQ(cell(0, "pay amount"), "");
}

TEST_F(RefusedPayment, ClickOnAnotherCellStays) {
    type_over(0, "pay amount", "-5");
    click_cell(1, "pay amount");
    EXPECT_THAT(take_boxes(), ElementsAre("pay amount is invalid."));
    EXPECT_EQ(here(), "0 pay amount");
    EXPECT_EQ(cell(1, "pay amount"), "");
    click_cell(1, "pay amount");
    EXPECT_EQ(here(), "1 pay amount");
    EXPECT_EQ(cell(1, "pay amount"), "98.00");
}

TEST_F(RefusedPayment, ClickIntoAFieldComesBackToTheCell) {
    type_over(0, "pay amount", "-5");
    QTest::mouseClick(&field("txtremark"), Qt::LeftButton);
    QApplication::setActiveWindow(&window());
    QApplication::processEvents();
    EXPECT_THAT(take_boxes(), ElementsAre("pay amount is invalid."));
    EXPECT_EQ(focus(), "dbgrid1");
    EXPECT_EQ(here(), "0 pay amount");
    EXPECT_EQ(cell(0, "pay amount"), "");
}

TEST_F(RefusedPayment, CommandGivenMeanwhileIsNotPressed) {
    type_over(0, "pay amount", "-5");
    trigger(101);
    EXPECT_THAT(take_boxes(), ElementsAre("pay amount is invalid."));
    EXPECT_EQ(window().mode_shown(), "New");
    EXPECT_EQ(here(), "0 pay amount");
    trigger(101);
    EXPECT_THAT(boxes, Not(IsEmpty()));
}

TEST_F(RefusedPayment, OtherAmountsKeepTheirText) {
    type_over(0, "discount taken", "3");
    leave_by(Qt::Key_Return);
    type_over(0, "discount taken", "x");
    leave_by(Qt::Key_Return);
    EXPECT_THAT(take_boxes(), ElementsAre("discount taken is invalid"));
    EXPECT_EQ(here(), "0 discount taken");
    EXPECT_EQ(cell(0, "discount taken"), "3.00");
}

// --- on the invoice form ---
class RefusedLine : public RefusedCell {
  protected:
    void SetUp() override {
        LiveDesk::SetUp();
        show_invoice();
        enter_invoice();
    }
};

TEST_F(RefusedLine, AmountOfLettersStaysInItsCell) {
    type_over(0, "gross amount", "abc");
    leave_by(Qt::Key_Return);
    EXPECT_THAT(take_boxes(), ElementsAre("please input numeric data"));
    EXPECT_EQ(here(), "0 gross amount");
    EXPECT_EQ(cell(0, "gross amount"), "100.00");
}

TEST_F(RefusedLine, UnknownTaxCodeStaysInItsCell) {
    type_over(0, "tax code", "zzz");
    leave_by(Qt::Key_Tab);
    EXPECT_THAT(take_boxes(), ElementsAre("Invalid tax code"));
    EXPECT_EQ(here(), "0 tax code");
    leave_by(Qt::Key_Tab);
    EXPECT_EQ(here(), "0 purchase account");
}

TEST_F(RefusedLine, SaveGivenMeanwhileIsNotPressed) {
    type_over(0, "gross amount", "abc");
    key(Qt::Key_S, Qt::ControlModifier);
    EXPECT_THAT(take_boxes(), ElementsAre("please input numeric data"));
    EXPECT_EQ(window().mode_shown(), "New");
    trigger(101);
    EXPECT_EQ(window().mode_shown(), "Read");
}

TEST_F(RefusedLine, RefusedTaxStaysInItsCellOfThePanel) {
    trigger(131);
    auto& panel = dynamic_cast<desktop::GridView&>(field("grid_tax"));
    const int column = panel.grid().get_column("tax amount");
    QApplication::setActiveWindow(&window());
    panel.setFocus(Qt::OtherFocusReason);
    panel.setCurrentIndex(panel.model()->index(0, column));
    key(Qt::Key_F2);
    keys("abc");
    leave_by(Qt::Key_Return);
    EXPECT_THAT(take_boxes(), ElementsAre("please input numeric data"));
    EXPECT_EQ(panel.currentIndex(), panel.model()->index(0, column));
}

}  // namespace brimley::testing
