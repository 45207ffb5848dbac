// The report of a form: its grids as they stand, as a PDF file in the user's folder below "User report".
//
// Errors are ignored: without a folder or a file there is no message, and the host is asked to show the file
// all the same.
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
    // "Preview Vendor Aging": of the window that shows it. For a document its number follows.
    const char* window_title;
};

class ReportPrinting : public FormPart {
  public:
    explicit ReportPrinting(Form& form) : FormPart(form) {}

    // The head of the report under the page setup that the user has under `format_form`; empty when the user
    // has never saved one, and then nothing is printed.
    [[nodiscard]] std::optional<printing::Report> begin(const ReportNames& names,
                                                        const std::string& format_form) const;
    // Writes the report and asks the host to show it.
    void print(const printing::Report& report, const ReportNames& names, const std::string& docno = {}) const;
    // What the user sees of a grid, in the order in which it is seen.
    [[nodiscard]] static std::vector<printing::PrintedColumn> visible_columns(const controls::Grid& grid);
    // Both for a document: begins and prints the report of the columns of its grid that the user sees.
    void print_lines(const ReportNames& names, const controls::Grid& grid, const std::string& docno) const;

  private:
    void make_user_folder(const std::string& folder) const;
};

}  // namespace brimley::frame
