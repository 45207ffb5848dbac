// A form's report: the rows of its grid as they stand, page by page, below a head.
//
// The caller fills a Report from its form; draw_report knows no form and runs no query. The drawing goes to
// any canvas, so that each step can be looked at without a file.
#pragma once

#include <string>
#include <vector>

#include "controls/grid.h"
#include "printing/pdf_canvas.h"
#include "printing/report_format.h"

namespace brimley::printing {

// A column as the grid shows it at this moment.
struct PrintedColumn {
    int column = 0;  // its place in the array
    std::string caption;
    int width = 0;  // in the grid's units; only the proportion counts
    controls::Alignment alignment = controls::Alignment::left;
    controls::FontStyle font;  // this and the colour count with `use_grid_font`
    controls::Colour font_colour = 0;
};

[[nodiscard]] PrintedColumn printed_column(const controls::Grid& grid, int column);

// The rows of one grid. The first kColumnsMax columns are printed, and without a column no row is.
struct ReportGrid {
    std::vector<PrintedColumn> columns;
    const controls::TextArray* rows = nullptr;  // must live while the report is drawn
};

inline constexpr std::size_t kColumnsMax = 20;

// One line of the head; a blank text is left out.
struct HeadLine {
    std::string left;
    std::string middle;
    std::string right;
    double middle_hpos = kCentre;
};

// F lies this many row heights below the top margin on the report forms.
inline constexpr double kReportHead = 6.5;

struct Report {
    ReportFormat format;
    std::string company_name;
    std::string title;
    std::string print_date;                 // in the user's format
    std::vector<HeadLine> head_lines = {};  // below those two, from line 3 on
    bool rule_below_head = false;
    double head_row_heights = kReportHead;
    // One after the other. A further grid starts two row heights below the last row, on a page of its own if
    // not even its first row has room.
    std::vector<ReportGrid> grids = {};
};

// One past the last row that is printed: rows at the end are left out while they are blank in both of the
// array's columns 2 and 3.
[[nodiscard]] int printed_rows(const ReportGrid& grid);

void draw_report(const Report& report, PdfCanvas& canvas);

}  // namespace brimley::printing
