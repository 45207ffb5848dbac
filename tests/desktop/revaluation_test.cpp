// The window of the revaluation: its pages, and the lists below the cells of its selection.
#include <QTabBar>
#include <QTreeView>

#include "desktop/live_desk.h"
#include "desktop/tabs_view.h"
#include "revaluation/apform_revalue.h"

namespace brimley::testing {

using desktop::GridView;
using desktop::ListPopup;
using desktop::TabsView;

class RevaluationWindow : public LiveDesk {
  protected:
    void SetUp() override {
        LiveDesk::SetUp();
        ap.showform_APform_revalue();
        QApplication::setActiveWindow(desk.windows().back());
    }
    [[nodiscard]] revaluation::APform_revalue& form() const { return *ap.frm_revalue; }
    [[nodiscard]] TabsView& tabs() { return *window().findChild<TabsView*>("TabControl"); }
    // Of the first row, in New.
    [[nodiscard]] QLineEdit* vendor_editor() {
        window().press(105);
        GridView& selection = grid("dbgridcmd");
        const int column = form().dbgridcmd.get_column("vendor no");
        selection.setFocus();
        selection.setCurrentIndex(selection.model()->index(0, column));
        QTest::keyClick(&selection, Qt::Key_F2);
        return qobject_cast<QLineEdit*>(selection.indexWidget(selection.currentIndex()));
    }
    [[nodiscard]] GridView& grid(const char* name) { return *window().findChild<GridView*>(name); }
};

TEST_F(RevaluationWindow, ResultAndLedgerStandOnTwoPages) {
    ASSERT_EQ(tabs().count(), 2);
    EXPECT_EQ(tabs().tabText(0), "Result");
    EXPECT_EQ(tabs().tabText(1), "Account");
    EXPECT_TRUE(grid("dbgrid1").isVisible());
    EXPECT_FALSE(grid("dbgrid2").isVisible());
    EXPECT_TRUE(grid("dbgridcmd").isVisible());
}

TEST_F(RevaluationWindow, ClickOnATabBringsItsPageToTheFront) {
    QTest::mouseClick(tabs().tabBar(), Qt::LeftButton, {}, tabs().tabBar()->tabRect(1).center());
    EXPECT_EQ(form().TabControl.page(), 1);
    EXPECT_TRUE(grid("dbgrid2").isVisible());
    EXPECT_FALSE(grid("dbgrid1").isVisible());
}

TEST_F(RevaluationWindow, KeysOfTheTabsChooseAPage) {
    tabs().tabBar()->setFocus();
    QTest::keyClick(tabs().tabBar(), Qt::Key_Right);
    EXPECT_EQ(form().TabControl.page(), 1);
    QTest::keyClick(tabs().tabBar(), Qt::Key_Left);
    EXPECT_EQ(form().TabControl.page(), 0);
    EXPECT_TRUE(grid("dbgrid1").isVisible());
}

TEST_F(RevaluationWindow, PageThatTheModelChoosesIsShown) {
    EXPECT_EQ(form().TabControl.choose(1), controls::Refusal::none);
    EXPECT_EQ(tabs().currentIndex(), 1);
    form().TabControl.set_enabled(false);
    EXPECT_EQ(form().TabControl.choose(0), controls::Refusal::disabled);
    form().TabControl.set_visible(false);
    EXPECT_EQ(form().TabControl.choose(0), controls::Refusal::hidden);
    EXPECT_EQ(form().TabControl.page(), 1);
    EXPECT_FALSE(tabs().isVisible());
}

// The list is by name; what is picked is the number, and its name comes with it.
TEST_F(RevaluationWindow, VendorPickedByItsNameIsEnteredByItsNumber) {
    QLineEdit* const editor = vendor_editor();
    ASSERT_NE(editor, nullptr);
    QTest::keyClick(editor, Qt::Key_F4);
    auto* const popup = editor->findChild<ListPopup*>();
    ASSERT_NE(popup, nullptr);
    EXPECT_EQ(popup->list().model()->index(0, 0).data().toString(), "Acciaio Brera S.p.A.");
    popup->list().setCurrentIndex(popup->list().model()->index(0, 0));
    QTest::keyClick(&popup->list(), Qt::Key_Return);
    EXPECT_EQ(form().dbgridcmd.cell(0, "vendor no"), "V2007");
    EXPECT_EQ(form().dbgridcmd.cell(0, "vendor name"), "Acciaio Brera S.p.A.");
}

// What is typed is completed by numbers, not by the names beside them, whose order it follows.
TEST_F(RevaluationWindow, VendorThatIsTypedIsCompletedByItsNumber) {
    QLineEdit* const editor = vendor_editor();
    ASSERT_NE(editor, nullptr);
    QTest::keyClicks(editor, "V300");
    EXPECT_EQ(editor->text(), "V3008");
    EXPECT_EQ(editor->selectedText(), "8");
    QTest::keyClick(editor, Qt::Key_Return);
    EXPECT_EQ(form().dbgridcmd.cell(0, "vendor name"), "Andaman Spice Traders");
}

}  // namespace brimley::testing
