#include "opening/command_line.h"

#include <CLI/CLI.hpp>
#include <csignal>
#include <iostream>

#include "company/command_line_words.h"
#include "kernel/visible_text.h"

namespace brimley::opening {

std::optional<int> read_command_line(CLI::App& app, int argc, char** argv, const char* program) {
    std::signal(SIGXFSZ, SIG_IGN);
    const company::CommandLineWords words(argc, argv);
    try {
        app.parse(words.count(), words.words());
    } catch (const CLI::CallForHelp& help) {
        return app.exit(help);
    } catch (const CLI::CallForVersion& version) {
        return app.exit(version);
    } catch (const CLI::ParseError& fault) {
        std::cerr << program << ": " << kernel::visible_text(words.without_passwords(fault.what())) << '\n';
        return kWrongUsage;
    }
    return std::nullopt;
}

std::optional<frame::HostContext> open_or_tell(const std::string& company, const HostOptions& options,
                                               const char* program) {
    try {
        auto context = open_context(company, options);
        const std::string limit = limit_of_work(*context.abcdb);
        if (!limit.empty()) std::cerr << program << ": " << kernel::visible_text(limit) << '\n';
        return context;
    } catch (const std::exception& failure) {
        std::cerr << program << ": " << kernel::visible_text(failure.what()) << '\n';
        return std::nullopt;
    }
}

}  // namespace brimley::opening
