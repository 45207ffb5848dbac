// Pages of a PDF file, written as they are drawn.
//
// Fonts are found by their family names as the system knows them, embedded as subsets, and letters that a
// font lacks come from one that has them. Text can be searched and copied. Letters are set one by one,
// without kerning and ligatures, so that figures stand below figures. Equal drawings give equal bytes: the
// file holds no date and no id.
//
// Any text may come: what is not UTF-8 shows as U+FFFD, control characters as blanks, and of a text longer
// than any page is wide only the beginning is looked at.
#pragma once

#include <memory>
#include <string>

#include "printing/pdf_canvas.h"
#include "printing/report_format.h"

namespace brimley::printing {

class CairoCanvas : public PdfCanvas {
  public:
    enum class Orientation { portrait, landscape };

    // Writes to `path`. Throws std::runtime_error when the file cannot be made.
    CairoCanvas(const std::string& path, PageSize page, Orientation orientation);
    ~CairoCanvas() override;  // without finish() the file stays incomplete

    void set_font(const controls::FontStyle& font) override;
    void set_colour(controls::Colour colour) override;
    void text(const Rectangle& rectangle, double hpos, std::string_view text) override;
    void fill(const Rectangle& rectangle) override;
    void line(double line_width, double x1, double y1, double x2, double y2) override;
    void new_page() override;

    // Writes what is left and closes the file. Throws std::runtime_error when any of it could not be written.
    void finish();

  private:
    class Pages;
    std::unique_ptr<Pages> pages_;
};

}  // namespace brimley::printing
