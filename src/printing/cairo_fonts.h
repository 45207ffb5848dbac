// Fonts and shaped texts of a CairoCanvas. Private to it: no other file sees Cairo and Pango.
#pragma once

#include <cairo.h>
#include <pango/pangocairo.h>

#include <array>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include "controls/grid.h"

namespace brimley::printing {

// Owns an object of a C library.
template <auto release>
struct Releases {
    template <class Object>
    void operator()(Object* object) const {
        release(object);
    }
};
template <class Object, auto release>
using Held = std::unique_ptr<Object, Releases<release>>;

using Layout = Held<PangoLayout, g_object_unref>;

constexpr double points(int pango_units) { return static_cast<double>(pango_units) / PANGO_SCALE; }

// Pango at 72 units an inch, so that its points are ours, with widths that no screen has rounded.
class TextShaper {
  public:
    TextShaper();

    [[nodiscard]] Layout layout(const PangoFontDescription* font, std::string_view text) const;
    // Null when there is none.
    [[nodiscard]] Held<PangoFont, g_object_unref> load(const PangoFontDescription* font) const;

  private:
    Held<PangoFontMap, g_object_unref> fonts_;
    Held<PangoContext, g_object_unref> context_;
    Held<PangoAttrList, pango_attr_list_unref> attributes_;
};

// A letter of a font as it stands alone; unknown when it is another font that has it.
struct Letter {
    unsigned long glyph = 0;
    double advance = 0;
    bool known = false;
};

// A font in the size and style of a FontStyle, with the metrics and glyphs of its plain letters.
class PrintFont {
  public:
    // For pages with this transformation. Throws std::runtime_error when the system has no font at all.
    PrintFont(const TextShaper& shaper, const controls::FontStyle& style, const cairo_matrix_t& page);

    [[nodiscard]] bool is(const controls::FontStyle& style) const;
    [[nodiscard]] bool underlined() const { return style_.underline; }
    [[nodiscard]] const PangoFontDescription* description() const { return description_.get(); }
    [[nodiscard]] cairo_scaled_font_t* scaled() const { return scaled_.get(); }
    [[nodiscard]] double ascent() const { return ascent_; }
    // From the baseline down to its upper edge.
    [[nodiscard]] double underline_below() const { return underline_below_; }
    [[nodiscard]] double underline_thickness() const { return underline_thickness_; }
    [[nodiscard]] const Letter& letter(char byte) const;
    [[nodiscard]] const Letter& ellipsis() const { return ellipsis_; }

  private:
    void describe();
    void take_metrics(PangoFont* font);
    void take_scaled_font(PangoFont* font, const cairo_matrix_t& page);
    void take_letters(const TextShaper& shaper, const PangoFont* font);
    [[nodiscard]] Letter letter_of(const TextShaper& shaper, const PangoFont* font,
                                   std::string_view text) const;

    const controls::FontStyle style_;
    Held<PangoFontDescription, pango_font_description_free> description_;
    Held<cairo_scaled_font_t, cairo_scaled_font_destroy> scaled_;
    double ascent_ = 0;
    double underline_below_ = 0;
    double underline_thickness_ = 0;
    std::array<Letter, 128> letters_;  // by their ASCII codes
    Letter ellipsis_;
};

// The width of a layout's one line.
[[nodiscard]] double width_of(PangoLayout* layout);

// The texts that Pango has shaped last, of all fonts: names come again and again. Long texts are not kept.
class ShapedTexts {
  public:
    // One line, cut with an ellipsis to what has room. Valid until the next call.
    [[nodiscard]] PangoLayout* shape(const TextShaper& shaper, const PrintFont& font, const std::string& text,
                                     double room);

  private:
    struct Key {
        const PrintFont* font;
        double room;
        std::string text;

        bool operator==(const Key&) const = default;
    };
    struct Hash {
        std::size_t operator()(const Key* key) const {
            return std::hash<std::string>()(key->text) ^ std::hash<const PrintFont*>()(key->font);
        }
    };
    struct Equal {
        bool operator()(const Key* one, const Key* other) const { return *one == *other; }
    };
    struct Shaped {
        Key key;
        Layout layout;
    };

    PangoLayout* keep(Key key, Layout layout);

    std::list<Shaped> used_;  // the last one first
    std::unordered_map<const Key*, std::list<Shaped>::iterator, Hash, Equal> by_key_;
    Layout not_kept_;
};

}  // namespace brimley::printing
