// What saving one document costs: through its form, beside bare prepared statements doing the same row writes
// in the same run, on companies of different sizes. CPU time of the process, user and system;
// synchronous=FULL on both sides.
//
//   PROGRAM [SAVES] [FOLDER] [STORED...]
#pragma once

#include "workload.h"

namespace brimley::bench {

// Prints a line for each size. The status of the program.
[[nodiscard]] int measure_saves(int argc, char** argv, BareDocument document);

}  // namespace brimley::bench
