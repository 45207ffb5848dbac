// A form of the tests with the controls that report forms have: a date range, a group of option buttons, a
// push button, a progress bar, a frame, and a dialog in a pane. Its handlers say in a message what the user
// has done.
#pragma once

#include "controls/date_range.h"
#include "frame/form.h"
#include "presentation/user_days.h"

namespace brimley::testing {

inline constexpr frame::FormIdentity kReportForm{"APreport_of_tests", "Report of the tests",
                                                 "\\Help\\Report of the tests.pdf"};

inline constexpr frame::FormIdentity kSetupDialog{"Form_of_tests", "Page Setup", ""};
inline constexpr int kPageSetup = 102;

// The dialog that the form shows in a pane.
class SetupDialog : public frame::Form {
  public:
    SetupDialog(const frame::HostContext& host, frame::Desk& desk)
        : Form(kSetupDialog, host, nullptr, desk) {}

    controls::TextField txttop{controls_, "txttop"};

  protected:
    void Form_Load() override {
        txttop.set("10");
        txttop.on_change = [this] { tell("top " + txttop.text()); };
    }
    void init_toolbar() override {}
    void CommandBars1_Execute(int) override {}
    void save_grid() override {}
};

class ReportForm : public frame::Form {
  public:
    ReportForm(const frame::HostContext& host, frame::Desk& desk)
        : Form(kReportForm, host, nullptr, desk),
          cal1(controls_, "cal1", presentation::user_day_texts(host.BRIMLEY_DATE_FORMAT), whole_year()) {}

    controls::TextField txtinvno{controls_, "txtinvno"};
    controls::DateRange cal1;
    controls::OptionButton opt_all{controls_, "opt_all", "All"};
    controls::OptionButton opt_open{controls_, "opt_open", "Open"};
    controls::PushButton cmdsave{controls_, "cmdsave", "Save"};
    controls::ProgressBar Progress1{controls_, "Progress1"};
    controls::Frame frame_status{controls_, "frame_status"};

  private:
    static controls::DaySpan whole_year() {
        return {store::DateTime::from_ymd(2026, 1, 1).value().day,
                store::DateTime::from_ymd(2026, 12, 31).value().day};
    }

  protected:
    void Form_Load() override {
        init_toolbar();
        controls::OptionButton::group({&opt_all, &opt_open});
        opt_all.choose();
        cal1.on_change = [this] { tell("range " + cal1.shown()); };
        opt_open.on_click = [this] { tell("open only"); };
        cmdsave.on_click = [this] {
            Progress1.set(40);
            tell("saved");
        };
    }
    void init_toolbar() override {
        CommandBars1().add({frame::command::kExit, "&Exit", {}, {}, {"File", "Standard"}, 'X'});
        CommandBars1().add({kPageSetup, "Page Set&up", {}, {}, {"File", "Standard"}});
    }
    void CommandBars1_Execute(int id) override {
        if (execute_common(id) || child() != nullptr) return;
        show_child(std::make_shared<SetupDialog>(context(), desk()));
    }
    void save_grid() override {}
};

}  // namespace brimley::testing
