// The controls of report forms, by the console's language: on the models, and as keys and clicks in a window.
// Both print the same.
#include <gmock/gmock.h>

#include "desktop/live_desk.h"
#include "desktop/range_view.h"
#include "desktop/script_hosts.h"

namespace brimley::testing {

using controls::Refusal;

using ReportControls = ScriptHosts;

INSTANTIATE_TEST_SUITE_P(Hosts, ReportControls, ::testing::Bool(), name_of_host);

TEST_P(ReportControls, RangeBeginsAsTheYearAndHoldsTheDatesTyped) {
    EXPECT_EQ(run("show cal1"), "cal1 = 01/01/2026 - 31/12/2026\n");
    EXPECT_EQ(run("range cal1 01/02/2026 28/02/2026"), "message: range 01/02/2026 - 28/02/2026\n");
    EXPECT_EQ(run("expect cal1 = 01/02/2026 - 28/02/2026"), "");
    EXPECT_EQ(console.checks_passed(), 1);
}

TEST_P(ReportControls, RangeKeepsADateForATextThatIsNone) {
    EXPECT_EQ(run("range cal1 31/02/2026 30/06/2026"), "message: range 01/01/2026 - 30/06/2026\n");
    EXPECT_EQ(run("range cal1 \"\" word"), "");
    EXPECT_EQ(run("show cal1"), "cal1 = 01/01/2026 - 30/06/2026\n");
}

TEST_P(ReportControls, RangeTypedAsItStandsChangesNothing) {
    EXPECT_EQ(run("range cal1 1/1/2026 31/12/2026"), "");
    EXPECT_EQ(run("show cal1"), "cal1 = 01/01/2026 - 31/12/2026\n");
}

TEST_P(ReportControls, CheckPicksAnOptionAndClearsTheOthers) {
    EXPECT_EQ(run("show opt_all"), "opt_all = 1\n");
    EXPECT_EQ(run("check opt_open"), "message: open only\n");
    EXPECT_EQ(run("check opt_open"), "");
    EXPECT_EQ(run("show opt_all"), "opt_all = 0\n");
    EXPECT_EQ(run("show opt_open"), "opt_open = 1\n");
    EXPECT_EQ(fault("uncheck opt_open"), "opt_open is no box");
}

TEST_P(ReportControls, ClickRunsTheButtonEachTime) {
    EXPECT_EQ(run("click cmdsave"), "message: saved\n");
    EXPECT_EQ(run("click cmdsave"), "message: saved\n");
    EXPECT_EQ(run("show Progress1"), "Progress1 = 40\n");
    EXPECT_EQ(run("show cmdsave"), "cmdsave = Save\n");
}

TEST_P(ReportControls, ActsOnALockedHiddenOrDisabledControlAreRefused) {
    const auto refusals = [&] {
        return run("range cal1 01/02/2026 28/02/2026") + run("check opt_open") + run("click cmdsave");
    };
    const auto all_are = [](const std::string& why) {
        return "refused: cal1 is " + why + "\nrefused: opt_open is " + why + "\nrefused: cmdsave is " + why +
               "\n";
    };
    for (controls::Control* control : form->controls().all())
        control->set_locked(true);
    EXPECT_EQ(refusals(), all_are("locked"));
    for (controls::Control* control : form->controls().all())
        control->set_enabled(false);
    EXPECT_EQ(refusals(), all_are("disabled"));
    for (controls::Control* control : form->controls().all())
        control->set_visible(false);
    EXPECT_EQ(refusals(), all_are("hidden"));
    EXPECT_EQ(form->cal1.shown(), "01/01/2026 - 31/12/2026");
    EXPECT_FALSE(form->opt_open.is_set());
}

TEST_P(ReportControls, StateOfEveryKindOfControlIsTold) {
    form->Progress1.set_visible(false);
    form->cal1.set_back_colour(controls::kReadOnlyBack);
    EXPECT_EQ(run("state cal1"), "cal1: open visible enabled back=80000018\n");
    EXPECT_EQ(run("state opt_all"), "opt_all: open visible enabled back=00ffffff\n");
    EXPECT_EQ(run("state cmdsave"), "cmdsave: open visible enabled back=00ffffff\n");
    EXPECT_EQ(run("state Progress1"), "Progress1: open hidden enabled back=00ffffff\n");
    EXPECT_EQ(run("state frame_status"), "frame_status: open visible enabled back=00ffffff\n");
    run("expect state frame_status open visible enabled");
    run("expect state cal1 visible back=80000018");
    EXPECT_EQ(console.checks_passed(), 2);
}

TEST_P(ReportControls, BackgroundAmongTheWordsOfAStateIsCompared) {
    EXPECT_EQ(run("expect state cal1 back=80000018"),
              "here: expected cal1 back=80000018, got open visible enabled back=00ffffff\n");
    EXPECT_EQ(run("expect state cal1 locked"), "here: expected cal1 locked, got open visible enabled\n");
    EXPECT_EQ(console.checks_failed(), 2);
    for (const char* word : {"back=", "back=white", "back=8000018", "back=800000188", "background"})
        EXPECT_EQ(fault(("expect state cal1 " + std::string(word)).c_str()),
                  "unknown state: " + std::string(word));
}

TEST_P(ReportControls, WrongKindOfControlIsAFaultOfTheScript) {
    EXPECT_EQ(fault("range txtinvno 01/01/2026 02/01/2026"), "txtinvno is no date range");
    EXPECT_EQ(fault("range cal1 01/01/2026"), "TO is missing");
    EXPECT_EQ(fault("set cal1 01/01/2026"), "cal1 takes no text");
    EXPECT_EQ(fault("click opt_all"), "opt_all is no button");
    EXPECT_EQ(fault("click nothing"), "unknown control: nothing");
}

TEST_P(ReportControls, HelpAndTabKnowTheCommandsAndTheControls) {
    EXPECT_EQ(run("help range"),
              "range CONTROL FROM TO                   types both dates of a date range\n");
    EXPECT_THAT(run("help"), ::testing::HasSubstr("\nclick CONTROL  "));
    EXPECT_EQ(fault("help nothing"), "unknown command: nothing");
    EXPECT_THAT(console.words(), ::testing::IsSupersetOf({"range", "click", "help", "cal1", "cmdsave"}));
}

// --- what keys and clicks do in the window ---
class ReportWindow : public LiveDesk {
  protected:
    void SetUp() override {
        LiveDesk::SetUp();
        form = std::make_shared<ReportForm>(ap, desk);
        form->show();
        QApplication::setActiveWindow(&window());
    }
    [[nodiscard]] desktop::RangeView& range() { return dynamic_cast<desktop::RangeView&>(field("cal1")); }

