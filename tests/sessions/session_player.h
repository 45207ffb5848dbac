// What plays a session: a host that takes the console's scripts and prints what the console prints. Each
// program of the tests of sessions has one of its own.
#pragma once

#include <iosfwd>
#include <string>

#include "console/script_run.h"
#include "opening/host_options.h"

namespace brimley::testing {

// Plays the script as the program would that is called with these options. What is wrong with the script or
// the company is told on the standard error.
[[nodiscard]] console::Status play_session(const std::string& company, const std::string& script,
                                           const opening::HostOptions& options, std::ostream& out);

}  // namespace brimley::testing
