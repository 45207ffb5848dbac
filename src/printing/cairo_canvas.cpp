#include "printing/cairo_canvas.h"

#include <cairo-pdf.h>
#include <pango/pangocairo.h>

#include <array>
#include <cstdio>
#include <list>
#include <stdexcept>
#include <unordered_map>
#include <vector>

#include "printing/clean_text.h"

namespace brimley::printing {

namespace {

using controls::Colour;
using controls::FontStyle;

template <auto release>
struct Releases {
    template <class Object>
    void operator()(Object* object) const {
        release(object);
    }
};
template <class Object, auto release>
using Held = std::unique_ptr<Object, Releases<release>>;

using FontMap = Held<PangoFontMap, g_object_unref>;
using Context = Held<PangoContext, g_object_unref>;
using Layout = Held<PangoLayout, g_object_unref>;
using Description = Held<PangoFontDescription, pango_font_description_free>;
using Attributes = Held<PangoAttrList, pango_attr_list_unref>;
using Metrics = Held<PangoFontMetrics, pango_font_metrics_unref>;
using FontOptions = Held<cairo_font_options_t, cairo_font_options_destroy>;
using ScaledFont = Held<cairo_scaled_font_t, cairo_scaled_font_destroy>;
using Surface = Held<cairo_surface_t, cairo_surface_destroy>;
using Drawing = Held<cairo_t, cairo_destroy>;
using File = Held<std::FILE, std::fclose>;

double points(int pango_units) { return static_cast<double>(pango_units) / PANGO_SCALE; }

bool same(const FontStyle& one, const FontStyle& other) {
    return one.size == other.size && one.bold == other.bold && one.italic == other.italic &&
           one.underline == other.underline && one.name == other.name;
}

// Beyond these a page shows nothing, and a font cannot be made.
constexpr double kFontSizeMin = 0.1;
constexpr double kFontSizeMax = 2000;

// Wider than any page at any size that can be read.
constexpr std::size_t kTextMost = 4096;

// A letter of a font, as it stands alone.
struct Letter {
    unsigned long glyph = 0;
    double advance = 0;
    bool known = false;
};

// Pango at 72 units an inch, so that its points are ours, with widths that no screen has rounded.
class TextShaper {
  public:
    TextShaper()
        : fonts_(pango_cairo_font_map_new()),
          context_(pango_font_map_create_context(fonts_.get())),
          attributes_(pango_attr_list_new()) {
        pango_cairo_font_map_set_resolution(PANGO_CAIRO_FONT_MAP(fonts_.get()), kPointsPerInch);
        const FontOptions options(cairo_font_options_create());
        cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
        cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
        pango_cairo_context_set_font_options(context_.get(), options.get());
        pango_context_set_round_glyph_positions(context_.get(), FALSE);
        pango_context_set_language(context_.get(), pango_language_from_string("en"));
        pango_attr_list_insert(attributes_.get(), pango_attr_font_features_new("kern=0, liga=0, clig=0"));
    }

    [[nodiscard]] Layout layout(const PangoFontDescription* font, std::string_view text) const {
        Layout layout(pango_layout_new(context_.get()));
        pango_layout_set_font_description(layout.get(), font);
        pango_layout_set_attributes(layout.get(), attributes_.get());
        pango_layout_set_single_paragraph_mode(layout.get(), TRUE);
        pango_layout_set_text(layout.get(), text.data(), static_cast<int>(text.size()));
        return layout;
    }
    [[nodiscard]] PangoFont* load(const PangoFontDescription* font) const {
        return pango_context_load_font(context_.get(), font);
    }

