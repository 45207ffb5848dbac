// Marks beside fields and cells, and the cursor after a message, as the window shows them.
#include <gtest/gtest.h>

#include <QTest>

#include "desktop/grid_view.h"
#include "desktop/live_desk.h"
#include "support/sample_host.h"

namespace brimley::testing {

class MarksInWindow : public LiveDesk {
  protected:
    void SetUp() override {
        LiveDesk::SetUp();
        show_invoice();
        trigger(105);
        EXPECT_EQ(form().cmbdoctype.type("Invoice"), controls::Refusal::none);
        window().settle();
    }
    invoices::APform_invoice& form() { return *ap.frm_invoice; }
    std::string said_of(const char* name) {
        window().settle();
        return field(name).toolTip().toStdString();
    }
    QVariant of_cell(int row, const char* caption, int role) {
        window().settle();
        auto& table = lines().table();
        return table.data(table.index(row, form().dbgrid1.get_column(caption)), role);
    }
};

TEST_F(MarksInWindow, FieldIsMarkedAsSoonAsItIsLeft) {
    go_to("cmbvendor");
    keys("V9");
    EXPECT_EQ(said_of("cmbvendor"), "");
    key(Qt::Key_Tab);
    EXPECT_EQ(said_of("cmbvendor"), "There is no vendor V9");
    EXPECT_EQ(form().cmbvendor.type("V1001"), controls::Refusal::none);
    EXPECT_EQ(said_of("cmbvendor"), "");
}

TEST_F(MarksInWindow, MarkCanBeSeen) {
    const QImage before = field("cmbvendor").grab().toImage();
    EXPECT_EQ(form().cmbvendor.type("V9"), controls::Refusal::none);
    EXPECT_EQ(said_of("cmbvendor"), "There is no vendor V9");
    QImage after = field("cmbvendor").grab().toImage();
    EXPECT_EQ(after.pixelColor(after.width() / 2, after.height() - 3),
              desktop::mark_colour(field("cmbvendor").palette()));
    EXPECT_NE(before.pixelColor(before.width() / 2, before.height() - 3),
              desktop::mark_colour(field("cmbvendor").palette()));
}

TEST_F(MarksInWindow, CellIsMarkedWithItsReason) {
    edit_line_cell(form(), 0, "purchase account", "9999");
    edit_line_cell(form(), 0, "gross amount", "10.00");
    EXPECT_EQ(of_cell(0, "purchase account", Qt::ToolTipRole).toString().toStdString(),
              "There is no account 9999");
    const auto back = of_cell(0, "purchase account", Qt::BackgroundRole).value<QColor>();
    EXPECT_GT(back.red(), back.blue() + 30);
    EXPECT_FALSE(of_cell(0, "gross amount", Qt::ToolTipRole).isValid());
    edit_line_cell(form(), 0, "purchase account", "5000");
    EXPECT_FALSE(of_cell(0, "purchase account", Qt::ToolTipRole).isValid());
}

TEST_F(MarksInWindow, CursorStandsInTheFieldThatTheMessageSpeaksOf) {
    edit_line_cell(form(), 0, "purchase account", "5000");
    edit_line_cell(form(), 0, "gross amount", "10.00");
    EXPECT_EQ(form().cmbvendor.type("V1001"), controls::Refusal::none);
    EXPECT_EQ(form().cmbperiod.type(""), controls::Refusal::none);
    go_to("txtremark");
    trigger(101);
    EXPECT_EQ(window().focusWidget(), &field("cmbperiod"));
    EXPECT_EQ(form().cmbperiod.type("3"), controls::Refusal::none);
    EXPECT_EQ(form().cmbterm.type(""), controls::Refusal::none);
    trigger(101);
    EXPECT_EQ(window().focusWidget(), &field("cmbterm"));
}

TEST_F(MarksInWindow, CursorStandsInTheCellThatTheMessageSpeaksOf) {
    EXPECT_EQ(form().cmbvendor.type("V1001"), controls::Refusal::none);
    trigger(101);  // "No data input"
    EXPECT_EQ(window().focusWidget(), &lines());
    EXPECT_EQ(lines().currentIndex().row(), 0);
    EXPECT_EQ(lines().currentIndex().column(), form().dbgrid1.get_column("gross amount"));
}

}  // namespace brimley::testing
