#include "printing/page_geometry.h"

#include <cmath>
#include <numeric>

namespace brimley::printing {

using controls::Alignment;

PageGeometry::PageGeometry(const ReportFormat& format)
    : rect_width(format.portrait ? format.page.width : format.page.height),
      rect_height(format.portrait ? format.page.height : format.page.width),
      top(rect_height - format.top_margin),
      bottom(format.bottom_margin),
      left(format.left_margin),
      right(rect_width - format.right_margin),
      width(right - left),
      row_height(format.row_height),
      text_inset((format.row_height - format.font_size) / 2) {}

int RowsOnPage::that_fit(int wanted, double bottom) const {
    int fit = 0;
    while (fit < wanted && !(row_y(fit) < bottom))
        ++fit;
    return fit;
}

std::vector<ColumnPlace> calculate_column_visible_width(std::span<const int> grid_widths, double page_width,
                                                        double left) {
    const double total = std::accumulate(grid_widths.begin(), grid_widths.end(), 0.0);
    std::vector<ColumnPlace> places;
    double x = left;
    for (const int grid_width : grid_widths) {
        const double width = total > 0 ? std::nearbyint(grid_width * page_width / total) : 0;
        places.push_back({x, width});
        x += width;
    }
    return places;
}

double hpos_of(Alignment alignment) {
    if (alignment == Alignment::right) return kRight;
    if (alignment == Alignment::centre) return kCentre;
    return kLeft;
}

std::vector<double> caption_hpos(std::span<const Alignment> alignments, std::span<const ColumnPlace> places) {
    std::vector<double> hpos;
    for (std::size_t i = 0; i < alignments.size(); ++i) {
        hpos.push_back(hpos_of(alignments[i]));
        if (i == 0 || i + 1 == alignments.size()) continue;
        const bool meets_the_other_kind =
            (hpos_of(alignments[i]) == kLeft) != (hpos_of(alignments[i + 1]) == kLeft);
        if (meets_the_other_kind && places[i].width < 2 * places[i - 1].width) hpos.back() = kCentre;
    }
    return hpos;
}

std::array<Rectangle, 3> line_slots(const PageGeometry& page, int line, double middle_hpos) {
    const double y = page.top - page.row_height * (line - 1);
    const double third = std::nearbyint(page.width / 3);
    const double middle = std::nearbyint(middle_hpos == kRight ? page.width / 2 : page.width / 3);
    const auto slot = [&](double x) { return Rectangle{x, y, third, page.row_height}; };
    return {slot(page.left), slot(page.left + middle), slot(page.left + std::nearbyint(page.width * 2 / 3))};
}

}  // namespace brimley::printing
