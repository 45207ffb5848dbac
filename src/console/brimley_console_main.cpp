// brimley-console: a host without a window.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <charconv>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "company/login_name.h"
#include "console/console.h"
#include "console/script_line.h"
#include "console/terminal.h"
#include "kernel/tables/company_tables.h"
#include "kernel/user_dates.h"

namespace {

namespace store = brimley::store;
using brimley::console::Console;
using brimley::console::ScriptFault;

constexpr int kPeriodsMax = 99;

enum Status { kGood = 0, kCheckFailed = 1, kScriptWrong = 2, kNotOpened = 3 };

struct Options {
    std::string company;
    std::vector<std::string> scripts;
    std::string user = brimley::company::login_name();
    std::string base_currency;
    std::string date_format = "dd/mm/yyyy";
    std::string periods = "12";
    std::string company_name;
    std::string path;
};

// The text is what a fault is told with; empty: there is none.
std::string fault_of_periods(const std::string& text) {
    int periods = 0;
    const char* const end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, periods);
    if (error == std::errc{} && stopped == end && periods >= 1 && periods <= kPeriodsMax) return {};
    return '"' + text + "\" is no number from 1 to " + std::to_string(kPeriodsMax);
}

// A date that is written in the format must be the same date when it is read.
std::string fault_of_date_format(const std::string& format) {
    const auto day = store::DateTime::from_ymd(2026, 12, 25);
    if (brimley::kernel::try_user_date(brimley::kernel::user_date_text(*day, format), format) == day)
        return {};
    return '"' + format + "\" is no order of dd, mm and yyyy parted by /, such as dd/mm/yyyy";
}

void describe(CLI::App& app, Options& options) {
    app.set_version_flag("--version", std::string("brimley-console ") + BRIMLEY_VERSION);
    app.add_option("COMPANY", options.company, "company file, or postgresql:// URI")->required();
    app.add_option("SCRIPT", options.scripts, "scripts to run in order; none: standard input");
    app.add_option("--user", options.user, "user id")->type_name("NAME")->capture_default_str();
    app.add_option("--base-currency", options.base_currency,
                   "base currency; else that of the company's chart")
        ->type_name("CODE");
    app.add_option("--date-format", options.date_format, "date format of the user")
        ->type_name("F")
        ->check(fault_of_date_format)
        ->capture_default_str();
    app.add_option("--periods", options.periods, "fiscal periods of a year")
        ->type_name("N")
        ->check(fault_of_periods)
        ->capture_default_str();
    app.add_option("--company-name", options.company_name, "company name shown on reports")
        ->type_name("TEXT");
    app.add_option("--path", options.path,
                   "install folder; else that of the company file, or the current one")
        ->type_name("DIR");
}

std::string chart_currency(store::Database& database) {
    const auto config =
        database.OpenRecordset("SELECT Currency FROM COA_config_table", store::RecordsetKind::snapshot);
    return config.at_eof() ? std::string{} : config.text("Currency");
}

// A company on a server has no folder of its own.
std::string folder_of(const std::string& company) {
    if (store::is_on_server(company)) return std::filesystem::current_path().string();
    return std::filesystem::absolute(company).parent_path().string();
}

brimley::frame::HostContext open_context(const Options& options) {
    const auto open = store::open_company(options.company, brimley::kernel::company_tables());
    brimley::frame::HostContext context;
    context.dbe = open.workspace;
    context.abcdb = open.database;
    context.OPEN_DATABASE = options.company;
    context.BASE_CURRENCY =
        options.base_currency.empty() ? chart_currency(*open.database) : options.base_currency;
    context.BRIMLEY_COMPANY_NAME = options.company_name;
    context.BRIMLEY_PATH = options.path.empty() ? folder_of(options.company) : options.path;
    context.BRIMLEY_USER = options.user;
    context.BRIMLEY_DATE_FORMAT = options.date_format;
    context.BRIMLEY_NO_PERIODS = options.periods;
    context.BRIMLEY_FONT_NAME = "Arial";
    context.BRIMLEY_FONT_SIZE = 9.0;
    return context;
}

// Throws ScriptFault with the place before its text.
void run_lines(Console& console, std::istream& in, const std::string& name) {
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        const std::string place = name + ":" + std::to_string(number);
        try {
            console.run(line, place);
        } catch (const ScriptFault& fault) {
            throw ScriptFault(place + ": " + fault.what());
        }
    }
}

void run_scripts(Console& console, const Options& options) {
    if (options.scripts.empty()) {
        if (isatty(STDIN_FILENO) != 0) {
            brimley::console::run_terminal(console);
        } else {
            run_lines(console, std::cin, "standard input");
        }
    }
    for (const std::string& name : options.scripts) {
        std::ifstream script(name);
        if (!script || std::filesystem::is_directory(name)) throw ScriptFault(name + ": cannot be read");
        run_lines(console, script, name);
    }
}

int run(const Options& options) {
    brimley::frame::HostContext context;
    try {
        context = open_context(options);
    } catch (const std::exception& failure) {
        std::cerr << "brimley-console: " << failure.what() << '\n';
        return kNotOpened;
    }
    Console console(context, std::cout);
    int status = kGood;
    try {
        run_scripts(console, options);
    } catch (const ScriptFault& fault) {
        std::cout.flush();
        std::cerr << fault.what() << '\n';
        status = kScriptWrong;
    } catch (const store::Error& failure) {
        std::cout.flush();
        std::cerr << "brimley-console: " << failure.what() << '\n';
        status = kNotOpened;
    }
    if (console.checks_passed() + console.checks_failed() > 0) {
        std::cout << console.checks_passed() << " passed, " << console.checks_failed() << " failed\n";
    }
    if (status == kGood && console.checks_failed() > 0) status = kCheckFailed;
    return status;
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
        return kScriptWrong;
    }
    return run(options);
}
