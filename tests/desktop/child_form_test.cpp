// A dialog in a pane of the form that it belongs to, in a terminal and in windows.
#include <gmock/gmock.h>

#include <QDockWidget>
#include <QStatusBar>
#include <QToolBar>

#include "desktop/live_desk.h"
#include "desktop/script_hosts.h"

namespace brimley::testing {

using ChildForms = ScriptHosts;

INSTANTIATE_TEST_SUITE_P(Hosts, ChildForms, ::testing::Bool(), name_of_host);

TEST_P(ChildForms, FormStaysCurrentUntilTheDialogIsChosen) {
    EXPECT_EQ(run("press 102"), "");
    EXPECT_EQ(run("show opt_all"), "opt_all = 1\n");
    EXPECT_EQ(fault("show txttop"), "unknown control: txttop");
    run("form Form_of_tests");
    EXPECT_EQ(run("show txttop"), "txttop = 10\n");
    EXPECT_EQ(run("set txttop 12"), "message: top 12\n");
    run("form APreport_of_tests");
    EXPECT_EQ(run("show opt_all"), "opt_all = 1\n");
}

TEST_P(ChildForms, SecondPressOpensNoSecondDialog) {
    run("press 102");
    run("form Form_of_tests");
    run("set txttop 12");
    run("form APreport_of_tests");
    run("press 102");
    run("form Form_of_tests");
    EXPECT_EQ(run("show txttop"), "txttop = 12\n");
    EXPECT_EQ(run("press 102"), "refused: 102 is absent\n");
}

TEST_P(ChildForms, ClosedPaneUnloadsTheDialogAndMayBeOpenedAgain) {
    EXPECT_EQ(fault("close Form_of_tests"), "unknown control: Form_of_tests");
    run("press 102");
    EXPECT_EQ(run("close Form_of_tests"), "form closed: Form_of_tests\n");
    EXPECT_EQ(run("close Form_of_tests"), "refused: Form_of_tests is hidden\n");
    EXPECT_EQ(fault("form Form_of_tests"), "no open form of class Form_of_tests");
    EXPECT_EQ(run("show opt_all"), "opt_all = 1\n");
    run("press 102");
    EXPECT_EQ(run("form Form_of_tests"), "");
    EXPECT_EQ(run("show txttop"), "txttop = 10\n");
}

TEST_P(ChildForms, DialogThatIsClosedWhileCurrentLeavesNoCurrentForm) {
    run("press 102");
    run("form Form_of_tests");
    EXPECT_EQ(form->close_child(), controls::Refusal::none);
    EXPECT_EQ(fault("show txttop"), "there is no current form");
}

TEST_P(ChildForms, DialogGoesBeforeItsForm) {
    run("press 102");
    EXPECT_EQ(run("press 100"), "form closed: Form_of_tests\nform closed: APreport_of_tests\n");
    EXPECT_TRUE(screen.windows().empty());
}

TEST_P(ChildForms, TabCompletesTheOpenDialog) {
    EXPECT_THAT(console.words(), ::testing::Not(::testing::Contains("Form_of_tests")));
    run("press 102");
    EXPECT_THAT(console.words(), ::testing::IsSupersetOf({"Form_of_tests", "APreport_of_tests"}));
}

// --- in its window ---
class SetupPane : public LiveDesk {
  protected:
    void SetUp() override {
        LiveDesk::SetUp();
        form = std::make_shared<ReportForm>(ap, desk);
        form->show();
        owner = &window();
        QApplication::setActiveWindow(owner);
        trigger(kPageSetup);
    }
    [[nodiscard]] QDockWidget& pane() { return *owner->findChild<QDockWidget*>("Form_of_tests"); }

    std::shared_ptr<ReportForm> form;
    desktop::FormWindow* owner = nullptr;
};

TEST_F(SetupPane, StandsInTheWindowOfItsFormWithItsTitle) {
    EXPECT_EQ(desk.windows().size(), 2U);
    EXPECT_EQ(pane().windowTitle(), "Page Setup");
    EXPECT_TRUE(field("txttop").isVisible());
    EXPECT_EQ(field("txttop").window(), owner);
    EXPECT_EQ(focus(), "txttop");
    EXPECT_FALSE(desk.windows().back()->actions().toolbar("Standard")->isVisible());
}

TEST_F(SetupPane, ClosedByItsButtonIsGoneAndWhatWasTypedHandedOver) {
    keys("7");
    pane().findChild<QAbstractButton*>("qt_dockwidget_closebutton")->click();
    EXPECT_THAT(boxes, ::testing::ElementsAre("top 710"));
    EXPECT_EQ(desk.windows().size(), 1U);
    EXPECT_TRUE(form->is_open());
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(owner->findChild<QDockWidget*>("Form_of_tests"), nullptr);
}

TEST_F(SetupPane, CommandOfTheFormHandsOverWhatWasTypedInTheDialog) {
    keys("7");
    owner->actions().find(kPageSetup)->trigger();
    EXPECT_THAT(boxes, ::testing::ElementsAre("top 710"));
}

TEST_F(SetupPane, KeysOfTheFormWorkInTheDialogToo) {
    key(Qt::Key_X, Qt::ControlModifier);
    EXPECT_FALSE(form->is_open());
}

TEST_F(SetupPane, GoesWithTheWindowOfItsForm) {
    owner->close();
    EXPECT_TRUE(desk.windows().empty());
    EXPECT_FALSE(form->is_open());
}

TEST_F(SetupPane, FormWithoutModesShowsNone) { EXPECT_FALSE(owner->statusBar()->isVisible()); }

}  // namespace brimley::testing