  private:
    FontMap fonts_;
    Context context_;
    Attributes attributes_;
};

constexpr std::size_t kAscii = 128;

// A font in the size and style of a FontStyle, with what drawing plain letters needs at hand.
class SetFont {
  public:
    SetFont(const TextShaper& shaper, const FontStyle& wanted, const cairo_matrix_t& page, std::size_t number)
        : style(wanted), key(std::to_string(number) + ' '), description(pango_font_description_new()) {
        const double size = std::clamp(style.size, kFontSizeMin, kFontSizeMax);
        pango_font_description_set_family(description.get(), clean_text(style.name, kNameMost).c_str());
        pango_font_description_set_absolute_size(description.get(), size * PANGO_SCALE);
        if (style.bold) pango_font_description_set_weight(description.get(), PANGO_WEIGHT_BOLD);
        if (style.italic) pango_font_description_set_style(description.get(), PANGO_STYLE_ITALIC);
        const Held<PangoFont, g_object_unref> font(shaper.load(description.get()));
        if (!font) throw std::runtime_error("there is no font");
        take_metrics(font.get());
        take_scaled_font(font.get(), page);
        for (unsigned char byte = ' '; byte < 0x7F; ++byte)
            letters[byte] = letter(shaper, font.get(), std::string(1, static_cast<char>(byte)));
        ellipsis = letter(shaper, font.get(), kEllipsis);
    }

    const FontStyle style;
    const std::string key;  // of its shaped texts
    Description description;
    ScaledFont scaled;
    double ascent = 0;
    double underline_below = 0;  // from the baseline down to its middle
    double underline_thickness = 0;
    std::array<Letter, kAscii> letters;
    Letter ellipsis;

  private:
    static constexpr std::size_t kNameMost = 200;

    void take_metrics(PangoFont* font) {
        const Metrics metrics(pango_font_get_metrics(font, nullptr));
        ascent = points(pango_font_metrics_get_ascent(metrics.get()));
        underline_thickness = points(pango_font_metrics_get_underline_thickness(metrics.get()));
        underline_below =
            underline_thickness / 2 - points(pango_font_metrics_get_underline_position(metrics.get()));
    }
    // The font of the page's own transformation: a turned page would look it up anew for each text.
    void take_scaled_font(PangoFont* font, const cairo_matrix_t& page) {
        cairo_scaled_font_t* const upright = pango_cairo_font_get_scaled_font(PANGO_CAIRO_FONT(font));
        cairo_matrix_t size;
        cairo_scaled_font_get_font_matrix(upright, &size);
        const FontOptions options(cairo_font_options_create());
        cairo_scaled_font_get_font_options(upright, options.get());
        scaled.reset(
            cairo_scaled_font_create(cairo_scaled_font_get_font_face(upright), &size, &page, options.get()));
    }
    // Known only if this very font has it.
    [[nodiscard]] Letter letter(const TextShaper& shaper, PangoFont* font, std::string_view text) const {
        const Layout layout = shaper.layout(description.get(), text);
        const PangoLayoutLine* const line = pango_layout_get_line_readonly(layout.get(), 0);
        if (!line->runs || line->runs->next) return {};
        const auto* const run = static_cast<PangoGlyphItem*>(line->runs->data);
        if (run->item->analysis.font != font || run->glyphs->num_glyphs != 1) return {};
        const PangoGlyphInfo& glyph = run->glyphs->glyphs[0];
        if ((glyph.glyph & PANGO_GLYPH_UNKNOWN_FLAG) != 0) return {};
        return {glyph.glyph, points(glyph.geometry.width), true};
    }
};

// The texts that Pango has shaped last: names come again and again.
class ShapedTexts {
  public:
    [[nodiscard]] PangoLayout* find(const std::string& key) {
        const auto known = by_key_.find(key);
        if (known == by_key_.end()) return nullptr;
        used_.splice(used_.begin(), used_, known->second);
        return used_.front().layout.get();
    }
    PangoLayout* keep(std::string key, Layout layout) {
        if (used_.size() == kMost) {
            by_key_.erase(used_.back().key);
            used_.pop_back();
        }
        used_.push_front({std::move(key), std::move(layout)});
        by_key_[used_.front().key] = used_.begin();
        return used_.front().layout.get();
    }

