// What a report is drawn on: pages of one size, points, the origin at the lower left corner of the page as
// its reader holds it.
//
// Font and colour stay until they are set again, over new pages, too. A canvas starts with its first page.
#pragma once

#include <string_view>

#include "controls/grid.h"

namespace brimley::printing {

// y is the lower edge.
struct Rectangle {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    // Smaller by this much on each of the four sides.
    [[nodiscard]] Rectangle inset(double by) const {
        return {x + by, y + by, width - 2 * by, height - 2 * by};
    }
    [[nodiscard]] double top() const { return y + height; }
    [[nodiscard]] double right() const { return x + width; }

    bool operator==(const Rectangle&) const = default;
};

// Where a text lies between the left and the right edge of its rectangle.
inline constexpr double kLeft = 0;
inline constexpr double kCentre = 0.5;
inline constexpr double kRight = 1;

class PdfCanvas {
  public:
    PdfCanvas() = default;
    PdfCanvas(const PdfCanvas&) = delete;
    PdfCanvas& operator=(const PdfCanvas&) = delete;
    virtual ~PdfCanvas() = default;

    virtual void set_font(const controls::FontStyle& font) = 0;
    virtual void set_colour(controls::Colour colour) = 0;
    // One line of text along the top of the rectangle. What does not fit into its width ends in an ellipsis.
    virtual void text(const Rectangle& rectangle, double hpos, std::string_view text) = 0;
    virtual void fill(const Rectangle& rectangle) = 0;
    virtual void line(double line_width, double x1, double y1, double x2, double y2) = 0;
    virtual void new_page() = 0;
};

}  // namespace brimley::printing
