// The font bar: font, size, colour, style and alignment of the columns of dbgrid1.
//
// A change is seen at once and kept until the form closes; only Save Font writes it to the company.
#include <algorithm>

#include "frame/document_form.h"
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

void DocumentForm::fill_font_bar() {
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

// The columns that the font bar is about, by their places in the grid's array.
std::vector<int> DocumentForm::columns_to_style() const {
    const std::vector<int> seen = dbgrid1.column_order();
    if (cmbselcol.text() == kAllColumns) return seen;
    const int last = static_cast<int>(seen.size()) - 1;
    if (const auto selected = dbgrid1.selected_columns()) {
        const int from = std::max(std::min(selected->from, selected->to), 0);
        const int to = std::min(std::max(selected->from, selected->to), last);
        return from > to ? std::vector<int>{} : std::vector<int>(seen.begin() + from, seen.begin() + to + 1);
    }
    const int current = dbgrid1.column();
    return current < 0 || current > last ? std::vector<int>{} : std::vector<int>{current};
}

void DocumentForm::style_columns(const std::function<void(GridColumn&)>& change) {
    for (const int column : columns_to_style())
        change(dbgrid1.columns[static_cast<std::size_t>(column)]);
    dbgrid1.rebind();
}

bool DocumentForm::toggle(int command) {
    bars_.set_pressed(command, !bars_.pressed(command));
    return bars_.pressed(command);
}

void DocumentForm::font_bold() {
    const bool bold = toggle(command::kBold);
    style_columns([bold](GridColumn& column) { column.font.bold = bold; });
}

void DocumentForm::font_italic() {
    const bool italic = toggle(command::kItalic);
    style_columns([italic](GridColumn& column) { column.font.italic = italic; });
}

void DocumentForm::font_underline() {
    const bool underline = toggle(command::kUnderline);
    style_columns([underline](GridColumn& column) { column.font.underline = underline; });
}

void DocumentForm::align(Alignment alignment) {
    show_alignment(alignment);
    style_columns([alignment](GridColumn& column) { column.alignment = alignment; });
}

void DocumentForm::show_alignment(Alignment alignment) {
    for (const AlignmentCommand& each : kAlignmentCommands)
        bars_.set_pressed(each.id, each.alignment == alignment);
}

void DocumentForm::cmbfont_size_itemchange() {
    const double size = kernel::money_value(cmbfont_size.text());
    style_columns([size](GridColumn& column) { column.font.size = size; });
}

void DocumentForm::cmbitfont_itemchange() {
    style_columns([this](GridColumn& column) { column.font.name = cmbitfont.text(); });
}

void DocumentForm::cmbitcolor_itemchange() {
    const controls::Colour colour = presentation::HTMLToRGB(cmbitcolor.text());
    style_columns([colour](GridColumn& column) { column.font_colour = colour; });
}

// Within a column nothing changes, whatever the row.
void DocumentForm::dbgrid1_RowColChange(int old_column) {
    const int current = dbgrid1.column();
    if (current == old_column || current < 0 || current >= static_cast<int>(dbgrid1.columns.size())) return;
    const GridColumn& column = dbgrid1.columns[static_cast<std::size_t>(current)];
    cmbitfont.set(column.font.name);
    cmbitcolor.set(presentation::colour_code(column.font_colour));
    if (cmbitcolor.list_index() < 0) cmbitcolor.clear_choice();
    cmbfont_size.set(store::shortest_number(column.font.size));
    bars_.set_pressed(command::kBold, column.font.bold);
    bars_.set_pressed(command::kItalic, column.font.italic);
    bars_.set_pressed(command::kUnderline, column.font.underline);
    show_alignment(column.alignment);
}

void DocumentForm::cmdsave_font_Click() {
    step("cmdsave_font_Click",
         [&] { presentation::save_grid_fonts(dbgrid1, kernel(), identity().class_name, dbgrid1.name()); });
    tell("save font complete");
}

void DocumentForm::cmdrestore_font_click() {
    step("cmdrestore_font_click",
         [&] { presentation::restore_grid_fonts(dbgrid1, kernel(), identity().class_name, dbgrid1.name()); });
}

bool DocumentForm::execute_font(int id) {
    switch (id) {
        case command::kFont:
            frame_font.set_visible(true);
            return true;
        case command::kSaveFont:  // for everybody, so not by those who may only look
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
