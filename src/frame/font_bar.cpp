#include "frame/font_bar.h"

#include <algorithm>

#include "kernel/money.h"
#include "presentation/grid_layout.h"
#include "presentation/pickers.h"

namespace brimley::frame {

using controls::Alignment;
using controls::GridColumn;

namespace {

constexpr const char* kAllColumns = "all columns";
constexpr const char* kSelectedColumns = "selected columns";

struct AlignmentCommand {
    int id;
    Alignment alignment;
};
constexpr AlignmentCommand kAlignmentCommands[] = {{command::kAlignLeft, Alignment::left},
                                                   {command::kAlignCentre, Alignment::centre},
                                                   {command::kAlignRight, Alignment::right}};

}  // namespace

FontBar::FontBar(Form& form, controls::Grid& grid)
    : FormPart(form),
      frame_font(form.controls(), "frame_font", "Font"),
      cmbselcol(form.controls(), "cmbselcol"),
      cmbitfont(form.controls(), "cmbitfont"),
      cmbitcolor(form.controls(), "cmbitcolor", "0;1000;<;|1;2000;<;"),
      cmbfont_size(form.controls(), "cmbfont_size"),
      bars_(form.CommandBars1()),
      grid_(grid) {
    for (controls::ComboBox* combo : {&cmbselcol, &cmbitfont, &cmbitcolor, &cmbfont_size})
        combo->lies_in(frame_font);
    frame_font.set_visible(false);
}

void FontBar::fill() {
    cmbselcol.set_items({{kAllColumns}, {kSelectedColumns}});
    cmbselcol.set(kAllColumns);
    cmbfont_size.set_items(
        {{"8"}, {"9"}, {"10"}, {"10.5"}, {"11"}, {"12"}, {"14"}, {"16"}, {"18"}, {"20"}, {"22"}, {"24"}});
    presentation::cFontsCombo::Init(cmbitfont, [this] { return desk().font_families(); });
    cmbitfont.set("Arial");
    presentation::cColorsCombo::Init(cmbitcolor);
    cmbfont_size.on_item_select = [this] { cmbfont_size_itemchange(); };
    cmbitfont.on_item_select = [this] { cmbitfont_itemchange(); };
    cmbitcolor.on_item_select = [this] { cmbitcolor_itemchange(); };
}

// The columns that the font bar acts on, by their places in the grid's array.
std::vector<int> FontBar::columns_to_style() const {
    const std::vector<int> seen = grid_.column_order();
    if (cmbselcol.text() == kAllColumns) return seen;
    const int last = static_cast<int>(seen.size()) - 1;
    if (const auto selected = grid_.selected_columns()) {
        const int from = std::max(std::min(selected->from, selected->to), 0);
        const int to = std::min(std::max(selected->from, selected->to), last);
        return from > to ? std::vector<int>{} : std::vector<int>(seen.begin() + from, seen.begin() + to + 1);
    }
    const int current = grid_.column();
    return current < 0 || current > last ? std::vector<int>{} : std::vector<int>{current};
}

void FontBar::style_columns(const std::function<void(GridColumn&)>& change) {
    for (const int column : columns_to_style())
        change(grid_.columns[static_cast<std::size_t>(column)]);
    grid_.rebind();
}

bool FontBar::toggle(int command) {
    bars_.set_pressed(command, !bars_.pressed(command));
    return bars_.pressed(command);
}

void FontBar::font_bold() {
    const bool bold = toggle(command::kBold);
    style_columns([bold](GridColumn& column) { column.font.bold = bold; });
}

void FontBar::font_italic() {
    const bool italic = toggle(command::kItalic);
    style_columns([italic](GridColumn& column) { column.font.italic = italic; });
}

void FontBar::font_underline() {
    const bool underline = toggle(command::kUnderline);
    style_columns([underline](GridColumn& column) { column.font.underline = underline; });
}

void FontBar::align(Alignment alignment) {
    show_alignment(alignment);
    style_columns([alignment](GridColumn& column) { column.alignment = alignment; });
}

void FontBar::show_alignment(Alignment alignment) {
    for (const AlignmentCommand& each : kAlignmentCommands)
        bars_.set_pressed(each.id, each.alignment == alignment);
}

void FontBar::cmbfont_size_itemchange() {
    const double size = kernel::money_value(cmbfont_size.text());
    style_columns([size](GridColumn& column) { column.font.size = size; });
}

void FontBar::cmbitfont_itemchange() {
    style_columns([this](GridColumn& column) { column.font.name = cmbitfont.text(); });
}

void FontBar::cmbitcolor_itemchange() {
    const controls::Colour colour = presentation::HTMLToRGB(cmbitcolor.text());
    style_columns([colour](GridColumn& column) { column.font_colour = colour; });
}

// Within a column nothing changes, whatever the row.
void FontBar::follow_column(int old_column) {
    const int current = grid_.column();
    if (current == old_column || current < 0 || current >= static_cast<int>(grid_.columns.size())) return;
    const GridColumn& column = grid_.columns[static_cast<std::size_t>(current)];
    cmbitfont.set(column.font.name);
    cmbitcolor.set(presentation::colour_code(column.font_colour));
    if (cmbitcolor.list_index() < 0) cmbitcolor.clear_choice();
    cmbfont_size.set(store::shortest_number(column.font.size));
    bars_.set_pressed(command::kBold, column.font.bold);
    bars_.set_pressed(command::kItalic, column.font.italic);
    bars_.set_pressed(command::kUnderline, column.font.underline);
    show_alignment(column.alignment);
}

void FontBar::cmdsave_font_Click() {
    bool may_save = true;
    step("cmdsave_font_Click", [&] {
        may_save = still_may_update();
        if (may_save) presentation::save_grid_fonts(grid_, kernel(), identity().class_name, grid_.name());
    });
    if (may_save) tell("save font complete");
}

void FontBar::cmdrestore_font_click() {
    step("cmdrestore_font_click",
         [&] { presentation::restore_grid_fonts(grid_, kernel(), identity().class_name, grid_.name()); });
}

bool FontBar::execute(int id) {
    switch (id) {
        case command::kFont:
            frame_font.set_visible(true);
            return true;
        case command::kSaveFont:  // for everybody, so only with the right to write
            if (rights().Update) cmdsave_font_Click();
            return true;
        case command::kRestoreFont:
            cmdrestore_font_click();
            return true;
        case command::kBold:
            font_bold();
            return true;
        case command::kItalic:
            font_italic();
            return true;
        case command::kUnderline:
            font_underline();
            return true;
        case command::kAlignLeft:
            font_align_left();
            return true;
        case command::kAlignCentre:
            font_align_center();
            return true;
        case command::kAlignRight:
            font_align_right();
            return true;
        default:
            return false;
    }
}

}  // namespace brimley::frame
