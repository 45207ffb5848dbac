// The report of a form as a PDF file.
#pragma once

#include <string>
#include <vector>

#include "controls/grid.h"
#include "frame/form_part.h"

namespace brimley::frame {

// The names of a form's report.
struct ReportNames {
    const char* title;         // "VENDOR AGING REPORT"
    const char* file_stem;     // "vendor_aging": the file's name begins with it
    const char* window_title;  // "Preview Vendor Aging"
};

class ReportPrinting : public FormPart {
  public:
    explicit ReportPrinting(Form& form) : FormPart(form) {}
};

}  // namespace brimley::frame
