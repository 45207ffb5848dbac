// The form of the tests under a script: on its models in a terminal, and as keys and clicks in windows. What
// is printed must be the same.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QMessageBox>
#include <sstream>

#include "console/console.h"
#include "console/script_line.h"
#include "desktop/report_form.h"
#include "desktop/widget_actor.h"

namespace brimley::testing {

class ScriptHosts : public ::testing::TestWithParam<bool> {
  protected:
    void SetUp() override {
        screen.on_box = [](QMessageBox& box) { box.button(QMessageBox::Ok)->click(); };
        screen.act_for(console.desk());
        console.run("today 2026-03-16", "here");
        form = std::make_shared<ReportForm>(context, console.desk());
        form->show();
    }
    [[nodiscard]] bool in_windows() const { return GetParam(); }
    std::string run(const std::string& line) {
        out.str({});
        console.run(line, "here");
        return out.str();
    }
    std::string fault(const std::string& line) {
        try {
            console.run(line, "here");
        } catch (const console::ScriptFault& fault) {
            return fault.what();
        }
        return "none";
    }

    frame::HostContext context = [] {
        frame::HostContext made;
        made.BRIMLEY_DATE_FORMAT = "dd/mm/yyyy";
        return made;
    }();
    std::ostringstream out;
    desktop::DesktopDesk screen;
    WidgetActor keys_and_clicks{screen};
    console::Console console =
        GetParam() ? console::Console(context, out, keys_and_clicks, screen) : console::Console(context, out);
    std::shared_ptr<ReportForm> form;
};

inline std::string name_of_host(const ::testing::TestParamInfo<bool>& host) {
    return host.param ? "Windows" : "Terminal";
}

}  // namespace brimley::testing
