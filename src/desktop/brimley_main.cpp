// brimley: the forms of the module in windows.
#include <QApplication>
#include <QTimer>

#include <CLI/CLI.hpp>
#include <iostream>

#include "desktop/company_dialogs.h"
#include "desktop/form_window.h"
#include "desktop/main_window.h"
#include "opening/command_line.h"

namespace {

using namespace brimley;

constexpr const char* kProgram = "brimley";

struct Options {
    std::string company;
    std::vector<std::string> screenshot;  // a form and a file
    bool dark = false;
    opening::HostOptions host;
};

void describe(CLI::App& app, Options& options) {
    app.set_version_flag("--version", std::string("brimley ") + BRIMLEY_VERSION);
    auto* const company =
        app.add_option("COMPANY", options.company, "company file, or postgresql:// URI; none: choose one");
    app.add_option("--screenshot", options.screenshot,
                   "show this form, write a picture of its window, and end")
        ->type_name("FORM FILE.png")
        ->expected(2)
        ->needs(company);
    app.add_flag("--dark", options.dark, "light on dark, this time");
    opening::describe_host_options(app, options.host);
    app.footer(
        "Status: 0; 2 the command line is wrong; 3 the picture cannot be taken. A company that cannot be "
        "opened "
        "is told in a box, and another one can be chosen.");
}

// Nobody looks on: what is in the way is printed.
int take_screenshot(desktop::MainWindow& window, const QString& company, const Options& options) {
    try {
        window.open_company(company);
    } catch (const std::exception& failure) {
        std::cerr << kProgram << ": " << failure.what() << '\n';
        return opening::kNotOpened;
    }
    if (!window.show_form(options.screenshot[0])) {
        std::cerr << kProgram << ": this version has no form " << options.screenshot[0] << '\n';
        return opening::kWrongUsage;
    }
    window.resize(desktop::MainWindow::kUsualSize);  // a picture is not bound by the screen
    QApplication::processEvents();
    if (!window.grab().save(QString::fromStdString(options.screenshot[1]))) {
        std::cerr << kProgram << ": " << options.screenshot[1] << " cannot be written\n";
        return opening::kNotOpened;
    }
    return 0;
}

int run(QApplication& application, const Options& options) {
    desktop::use_fonts();
    desktop::use_theme(options.dark ? desktop::Theme::dark : desktop::Settings().theme());
    using Memory = desktop::MainWindow::Memory;
    desktop::MainWindow window(options.host, options.screenshot.empty() ? Memory::kept : Memory::none);
    window.show();
    const QString company = QString::fromStdString(options.company);
    if (!options.screenshot.empty()) return take_screenshot(window, company, options);
    if (!company.isEmpty()) window.open_with_form(company);
    return application.exec();
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app{"Accounts payable of a Brimley company, in windows.", kProgram};
    Options options;
    describe(app, options);
    if (const auto ends = opening::read_command_line(app, argc, argv, kProgram)) return *ends;
    QApplication application(argc, argv);
    QApplication::setApplicationVersion(BRIMLEY_VERSION);
    QApplication::setDesktopFileName("brimley");
    options.host.ask_password = [](const std::string& user) { return desktop::ask_for_password(user); };
    return run(application, options);
}
