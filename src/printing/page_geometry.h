// Where things stand on a report's page, in points from the lower left corner: pure arithmetic.
//
//            +-----------------------------------------+  rect_height
//            |              company name               |  line 1 stands on `top`
//      top   |  ------------------------------------   |
//            |                 title      print : ...  |  line 2 one row height lower, and so on
//            |                                         |
//            |  ====================================   |  header_top
//            |   caption | caption | caption           |
//            |  ====================================   |  upper edge of row 0
//            |   row 0                                 |  row_y(0) is its lower edge
//            |   row 1                                 |
//   bottom   |  ------------------------------------   |  no row's lower edge lies below
//            |                                 page/n  |
//            +-----------------------------------------+
//           left                                  right
#pragma once

#include <array>
#include <span>
#include <vector>

#include "printing/pdf_canvas.h"
#include "printing/report_format.h"

namespace brimley::printing {

struct PageGeometry {
    explicit PageGeometry(const ReportFormat& format);

    double rect_width;  // of the page as it is read: a landscape page lies on its side
    double rect_height;
    double top;
    double bottom;
    double left;
    double right;
    double width;
    double row_height;
    double text_inset;  // on all sides of a cell
};

// The rows of a grid on one page, from their origin F; k counts them from 0. Row 0 lies above F.
struct RowsOnPage {
    double F;
    double row_height;

    [[nodiscard]] double row_y(int k) const { return F - row_height * (k - 1); }
    // The upper of the two rules around the captions, which lie one row height apart.
    [[nodiscard]] double header_top() const { return row_y(0) + 2 * row_height; }
    // How many of the wanted rows have their lower edge not below the bottom.
    [[nodiscard]] int that_fit(int wanted, double bottom) const;
};

struct ColumnPlace {
    double x;
    double width;
};

// The grid's widths in their proportions over the whole width of the page, each to the whole point.
[[nodiscard]] std::vector<ColumnPlace> calculate_column_visible_width(std::span<const int> grid_widths,
                                                                      double page_width, double left);

// A column's `Alignment` as a place in the rectangle; any other value is left.
[[nodiscard]] double hpos_of(controls::Alignment alignment);
// Where the caption of each column lies: as its cells, but in the middle for one that stands beside a caption
// of the other kind and is narrow, so that the two do not touch.
[[nodiscard]] std::vector<double> caption_hpos(std::span<const controls::Alignment> alignments,
                                               std::span<const ColumnPlace> places);

// The three slots of a line of text, left, middle and right, the line numbered from 1. With the middle text
// at the right (`middle_hpos` 1) its slot starts at the middle of the page.
[[nodiscard]] std::array<Rectangle, 3> line_slots(const PageGeometry& page, int line, double middle_hpos);

}  // namespace brimley::printing