  private:
    struct Shaped {
        std::string key;
        Layout layout;
    };
    static constexpr std::size_t kMost = 2000;

    std::list<Shaped> used_;  // the last one first
    std::unordered_map<std::string_view, std::list<Shaped>::iterator> by_key_;
};

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
        if (font_ && same(font_->style, style)) return;
        for (const auto& known : fonts_)
            if (same(known->style, style)) return use(*known);
        fonts_.push_back(std::make_unique<SetFont>(shaper_, style, turn_, fonts_.size()));
        use(*fonts_.back());
    }
    void set_colour(Colour colour) {
        const auto part = [&](int shift) { return static_cast<double>(colour >> shift & 0xFF) / 255; };
        cairo_set_source_rgb(drawing_.get(), part(0), part(8), part(16));
    }
    void text(const Rectangle& rectangle, double hpos, std::string_view text) {
        if (set_letters(text))
            draw_letters(rectangle, hpos, text);
        else
            draw_shaped(rectangle, hpos, clean_text(text, kTextMost));
    }
    void fill(const Rectangle& rectangle) {
        cairo_rectangle(drawing_.get(), rectangle.x, down(rectangle.top()), rectangle.width,
                        rectangle.height);
        cairo_fill(drawing_.get());
    }
    void line(double line_width, double x1, double y1, double x2, double y2) {
        cairo_set_line_width(drawing_.get(), line_width);
        cairo_move_to(drawing_.get(), x1, down(y1));
        cairo_line_to(drawing_.get(), x2, down(y2));
        cairo_stroke(drawing_.get());
    }
    void new_page() { cairo_show_page(drawing_.get()); }
    void finish() {
        cairo_show_page(drawing_.get());
        const cairo_status_t drawn = cairo_status(drawing_.get());
        drawing_.reset();
        cairo_surface_finish(surface_.get());
        const cairo_status_t written = cairo_surface_status(surface_.get());
        const bool closed = std::fclose(file_.release()) == 0;
        for (const cairo_status_t status : {drawn, written})
            if (status != CAIRO_STATUS_SUCCESS) throw std::runtime_error(cairo_status_to_string(status));
        if (!closed) throw std::runtime_error("the file could not be written to its end");
    }

  private:
    static cairo_status_t write(void* file, const unsigned char* data, unsigned int length) {
        const bool written = std::fwrite(data, 1, length, static_cast<std::FILE*>(file)) == length;
        return written ? CAIRO_STATUS_SUCCESS : CAIRO_STATUS_WRITE_ERROR;
    }
    // Cairo counts from the upper edge.
    [[nodiscard]] double down(double y) const { return rect_height_ - y; }

    void use(const SetFont& font) {
        font_ = &font;
        cairo_set_scaled_font(drawing_.get(), font.scaled.get());
    }

    // Where a text of this width starts; one that is cut starts at the left edge.
    [[nodiscard]] static double start(const Rectangle& rectangle, double hpos, double width) {
        return rectangle.x + std::max(0.0, rectangle.width - width) * hpos;
    }
    [[nodiscard]] double baseline(const Rectangle& rectangle) const {
        return down(rectangle.top()) + font_->ascent;
    }
    void underline(double x, double y, double width) {
        if (!font_->style.underline) return;
        const double thickness = font_->underline_thickness;
        cairo_rectangle(drawing_.get(), x, y + font_->underline_below - thickness / 2, width, thickness);
        cairo_fill(drawing_.get());
    }

    // --- letters of the font itself, one by one ---

