// brimley-console: a host without a window.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <csignal>
#include <iostream>

#include "console/console.h"
#include "console/script_run.h"
#include "console/terminal.h"
#include "opening/host_options.h"

namespace {

using brimley::console::Console;

struct Options {
    std::string company;
    std::vector<std::string> scripts;
    brimley::opening::HostOptions host;
};

void describe(CLI::App& app, Options& options) {
    app.set_version_flag("--version", std::string("brimley-console ") + BRIMLEY_VERSION);
    app.add_option("COMPANY", options.company, "company file, or postgresql:// URI")->required();
    app.add_option("SCRIPT", options.scripts, "scripts to run in order; none: standard input");
    brimley::opening::describe_host_options(app, options.host);
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
        brimley::console::run_script_file(console, name);
    }
}

int run(const Options& options) {
    brimley::frame::HostContext context;
    try {
        context = brimley::opening::open_context(options.company, options.host);
    } catch (const std::exception& failure) {
        std::cerr << "brimley-console: " << failure.what() << '\n';
        return brimley::console::kNotOpened;
    }
    Console console(context, std::cout);
    return brimley::console::run_to_status(console, std::cout, "brimley-console",
                                           [&] { run_scripts(console, options); });
}

}  // namespace

int main(int argc, char** argv) {
    // A file that may not grow any more looks like a full disk: the save fails, not the program.
    std::signal(SIGXFSZ, SIG_IGN);
    CLI::App app{"Drives the forms of a Brimley company from scripts or a terminal."};
    Options options;
    describe(app, options);
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp& help) {
        return app.exit(help);
    } catch (const CLI::CallForVersion& version) {
        return app.exit(version);
    } catch (const CLI::ParseError& fault) {
        std::cerr << "brimley-console: " << fault.what() << '\n';
        return brimley::console::kScriptWrong;
    }
    return run(options);
}
