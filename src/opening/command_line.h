// How a program with forms reads its command line and begins.
#pragma once

#include <optional>

#include "opening/host_options.h"

namespace brimley::opening {

// What such programs end with when they do not come to their work.
enum EarlyStatus { kWrongUsage = 2, kNotOpened = 3 };

// Reads the command line, and takes the passwords in it out of argv. The status to end with when help or the
// version was asked for, or when it is wrong, which is reported in the name of `program`; empty to go on. A
// file that may not grow any more is from here on a full disk to the store, and not the end of the program.
[[nodiscard]] std::optional<int> read_command_line(CLI::App& app, int argc, char** argv, const char* program);

// The company's context; empty when it cannot be opened, which is reported in the name of `program`, as is
// what limits the work in it.
[[nodiscard]] std::optional<frame::HostContext> open_or_tell(const std::string& company,
                                                             const HostOptions& options, const char* program);

}  // namespace brimley::opening
