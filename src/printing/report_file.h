// A report as PDF files.
#pragma once

#include <string>

#include "printing/grid_report.h"

namespace brimley::printing {

struct ReportFile {
    bool written = false;
    std::string failure;  // why not, for the log
};

// Draws the report into `stem`.pdf, in place of a file of that name. A landscape report also gives
// `stem`_L.pdf, which is the same turned the other way round. The files appear when they are complete; a
// failure leaves none. The folder must exist. A file that cannot be written is an answer; mistakes of
// our own and lack of memory are thrown.
[[nodiscard]] ReportFile write_report(const Report& report, const std::string& stem);

}  // namespace brimley::printing