    std::shared_ptr<ReportForm> form;
};

TEST_F(ReportWindow, TabAndEnterGoThroughFieldsRangesAndButtons) {
    EXPECT_EQ(focus(), "txtinvno");
    std::vector<std::string> visited;
    for (int i = 0; i < 4; ++i) {
        key(i % 2 == 0 ? Qt::Key_Return : Qt::Key_Tab);
        visited.push_back(focus());
    }
    EXPECT_EQ(visited, (std::vector<std::string>{"cal1.from", "cal1.to", "opt_all", "opt_open"}));
    key(Qt::Key_Return);
    EXPECT_EQ(focus(), "cmdsave");
    EXPECT_THAT(boxes, ::testing::IsEmpty());
}

TEST_F(ReportWindow, RangeIsHandedOverOnceWhenThePairIsLeft) {
    go_to("cal1.from");
    line("cal1.from").selectAll();
    keys("01022026");
    key(Qt::Key_Tab);
    EXPECT_EQ(line("cal1.from").text(), "01/02/2026");
    EXPECT_EQ(form->cal1.shown(), "01/01/2026 - 31/12/2026");
    keys("28022026");
    key(Qt::Key_Tab);
    EXPECT_EQ(form->cal1.shown(), "01/02/2026 - 28/02/2026");
    EXPECT_THAT(boxes, ::testing::ElementsAre("range 01/02/2026 - 28/02/2026"));
}

TEST_F(ReportWindow, FirstDateAloneIsHandedOverAsWell) {
    go_to("cal1.from");
    keys("t");
    key(Qt::Key_Tab);
    key(Qt::Key_Tab);
    EXPECT_EQ(form->cal1.shown(), "16/03/2026 - 31/12/2026");
}

TEST_F(ReportWindow, TextThatIsNoDateGivesWayToTheDayThatStands) {
    go_to("cal1.to");
    line("cal1.to").clear();
    keys("3102");
    key(Qt::Key_Tab);
    EXPECT_EQ(line("cal1.to").text(), "31/12/2026");
    EXPECT_THAT(boxes, ::testing::IsEmpty());
}

TEST_F(ReportWindow, CommandHandsTheRangeOverFirst) {
    go_to("cal1.from");
    keys("t");
    trigger(100);
    EXPECT_EQ(form->cal1.shown(), "16/03/2026 - 31/12/2026");
    EXPECT_FALSE(form->is_open());
}

TEST_F(ReportWindow, LockedRangeTakesNoKeys) {
    form->cal1.set_locked(true);
    go_to("cal1.from");
    keys("t");
    EXPECT_EQ(line("cal1.from").text(), "01/01/2026");
    EXPECT_EQ(range().found_by_user(), Refusal::locked);
}

TEST_F(ReportWindow, EnterAndSpaceClickAButton) {
    go_to("cmdsave");
    key(Qt::Key_Return);
    go_to("cmdsave");
    key(Qt::Key_Space);
    EXPECT_THAT(boxes, ::testing::ElementsAre("saved", "saved"));
    EXPECT_EQ(dynamic_cast<QProgressBar&>(field("Progress1")).value(), 40);
}

}  // namespace brimley::testing
