// brimley-console: a host without a window.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <iostream>

#include "console/console.h"
#include "console/script_run.h"
#include "console/server_watch.h"
#include "console/terminal.h"
#include "opening/command_line.h"

namespace {

using brimley::console::Console;

constexpr const char* kProgram = "brimley-console";

struct Options {
    std::string company;
    std::vector<std::string> scripts;
    bool other_desk = false;
    brimley::opening::HostOptions host;
};

void describe(CLI::App& app, Options& options) {
    app.set_version_flag("--version", std::string("brimley-console ") + BRIMLEY_VERSION);
    app.add_option("COMPANY", options.company, "company file, or postgresql:// URI")->required();
    app.add_option("SCRIPT", options.scripts, "scripts to run in order; none: standard input");
    brimley::opening::describe_host_options(app, options.host);
    app.footer(
        "Commands are read one a line; help lists them, help COMMAND shows one, quit ends.\n"
        "Status: 0 all checks held; 1 a check failed; 2 the command line or the script is wrong; 3 the "
        "company "
        "cannot be opened.");
    app.add_flag("--other-desk", options.other_desk,
                 "allow otherdesk: scripts act as a second user does, for tests");
}

void run_scripts(Console& console, const Options& options) {
    if (options.scripts.empty()) {
        if (isatty(STDIN_FILENO) != 0) {
            brimley::console::run_terminal(console);
        } else {
            brimley::console::run_lines(console, std::cin, "standard input");
        }
    }
    for (const std::string& name : options.scripts) {
        if (!console.has_quit()) brimley::console::run_script_file(console, name);
    }
}

int run(const Options& options) {
    const auto context = brimley::opening::open_or_tell(options.company, options.host, kProgram);
    if (!context) return brimley::console::kNotOpened;
    context->dbe->watch(std::make_shared<brimley::console::ServerWatch>(kProgram));
    Console console(*context, std::cout);
    brimley::opening::Admission admission(context->abcdb, brimley::opening::password_source(options.host));
    console.admit_by([&admission](const std::string& user) { admission.require(user); });
    if (options.other_desk) console.allow_other_desk();
    return brimley::console::run_to_status(console, std::cout, kProgram,
                                           [&] { run_scripts(console, options); });
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app{"Drives the forms of a Brimley company from scripts or a terminal.", kProgram};
    Options options;
    describe(app, options);
    options.host.ask_password = brimley::opening::ask_at_terminal;
    const auto ends = brimley::opening::read_command_line(app, argc, argv, kProgram);
    return ends ? *ends : run(options);
}
