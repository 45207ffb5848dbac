// brimley: the forms of the module in windows.
#include <QApplication>
#include <QTimer>

#include <CLI/CLI.hpp>
#include <csignal>
#include <iostream>

#include "desktop/form_window.h"
#include "desktop/main_window.h"

namespace {

using namespace brimley;

enum Status { kGood = 0, kWrongUsage = 2, kNotOpened = 3 };

struct Options {
    std::string company;
    std::vector<std::string> screenshot;  // a form and a file
    bool dark = false;
    opening::HostOptions host;
};

void describe(CLI::App& app, Options& options) {
    app.set_version_flag("--version", std::string("brimley ") + BRIMLEY_VERSION);
    app.add_option("COMPANY", options.company, "company file, or postgresql:// URI; none: choose one");
    app.add_option("--screenshot", options.screenshot,
                   "show this form, write a picture of its window, and end")
        ->type_name("FORM FILE.png")
        ->expected(2);
    app.add_flag("--dark", options.dark, "light on dark, this time");
    opening::describe_host_options(app, options.host);
}

int take_screenshot(desktop::MainWindow& window, const Options& options) {
    if (!window.show_form(QString::fromStdString(options.screenshot[0]))) {
        std::cerr << "brimley: there is no form " << options.screenshot[0] << '\n';
        return kWrongUsage;
    }
    QApplication::processEvents();
    if (!window.grab().save(QString::fromStdString(options.screenshot[1]))) {
        std::cerr << "brimley: " << options.screenshot[1] << " cannot be written\n";
        return kNotOpened;
    }
    return kGood;
}

int run(QApplication& application, const Options& options) {
    desktop::use_fonts();
    desktop::use_theme(options.dark ? desktop::Theme::dark : desktop::Settings().theme());
    desktop::MainWindow window(options.host);
    window.show();
    if (!options.company.empty()) {
        try {
            window.open_company(QString::fromStdString(options.company));
        } catch (const std::exception& failure) {
            std::cerr << "brimley: " << failure.what() << '\n';
            return kNotOpened;
        }
    }
    if (!options.screenshot.empty()) return take_screenshot(window, options);
    if (!options.company.empty()) window.show_form("APform_invoice");
    return application.exec();
}

}  // namespace

int main(int argc, char** argv) {
    // A file that may not grow any more looks like a full disk: the save fails, not the program.
    std::signal(SIGXFSZ, SIG_IGN);
    CLI::App app{"Accounts payable of a Brimley company, in windows."};
    Options options;
    describe(app, options);
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp& help) {
        return app.exit(help);
    } catch (const CLI::CallForVersion& version) {
        return app.exit(version);
    } catch (const CLI::ParseError& fault) {
        std::cerr << "brimley: " << fault.what() << '\n';
        return kWrongUsage;
    }
    QApplication application(argc, argv);
    return run(application, options);
}
