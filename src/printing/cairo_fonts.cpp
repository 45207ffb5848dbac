#include "printing/cairo_fonts.h"

#include <algorithm>
#include <stdexcept>

#include "printing/clean_text.h"
#include "printing/report_format.h"

namespace brimley::printing {

namespace {

using FontOptions = Held<cairo_font_options_t, cairo_font_options_destroy>;

// Beyond these a page shows nothing, and a font cannot be made.
constexpr double kFontSizeMin = 0.1;
constexpr double kFontSizeMax = 2000;
constexpr std::size_t kNameMax = 200;

constexpr std::size_t kShapedMax = 2000;
constexpr std::size_t kKeptLengthMax = 200;

// What has room of a text, with its ellipsis. Pango finds the place; drawn as Pango has it, the ellipsis
// would be copied out of the file as all that was cut off.
std::string cut_text(PangoLayout* layout, const std::string& text, double room) {
    pango_layout_set_ellipsize(layout, PANGO_ELLIPSIZE_END);
    pango_layout_set_width(layout, static_cast<int>(std::max(0.0, room) * PANGO_SCALE));
    std::size_t kept = 0;
    for (const GSList* run = pango_layout_get_line_readonly(layout, 0)->runs; run; run = run->next) {
        const PangoItem& item = *static_cast<PangoGlyphItem*>(run->data)->item;
        if ((item.analysis.flags & PANGO_ANALYSIS_FLAG_IS_ELLIPSIS) != 0)
            kept = static_cast<std::size_t>(item.offset);
    }
    return text.substr(0, kept) + std::string(kEllipsis);
}

}  // namespace

TextShaper::TextShaper()
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

Layout TextShaper::layout(const PangoFontDescription* font, std::string_view text) const {
    Layout layout(pango_layout_new(context_.get()));
    pango_layout_set_font_description(layout.get(), font);
    pango_layout_set_attributes(layout.get(), attributes_.get());
    pango_layout_set_single_paragraph_mode(layout.get(), TRUE);
    pango_layout_set_text(layout.get(), text.data(), static_cast<int>(text.size()));
    return layout;
}

Held<PangoFont, g_object_unref> TextShaper::load(const PangoFontDescription* font) const {
    return Held<PangoFont, g_object_unref>(pango_context_load_font(context_.get(), font));
}

PrintFont::PrintFont(const TextShaper& shaper, const controls::FontStyle& style, const cairo_matrix_t& page)
    : style_(style), description_(pango_font_description_new()) {
    describe();
    const auto font = shaper.load(description_.get());
    if (!font) throw std::runtime_error("there is no font");
    take_metrics(font.get());
    take_scaled_font(font.get(), page);
    take_letters(shaper, font.get());
}

bool PrintFont::is(const controls::FontStyle& style) const {
    return style.size == style_.size && style.bold == style_.bold && style.italic == style_.italic &&
           style.underline == style_.underline && style.name == style_.name;
}

const Letter& PrintFont::letter(char byte) const {
    static constexpr Letter kUnknown;
    const auto code = static_cast<unsigned char>(byte);
    return code < letters_.size() ? letters_[code] : kUnknown;
}

void PrintFont::describe() {
    PangoFontDescription* const description = description_.get();
    const double size = std::clamp(style_.size, kFontSizeMin, kFontSizeMax);
    pango_font_description_set_family(description, clean_text(style_.name, kNameMax).c_str());
    pango_font_description_set_absolute_size(description, size * PANGO_SCALE);
    if (style_.bold) pango_font_description_set_weight(description, PANGO_WEIGHT_BOLD);
    if (style_.italic) pango_font_description_set_style(description, PANGO_STYLE_ITALIC);
}

void PrintFont::take_metrics(PangoFont* font) {
    const Held<PangoFontMetrics, pango_font_metrics_unref> metrics(pango_font_get_metrics(font, nullptr));
    ascent_ = points(pango_font_metrics_get_ascent(metrics.get()));
    underline_thickness_ = points(pango_font_metrics_get_underline_thickness(metrics.get()));
    underline_below_ = -points(pango_font_metrics_get_underline_position(metrics.get()));
}

// The font with the page's own transformation; on a turned page it would be looked up anew for each text.
void PrintFont::take_scaled_font(PangoFont* font, const cairo_matrix_t& page) {
    cairo_scaled_font_t* const upright = pango_cairo_font_get_scaled_font(PANGO_CAIRO_FONT(font));
    cairo_matrix_t size;
    cairo_scaled_font_get_font_matrix(upright, &size);
    const FontOptions options(cairo_font_options_create());
    cairo_scaled_font_get_font_options(upright, options.get());
    scaled_.reset(
        cairo_scaled_font_create(cairo_scaled_font_get_font_face(upright), &size, &page, options.get()));
}

void PrintFont::take_letters(const TextShaper& shaper, const PangoFont* font) {
    for (unsigned char code = ' '; code < 0x7F; ++code)
        letters_[code] = letter_of(shaper, font, std::string(1, static_cast<char>(code)));
    ellipsis_ = letter_of(shaper, font, kEllipsis);
}

Letter PrintFont::letter_of(const TextShaper& shaper, const PangoFont* font, std::string_view text) const {
    const Layout layout = shaper.layout(description_.get(), text);
    const PangoLayoutLine* const line = pango_layout_get_line_readonly(layout.get(), 0);
    if (!line->runs || line->runs->next) return {};
    const auto* const run = static_cast<PangoGlyphItem*>(line->runs->data);
    if (run->item->analysis.font != font || run->glyphs->num_glyphs != 1) return {};
    const PangoGlyphInfo& glyph = run->glyphs->glyphs[0];
    if ((glyph.glyph & PANGO_GLYPH_UNKNOWN_FLAG) != 0) return {};
    return {glyph.glyph, points(glyph.geometry.width), true};
}

double width_of(PangoLayout* layout) {
    PangoRectangle extents;
    pango_layout_line_get_extents(pango_layout_get_line_readonly(layout, 0), nullptr, &extents);
    return points(extents.width);
}

PangoLayout* ShapedTexts::shape(const TextShaper& shaper, const PrintFont& font, const std::string& text,
                                double room) {
    Key key{&font, room, text};
    if (const auto known = by_key_.find(&key); known != by_key_.end()) {
        used_.splice(used_.begin(), used_, known->second);
        return used_.front().layout.get();
    }
    Layout layout = shaper.layout(font.description(), text);
    if (width_of(layout.get()) > room)
        layout = shaper.layout(font.description(), cut_text(layout.get(), text, room));
    if (text.size() <= kKeptLengthMax) return keep(std::move(key), std::move(layout));
    not_kept_ = std::move(layout);
    return not_kept_.get();
}

PangoLayout* ShapedTexts::keep(Key key, Layout layout) {
    if (used_.size() == kShapedMax) {
        by_key_.erase(&used_.back().key);
        used_.pop_back();
    }
    used_.push_front({std::move(key), std::move(layout)});
    by_key_[&used_.front().key] = used_.begin();
    return used_.front().layout.get();
}

}  // namespace brimley::printing
