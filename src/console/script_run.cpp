#include "console/script_run.h"

#include <filesystem>
#include <fstream>
#include <iostream>

#include "console/interrupt.h"
#include "console/script_line.h"
#include "kernel/visible_text.h"

namespace brimley::console {

void run_lines(Console& console, std::istream& in, const std::string& name) {
    std::string line;
    for (int number = 1; !console.has_quit() && std::getline(in, line); ++number) {
        const std::string place = name + ":" + std::to_string(number);
        try {
            const Interrupt interrupt;
            console.run(line, place);
        } catch (const ScriptFault& fault) {
            throw ScriptFault(place + ": " + fault.what());
        }
    }
}

void run_script_file(Console& console, const std::string& name) {
    std::ifstream script(name);
    if (!script || std::filesystem::is_directory(name)) throw ScriptFault(name + ": cannot be read");
    run_lines(console, script, name);
}

Status run_to_status(Console& console, std::ostream& out, const char* program,
                     const std::function<void()>& work) {
    Status status = kGood;
    try {
        work();
    } catch (const ScriptFault& fault) {
        out.flush();
        std::cerr << kernel::visible_text(fault.what()) << '\n';
        status = kScriptWrong;
    } catch (const store::Error& failure) {
        out.flush();
        std::cerr << program << ": " << kernel::visible_text(failure.what()) << '\n';
        status = kNotOpened;
    }
    if (console.checks_passed() + console.checks_failed() > 0)
        out << console.checks_passed() << " passed, " << console.checks_failed() << " failed\n";
    return status == kGood && console.checks_failed() > 0 ? kCheckFailed : status;
}

}  // namespace brimley::console
