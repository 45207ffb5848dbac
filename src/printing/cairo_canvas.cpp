#include "printing/cairo_canvas.h"

#include <cairo-pdf.h>
#include <pango/pangocairo.h>

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <vector>

#include "printing/cairo_fonts.h"
#include "printing/clean_text.h"

namespace brimley::printing {

namespace {

using controls::Colour;
using controls::FontStyle;

using Surface = Held<cairo_surface_t, cairo_surface_destroy>;
using Drawing = Held<cairo_t, cairo_destroy>;
using File = Held<std::FILE, std::fclose>;

// Longer than a page is wide at any size that can be read.
constexpr std::size_t kTextMax = 4096;

}  // namespace

class CairoCanvas::Pages {
  public:
    Pages(const std::string& path, PageSize page, Orientation orientation)
        : landscape_(orientation == Orientation::landscape),
          rect_height_(landscape_ ? page.width : page.height),
          file_(std::fopen(path.c_str(), "wb")) {
        if (!file_) throw std::runtime_error("cannot write " + path);
        surface_.reset(cairo_pdf_surface_create_for_stream(write, file_.get(), page.width, page.height));
        // The date of today is the only thing in the file that changes by itself.
        cairo_pdf_surface_set_metadata(surface_.get(), CAIRO_PDF_METADATA_CREATE_DATE, "");
        if (landscape_) cairo_matrix_init(&turn_, 0, -1, 1, 0, 0, page.height);
        drawing_.reset(cairo_create(surface_.get()));
        cairo_set_matrix(drawing_.get(), &turn_);
    }

    void set_font(const FontStyle& style) {
        if (font_ && font_->is(style)) return;
        for (const auto& known : fonts_)
            if (known->is(style)) return use(*known);
        fonts_.push_back(std::make_unique<PrintFont>(shaper_, style, turn_));
        use(*fonts_.back());
    }
    void set_colour(Colour colour) {
        if (colour == colour_) return;
        show_letters();
        colour_ = colour;
        const auto part = [&](int shift) { return static_cast<double>(colour >> shift & 0xFF) / 255; };
        cairo_set_source_rgb(drawing_.get(), part(0), part(8), part(16));
    }
    void text(const Rectangle& rectangle, double hpos, std::string_view text) {
        if (set_letters(text, rectangle.width))
            draw_letters(rectangle, hpos, text);
        else
            draw_shaped(rectangle, hpos, clean_text(text, kTextMax));
    }
    void fill(const Rectangle& rectangle) {
        show_letters();
        cairo_rectangle(drawing_.get(), rectangle.x, down(rectangle.top()), rectangle.width,
                        rectangle.height);
        cairo_fill(drawing_.get());
    }
    void line(double line_width, double x1, double y1, double x2, double y2) {
        show_letters();
        cairo_set_line_width(drawing_.get(), line_width);
        cairo_move_to(drawing_.get(), x1, down(y1));
        cairo_line_to(drawing_.get(), x2, down(y2));
        cairo_stroke(drawing_.get());
    }
    void new_page() {
        show_letters();
        cairo_show_page(drawing_.get());
        require_success(cairo_status(drawing_.get()));
        must_be_written();
    }
    void finish() {
        new_page();
        drawing_.reset();
        cairo_surface_finish(surface_.get());
        require_success(cairo_surface_status(surface_.get()));
        std::fflush(file_.get());
        must_be_written();
        file_.reset();
    }

  private:
    static cairo_status_t write(void* file, const unsigned char* data, unsigned int length) {
        const bool written = std::fwrite(data, 1, length, static_cast<std::FILE*>(file)) == length;
        return written ? CAIRO_STATUS_SUCCESS : CAIRO_STATUS_WRITE_ERROR;
    }
    static void require_success(cairo_status_t status) {
        if (status != CAIRO_STATUS_SUCCESS) throw std::runtime_error(cairo_status_to_string(status));
    }
    // Cairo may forget that a part of the file could not be written.
    void must_be_written() const {
        if (std::ferror(file_.get()) != 0) require_success(CAIRO_STATUS_WRITE_ERROR);
    }
    // Cairo counts from the upper edge.
    [[nodiscard]] double down(double y) const { return rect_height_ - y; }

    void use(const PrintFont& font) {
        show_letters();
        font_ = &font;
        cairo_set_scaled_font(drawing_.get(), font.scaled());
    }

    // Where a text of this width starts; one that is cut starts at the left edge.
    [[nodiscard]] static double start(const Rectangle& rectangle, double hpos, double width) {
        return rectangle.x + std::max(0.0, rectangle.width - width) * hpos;
    }
    [[nodiscard]] double baseline(const Rectangle& rectangle) const {
        return down(rectangle.top()) + font_->ascent();
    }
    void underline(double x, double y, double width) {
        if (!font_->underlined()) return;
        show_letters();
        cairo_rectangle(drawing_.get(), x, y + font_->underline_below(), width, font_->underline_thickness());
        cairo_fill(drawing_.get());
    }