    // Takes the text letter by letter. False when it holds anything but plain letters of the font.
    [[nodiscard]] bool set_letters(std::string_view text) {
        if (text.size() > kTextMost || !font_->ellipsis.known) return false;
        glyphs_.clear();
        width_ = 0;
        for (const char byte : text) {
            const auto code = static_cast<unsigned char>(byte);
            if (code >= kAscii || !font_->letters[code].known) return false;
            put(font_->letters[code]);
        }
        return true;
    }
    void put(const Letter& letter) {
        glyphs_.push_back({letter.glyph, width_, 0});
        width_ += letter.advance;
    }
    void draw_letters(const Rectangle& rectangle, double hpos, std::string_view text) {
        letters_.assign(text);
        clusters_.assign(text.size(), {1, 1});
        if (width_ > rectangle.width) cut_letters(rectangle.width);
        const double x = start(rectangle, hpos, width_);
        const double y = baseline(rectangle);
        for (cairo_glyph_t& glyph : glyphs_) {
            glyph.x += x;
            glyph.y = y;
        }
        cairo_show_text_glyphs(drawing_.get(), letters_.data(), static_cast<int>(letters_.size()),
                               glyphs_.data(), static_cast<int>(glyphs_.size()), clusters_.data(),
                               static_cast<int>(clusters_.size()), cairo_text_cluster_flags_t{});
        underline(x, y, width_);
    }
    // Takes letters away until the ellipsis has room, which stands there in any case.
    void cut_letters(double room) {
        while (!glyphs_.empty() && width_ + font_->ellipsis.advance > room) {
            width_ = glyphs_.back().x;
            glyphs_.pop_back();
        }
        letters_.resize(glyphs_.size());
        letters_ += kEllipsis;
        clusters_.assign(glyphs_.size(), {1, 1});
        clusters_.push_back({static_cast<int>(kEllipsis.size()), 1});
        put(font_->ellipsis);
    }

    // --- any other text ---

    void draw_shaped(const Rectangle& rectangle, double hpos, const std::string& text) {
        PangoLayout* const layout = shaped(text);
        const double width = width_in(layout, rectangle.width);
        const double x = start(rectangle, hpos, width);
        const double y = baseline(rectangle);
        cairo_move_to(drawing_.get(), x, y);
        pango_cairo_show_layout_line(drawing_.get(), pango_layout_get_line_readonly(layout, 0));
        cairo_set_scaled_font(drawing_.get(), font_->scaled.get());
        underline(x, y, width);
    }
    [[nodiscard]] PangoLayout* shaped(const std::string& text) {
        std::string key = font_->key + text;
        if (PangoLayout* const known = shaped_.find(key)) return known;
        return shaped_.keep(std::move(key), shaper_.layout(font_->description.get(), text));
    }
    // The width of the text, cut if it must be.
    [[nodiscard]] static double width_in(PangoLayout* layout, double room) {
        pango_layout_set_ellipsize(layout, PANGO_ELLIPSIZE_NONE);
        pango_layout_set_width(layout, -1);
        if (line_width(layout) <= room) return line_width(layout);
        pango_layout_set_ellipsize(layout, PANGO_ELLIPSIZE_END);
        pango_layout_set_width(layout, static_cast<int>(std::max(0.0, room) * PANGO_SCALE));
        return line_width(layout);
    }
    [[nodiscard]] static double line_width(PangoLayout* layout) {
        PangoRectangle extents;
        pango_layout_line_get_extents(pango_layout_get_line_readonly(layout, 0), nullptr, &extents);
        return points(extents.width);
    }

    const bool landscape_;
    const double rect_height_;
    cairo_matrix_t turn_{1, 0, 0, 1, 0, 0};
    File file_;
    Surface surface_;
    Drawing drawing_;
    TextShaper shaper_;
    std::vector<std::unique_ptr<SetFont>> fonts_;
    const SetFont* font_ = nullptr;
    ShapedTexts shaped_;

    // The text being drawn; kept for the memory that they hold.
    std::string letters_;
    std::vector<cairo_glyph_t> glyphs_;
    std::vector<cairo_text_cluster_t> clusters_;
    double width_ = 0;
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
