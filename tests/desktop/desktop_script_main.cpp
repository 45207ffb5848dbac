// brimley-desktop-script: runs the console's scripts against live windows. It takes what the console takes
// and prints what the console prints; the acts are keys and clicks, and every box is opened and answered.
#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>

#include <CLI/CLI.hpp>
#include <iostream>

#include "console/script_run.h"
#include "desktop/widget_actor.h"
#include "opening/command_line.h"

namespace {

using namespace brimley;

constexpr const char* kProgram = "brimley-desktop-script";

void answer(QMessageBox& box, bool yes) {
    const auto button = box.standardButtons().testFlag(QMessageBox::Ok) ? QMessageBox::Ok
                        : yes                                           ? QMessageBox::Yes
                                                                        : QMessageBox::No;
    box.button(button)->click();
}

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    CLI::App app{"Drives the windows of a Brimley company from scripts."};
    std::string company;
    std::vector<std::string> scripts;
    opening::HostOptions options;
    app.add_option("COMPANY", company)->required();
    app.add_option("SCRIPT", scripts)->required();
    opening::describe_host_options(app, options);
    if (const auto ends = opening::read_command_line(app, argc, argv, kProgram)) return *ends;

    const auto context = opening::open_or_tell(company, options, kProgram);
    if (!context) return console::kNotOpened;
    desktop::DesktopDesk screen;
    testing::WidgetActor actor(screen);
    console::Console console(*context, std::cout, actor, screen);
    screen.act_for(console.desk());
    screen.on_box = [&](QMessageBox& box) { answer(box, console.desk().answer_at_hand()); };
    return console::run_to_status(console, std::cout, kProgram, [&] {
        for (const std::string& script : scripts)
            console::run_script_file(console, script);
    });
}
