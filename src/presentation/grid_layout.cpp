#include "presentation/grid_layout.h"

#include "presentation/colours.h"

#include <fmt/format.h>

#include <algorithm>

namespace brimley::presentation {

namespace {

using controls::Grid;
using controls::GridColumn;
using store::quoted;
using store::Recordset;

constexpr int kRowHeightMin = 200;
constexpr int kRowHeightMax = 600;

std::string layout_query(std::string_view form, std::string_view grid_name) {
    return fmt::format(
        "SELECT * FROM Grid_property WHERE form_name = {} AND grid_name = {} ORDER BY col_order",
        quoted(form), quoted(grid_name));
}

bool filled(const store::Value& value) { return !value.text().empty(); }

void take_font(controls::FontStyle& font, const Recordset& row) {
    if (filled(row.field("font_name"))) font.name = row.text("font_name");
    if (filled(row.field("font_size"))) font.size = row.number("font_size");
    if (filled(row.field("font_italic"))) font.italic = row.flag("font_italic");
    if (filled(row.field("font_bold"))) font.bold = row.flag("font_bold");
    if (filled(row.field("font_underline"))) font.underline = row.flag("font_underline");
}

controls::Alignment alignment_of(double stored) {
    if (stored == 1) return controls::Alignment::right;
    if (stored == 2) return controls::Alignment::centre;
    return controls::Alignment::left;
}

std::string caption_of(const Recordset& row) {
    return row.field("Caption").is_null() ? " " : row.text("Caption");
}

// What the font bar changes; what the row leaves blank is as the grid has it by itself.
void take_face(GridColumn& column, const Recordset& row) {
    column.font = {};
    take_font(column.font, row);
    column.font_colour = 0;
    if (filled(row.field("font_color")))
        column.font_colour =
            static_cast<controls::Colour>(static_cast<std::int64_t>(row.number("font_color")));
    column.alignment = column.check_box ? controls::Alignment::centre : controls::Alignment::left;
    if (filled(row.field("Alignment"))) column.alignment = alignment_of(row.number("Alignment"));
}

GridColumn column_of(const Recordset& row, int order) {
    GridColumn column;
    column.order = order;
    column.visible = row.flag("Visible");
    column.caption = caption_of(row);
    column.stored_caption = column.caption;
    column.locked = row.flag("Locked");
    column.check_box = row.text("cell_type") == "dbgCheckBox";
    take_face(column, row);
    column.auto_completion = row.flag("AutoCompletion");
    column.divider = !row.flag("no_coldivider");
    column.header_divider = !row.flag("no_headerdivider");
    column.fetch_style = row.flag("col_fetchstyle");
    column.merge = row.flag("row_merge");
    if (filled(row.field("col_width"))) column.width = static_cast<int>(row.number("col_width"));
    return column;
}

// The column of a row, or -1. They stand in one order as long as nobody else has moved columns since the grid
// was built; after that the caption decides.
int column_of_row(const Grid& grid, const Recordset& row, std::size_t place) {
    const std::string caption = caption_of(row);
    const auto& columns = grid.columns;
    if (place < columns.size() && columns[place].stored_caption == caption) return static_cast<int>(place);
    const auto found = std::ranges::find(columns, caption, &GridColumn::stored_caption);
    return found == columns.end() ? -1 : static_cast<int>(found - columns.begin());
}

// Walks the rows with their columns. A row that cannot be saved does not keep the others from it.
template <class Change>
void change_rows(const char* what, const Grid& grid, kernel::ModuleG3& kernel, const std::string& query,
                 const Change& change) {
    const auto step = [&](const auto& action) { return kernel::carry_on(kernel.reasons(), what, action); };
    step([&] {
        auto rows = kernel.change(query);
        for (std::size_t place = 0; !rows.at_eof(); ++place, rows.MoveNext()) {
            const int column = column_of_row(grid, rows, place);
            if (column < 0) continue;
            step([&] {
                rows.Edit();
                change(rows, grid.columns[static_cast<std::size_t>(column)]);
                rows.Update();
            });
        }
    });
}

}  // namespace

int accepted_row_height(const store::Value& stored) {
    if (!filled(stored)) return kStandardRowHeight;
    const double height = stored.number();
    return height < kRowHeightMin || height > kRowHeightMax ? kStandardRowHeight : static_cast<int>(height);
}

void build_grid(Grid& grid, kernel::ModuleG3& kernel, std::string_view form, std::string_view grid_name,
                GridPlace place) {
    auto rows = kernel.read(layout_query(form, grid_name));
    grid.columns.clear();
    grid.header_colour = brimley_palette()[kHeaderSlot];
    grid.row_height = kStandardRowHeight;
    if (place == GridPlace::first && !rows.at_eof())
        grid.row_height = accepted_row_height(rows.field("row_height"));
    for (int order = 0; !rows.at_eof(); rows.MoveNext(), ++order)
        grid.columns.push_back(column_of(rows, order));
    grid.rebind();
}

void save_grid_layout(const Grid& grid, kernel::ModuleG3& kernel, std::string_view form,
                      std::string_view grid_name) {
    change_rows("save_grid", grid, kernel, layout_query(form, grid_name),
                [&](Recordset& row, const GridColumn& column) {
                    row.set("row_height", grid.row_height);
                    row.set("col_order", column.order);
                    row.set("col_width", column.width);
                });
}

void save_grid_fonts(const Grid& grid, kernel::ModuleG3& kernel, std::string_view form,
                     std::string_view grid_name) {
    change_rows("cmdsave_font_Click", grid, kernel, layout_query(form, grid_name),
                [](Recordset& row, const GridColumn& column) {
                    row.set("font_name", column.font.name);
                    row.set("font_size", column.font.size);
                    row.set("font_italic", column.font.italic);
                    row.set("font_bold", column.font.bold);
                    row.set("font_underline", column.font.underline);
                    row.set("font_color", static_cast<double>(column.font_colour));
                    row.set("Alignment", static_cast<int>(column.alignment));
                });
}

void restore_grid_fonts(Grid& grid, kernel::ModuleG3& kernel, std::string_view form,
                        std::string_view grid_name) {
    auto rows = kernel.read(layout_query(form, grid_name));
    if (!rows.at_eof()) grid.row_height = accepted_row_height(rows.field("row_height"));
    for (std::size_t place = 0; !rows.at_eof(); ++place, rows.MoveNext()) {
        const int column = column_of_row(grid, rows, place);
        if (column >= 0) take_face(grid.columns[static_cast<std::size_t>(column)], rows);
    }
    grid.rebind();
}

}  // namespace brimley::presentation