    // --- letters of the font itself, one by one ---

    // Takes the text letter by letter until the room is used up. False when anything but a plain letter of
    // the font comes before.
    [[nodiscard]] bool set_letters(std::string_view text, double room) {
        if (!font_->ellipsis().known) return false;
        letters_.clear();
        width_ = 0;
        for (std::size_t i = 0; i < text.size() && width_ <= room; ++i) {
            const Letter& letter = font_->letter(text[i]);
            if (!letter.known) return false;
            letters_.push_back(&letter);
            width_ += letter.advance;
        }
        return true;
    }
    void draw_letters(const Rectangle& rectangle, double hpos, std::string_view text) {
        const bool cut = width_ > rectangle.width;
        if (cut) make_room_for_ellipsis(rectangle.width);
        const double x = start(rectangle, hpos, width_);
        const double y = baseline(rectangle);
        double at = x;
        for (std::size_t i = 0; i < letters_.size(); ++i)
            at = put(*letters_[i], cut && i + 1 == letters_.size() ? kEllipsis : text.substr(i, 1), at, y);
        underline(x, y, width_);
    }
    // Takes letters away until the ellipsis has room, which stands there in any case.
    void make_room_for_ellipsis(double room) {
        const Letter& ellipsis = font_->ellipsis();
        while (!letters_.empty() && width_ + ellipsis.advance > room) {
            width_ -= letters_.back()->advance;
            letters_.pop_back();
        }
        letters_.push_back(&ellipsis);
        width_ += ellipsis.advance;
    }
    double put(const Letter& letter, std::string_view character, double x, double y) {
        waiting_text_ += character;
        waiting_glyphs_.push_back({letter.glyph, x, y});
        waiting_clusters_.push_back({static_cast<int>(character.size()), 1});
        return x + letter.advance;
    }
    // Cairo takes longest over many short texts. So letters of one font and colour wait for each other until
    // anything else is drawn.
    void show_letters() {
        if (waiting_glyphs_.empty()) return;
        cairo_show_text_glyphs(drawing_.get(), waiting_text_.data(), static_cast<int>(waiting_text_.size()),
                               waiting_glyphs_.data(), static_cast<int>(waiting_glyphs_.size()),
                               waiting_clusters_.data(), static_cast<int>(waiting_clusters_.size()),
                               cairo_text_cluster_flags_t{});
        waiting_text_.clear();
        waiting_glyphs_.clear();
        waiting_clusters_.clear();
    }

    // --- any other text ---

    void draw_shaped(const Rectangle& rectangle, double hpos, const std::string& text) {
        show_letters();
        PangoLayout* const layout = shaped_.shape(shaper_, *font_, text, rectangle.width);
        const double width = width_of(layout);
        const double x = start(rectangle, hpos, width);
        const double y = baseline(rectangle);
        cairo_move_to(drawing_.get(), x, y);
        pango_cairo_show_layout_line(drawing_.get(), pango_layout_get_line_readonly(layout, 0));
        underline(x, y, width);
    }

    const bool landscape_;
    const double rect_height_;
    cairo_matrix_t turn_{1, 0, 0, 1, 0, 0};
    File file_;
    Surface surface_;
    Drawing drawing_;
    TextShaper shaper_;
    std::vector<std::unique_ptr<PrintFont>> fonts_;
    const PrintFont* font_ = nullptr;
    ShapedTexts shaped_;

    Colour colour_ = 0;

    // The text that is being set.
    std::vector<const Letter*> letters_;
    double width_ = 0;
    // What is not drawn yet.
    std::string waiting_text_;
    std::vector<cairo_glyph_t> waiting_glyphs_;
    std::vector<cairo_text_cluster_t> waiting_clusters_;
};

CairoCanvas::CairoCanvas(const std::string& path, PageSize page, Orientation orientation)
    : pages_(std::make_unique<Pages>(path, page, orientation)) {}
CairoCanvas::~CairoCanvas() = default;

void CairoCanvas::set_font(const FontStyle& font) { pages_->set_font(font); }
void CairoCanvas::set_colour(Colour colour) { pages_->set_colour(colour); }
void CairoCanvas::text(const Rectangle& rectangle, double hpos, std::string_view text) {
    pages_->text(rectangle, hpos, text);
}
void CairoCanvas::fill(const Rectangle& rectangle) { pages_->fill(rectangle); }
void CairoCanvas::line(double line_width, double x1, double y1, double x2, double y2) {
    pages_->line(line_width, x1, y1, x2, y2);
}
void CairoCanvas::new_page() { pages_->new_page(); }
void CairoCanvas::finish() { pages_->finish(); }

}  // namespace brimley::printing
