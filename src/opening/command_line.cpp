#include "opening/command_line.h"

#include <CLI/CLI.hpp>
#include <csignal>
#include <iostream>

namespace brimley::opening {

std::optional<int> read_command_line(CLI::App& app, int argc, char** argv, const char* program) {
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp& help) {
        return app.exit(help);
    } catch (const CLI::CallForVersion& version) {
        return app.exit(version);
    } catch (const CLI::ParseError& fault) {
        std::cerr << program << ": " << fault.what() << '\n';
        return kWrongUsage;
    }
    return std::nullopt;
}

std::optional<frame::HostContext> open_or_tell(const std::string& company, const HostOptions& options,
                                               const char* program) {
    try {
        return open_context(company, options);
    } catch (const std::exception& failure) {
        std::cerr << program << ": " << failure.what() << '\n';
        return std::nullopt;
    }
}

}  // namespace brimley::opening
