// Runs whole scripts on a console and returns the status that the program ends with.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>

#include "console/console.h"

namespace brimley::console {

enum Status { kGood = 0, kCheckFailed = 1, kScriptWrong = 2, kNotOpened = 3 };

// Throws ScriptFault with the place before its text.
void run_lines(Console& console, std::istream& in, const std::string& name);
void run_script_file(Console& console, const std::string& name);

// Does the work, then prints the count of the checks to `out`. A script that is wrong or a company that fails
// is reported on the standard error, in the name of `program`.
[[nodiscard]] Status run_to_status(Console& console, std::ostream& out, const char* program,
                                   const std::function<void()>& work);

}  // namespace brimley::console
