// A canvas that keeps what is drawn on it, page by page.
#pragma once

#include <string>
#include <vector>

#include "printing/pdf_canvas.h"

namespace brimley::testing {

struct DrawnText {
    printing::Rectangle rectangle;
    double hpos;
    std::string text;
    controls::FontStyle font;
    controls::Colour colour;
};

struct DrawnFill {
    printing::Rectangle rectangle;
    controls::Colour colour;
};

struct DrawnLine {
    double width, x1, y1, x2, y2;
    controls::Colour colour;
};

struct DrawnPage {
    std::vector<DrawnText> texts;
    std::vector<DrawnFill> fills;
    std::vector<DrawnLine> lines;

    // The first of these texts, or an empty one far off the page.
    [[nodiscard]] DrawnText find(std::string_view text) const {
        for (const DrawnText& drawn : texts)
            if (drawn.text == text) return drawn;
        return {{-1e6, -1e6, 0, 0}, -1, "not found", {}, 0};
    }
    [[nodiscard]] std::vector<std::string> words() const {
        std::vector<std::string> words;
        for (const DrawnText& drawn : texts)
            words.push_back(drawn.text);
        return words;
    }
};

class RecordingCanvas : public printing::PdfCanvas {
  public:
    void set_font(const controls::FontStyle& font) override { font_ = font; }
    void set_colour(controls::Colour colour) override { colour_ = colour; }
    void text(const printing::Rectangle& rectangle, double hpos, std::string_view text) override {
        pages.back().texts.push_back({rectangle, hpos, std::string(text), font_, colour_});
    }
    void fill(const printing::Rectangle& rectangle) override {
        pages.back().fills.push_back({rectangle, colour_});
    }
    void line(double line_width, double x1, double y1, double x2, double y2) override {
        pages.back().lines.push_back({line_width, x1, y1, x2, y2, colour_});
    }
    void new_page() override { pages.emplace_back(); }

    std::vector<DrawnPage> pages{1};

  private:
    controls::FontStyle font_;
    controls::Colour colour_ = 0;
};

}  // namespace brimley::testing
