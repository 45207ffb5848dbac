// The report of a form: its grids as they stand, as a PDF file in the user's folder below "User report".
//
// Errors are ignored, as everywhere in printing: without a folder or a file nothing is said, and the host is
// asked to show the file all the same.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "frame/form_part.h"
#include "printing/grid_report.h"

namespace brimley::frame {

// The names of a form's report.
struct ReportNames {
    const char* title;      // "VENDOR AGING REPORT"
    const char* file_stem;  // "vendor_aging": the time of day follows in the name of the file
};

class ReportPrinting : public FormPart {
  public:
    explicit ReportPrinting(Form& form) : FormPart(form) {}

    // The head of the report under the page setup that the user has for this name; empty when the user has
    // never saved one, and then nothing is printed.
    [[nodiscard]] std::optional<printing::Report> begin(const ReportNames& names,
                                                        const std::string& format_form) const;
    // Writes the report and asks the host to show it.
    void print(const printing::Report& report, const ReportNames& names,
               const std::string& window_title) const;
    // All of it for a document: the columns of its grid that the user sees.
    void print_lines(const ReportNames& names, const controls::Grid& grid, const std::string& docno) const;

  private:
    // With a backslash after it, as hosts have it in paths; made when it is missing.
    [[nodiscard]] std::string user_folder() const;
};

}  // namespace brimley::frame
