// A PDF file, read back.
#pragma once

#include <string>
#include <vector>

namespace brimley::testing {

// A text without blanks. Points from the upper left corner of the page as a viewer shows it.
struct PdfWord {
    std::string text;
    double left, top, right, bottom;
    std::string font;  // of its first letter
    double size;

    [[nodiscard]] double width() const { return right - left; }
};

struct PdfFont {
    std::string name;
    bool embedded, subset;
};

struct PdfColour {
    int red, green, blue;

    bool operator==(const PdfColour&) const = default;
};

class PdfFile {
  public:
    explicit PdfFile(std::string path) : path_(std::move(path)) {}

    [[nodiscard]] int pages() const;
    // Width and height in points, before it is turned.
    [[nodiscard]] std::pair<double, double> page_size() const;
    // How a viewer turns the page, clockwise: 0, 90, 180 or 270.
    [[nodiscard]] int rotation(int page = 0) const;
    [[nodiscard]] std::vector<PdfWord> words(int page = 0) const;
    // The first word of this text; of no size when there is none.
    [[nodiscard]] PdfWord word(const std::string& text, int page = 0) const;
    // All that is copied out of a page.
    [[nodiscard]] std::string text(int page = 0) const;
    [[nodiscard]] std::vector<PdfFont> fonts() const;
    // What is seen at a point, from the upper left corner.
    [[nodiscard]] PdfColour colour_at(double x, double y, int page = 0) const;
    // What `qpdf --check` finds, empty for a sound file.
    [[nodiscard]] std::string faults() const;
    [[nodiscard]] std::string bytes() const;

  private:
    std::string path_;
};

}  // namespace brimley::testing
