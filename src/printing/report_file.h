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
// `stem`_L.pdf, which is the same turned the other way round. The files appear when they are complete; after
// a failure there is nothing of them. The folder must exist. Throws nothing.
[[nodiscard]] ReportFile write_report(const Report& report, const std::string& stem) noexcept;

}  // namespace brimley::printing
