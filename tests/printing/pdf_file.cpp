#include "pdf_file.h"

#include <fmt/format.h>
#include <poppler-document.h>
#include <poppler-font.h>
#include <poppler-page-renderer.h>
#include <poppler-page.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>

namespace brimley::testing {

namespace {

std::unique_ptr<poppler::document> open(const std::string& path) {
    std::unique_ptr<poppler::document> document(poppler::document::load_from_file(path));
    if (!document) throw std::runtime_error("no PDF file: " + path);
    return document;
}

struct OpenPage {
    OpenPage(const std::string& path, int number)
        : document(open(path)), page(document->create_page(number)) {
        if (!page) throw std::runtime_error("there is no such page");
    }
    std::unique_ptr<poppler::document> document;
    std::unique_ptr<poppler::page> page;
};

std::string utf8(const poppler::ustring& text) {
    const poppler::byte_array bytes = text.to_utf8();
    return {bytes.begin(), bytes.end()};
}

}  // namespace

int PdfFile::pages() const { return open(path_)->pages(); }

std::pair<double, double> PdfFile::page_size() const {
    const poppler::rectf box = OpenPage(path_, 0).page->page_rect(poppler::media_box);
    return {box.width(), box.height()};
}

int PdfFile::rotation(int page) const {
    switch (OpenPage(path_, page).page->orientation()) {
        case poppler::page::landscape:
            return 90;
        case poppler::page::upside_down:
            return 180;
        case poppler::page::seascape:
            return 270;
        default:
            return 0;
    }
}

std::vector<PdfWord> PdfFile::words(int page) const {
    const OpenPage opened(path_, page);
    std::vector<PdfWord> words;
    for (const poppler::text_box& box : opened.page->text_list(poppler::page::text_list_include_font)) {
        const poppler::rectf place = box.bbox();
        words.push_back({utf8(box.text()), place.left(), place.top(), place.right(), place.bottom(),
                         box.get_font_name(), box.get_font_size()});
    }
    return words;
}

PdfWord PdfFile::word(const std::string& text, int page) const {
    for (const PdfWord& word : words(page))
        if (word.text == text) return word;
    return {"not found", 0, 0, 0, 0, "", 0};
}

std::string PdfFile::text(int page) const {
    return utf8(OpenPage(path_, page).page->text(poppler::rectf(), poppler::page::physical_layout));
}

std::vector<PdfFont> PdfFile::fonts() const {
    std::vector<PdfFont> fonts;
    for (const poppler::font_info& font : open(path_)->fonts())
        fonts.push_back({font.name(), font.is_embedded(), font.is_subset()});
    return fonts;
}

PdfColour PdfFile::colour_at(double x, double y, int page) const {
    const OpenPage opened(path_, page);
    const poppler::image image = poppler::page_renderer().render_page(opened.page.get());
    const char* const row = image.const_data() + static_cast<int>(y) * image.bytes_per_row();
    const auto part = [&](int place) {
        return static_cast<int>(static_cast<unsigned char>(row[4 * static_cast<int>(x) + place]));
    };
    return {part(2), part(1), part(0)};
}

std::string PdfFile::faults() const {
    const std::unique_ptr<std::FILE, decltype(&pclose)> check(
        popen(fmt::format("qpdf --check '{}' 2>&1", path_).c_str(), "r"), pclose);
    std::string said;
    char line[512];
    while (std::fgets(line, sizeof line, check.get()))
        said += line;
    return said.find("No syntax or stream encoding errors found") == std::string::npos ? said : "";
}

std::string PdfFile::bytes() const {
    std::ifstream file(path_, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace brimley::testing
