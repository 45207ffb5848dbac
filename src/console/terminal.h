// The console at a terminal: a prompt with history and completion.
#pragma once

#include "console/console.h"

namespace brimley::console {

// Reads lines from the terminal until its end and runs them. A line that is wrong is reported and the next
// one is read; questions without a queued answer are asked.
void run_terminal(Console& console);

}  // namespace brimley::console
