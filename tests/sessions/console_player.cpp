// Sessions on the console.
#include "opening/command_line.h"
#include "sessions/session_player.h"

namespace brimley::testing {

console::Status play_session(const std::string& company, const std::string& script,
                             const opening::HostOptions& options, std::ostream& out) {
    constexpr const char* kProgram = "brimley-console";
    const auto context = opening::open_or_tell(company, options, kProgram);
    if (!context) return console::kNotOpened;
    console::Console console(*context, out);
    console.allow_other_desk();
    return console::run_to_status(console, out, kProgram, [&] { console::run_script_file(console, script); });
}

}  // namespace brimley::testing
