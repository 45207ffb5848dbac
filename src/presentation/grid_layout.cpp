#include "presentation/grid_layout.h"

#include <fmt/format.h>

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

GridColumn column_of(const Recordset& row, int order) {
    GridColumn column;
    column.order = order;
    column.visible = row.flag("Visible");
    column.caption = row.field("Caption").is_null() ? " " : row.text("Caption");
    column.locked = row.flag("Locked");
    take_font(column.font, row);
    if (filled(row.field("font_color")))
        column.font_colour = static_cast<controls::Colour>(row.number("font_color"));
    column.check_box = row.text("cell_type") == "dbgCheckBox";
    if (column.check_box) column.alignment = controls::Alignment::centre;
    if (filled(row.field("Alignment"))) column.alignment = alignment_of(row.number("Alignment"));
    column.auto_completion = row.flag("AutoCompletion");
    column.divider = !row.flag("no_coldivider");
    column.header_divider = !row.flag("no_headerdivider");
    column.fetch_style = row.flag("col_fetchstyle");
    column.merge = row.flag("row_merge");
    if (filled(row.field("col_width"))) column.width = static_cast<int>(row.number("col_width"));
    return column;
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
    grid.row_height = kStandardRowHeight;
    if (place == GridPlace::first && !rows.at_eof())
        grid.row_height = accepted_row_height(rows.field("row_height"));
    for (int order = 0; !rows.at_eof(); rows.MoveNext(), ++order)
        grid.columns.push_back(column_of(rows, order));
    grid.rebind();
}

void save_grid_layout(const Grid& grid, kernel::ModuleG3& kernel, std::string_view form,
                      std::string_view grid_name) {
    const auto step = [&](const auto& action) {
        return kernel::carry_on(kernel.passed_over(), "save_grid", action);
    };
    step([&] {
        auto rows = kernel.change(layout_query(form, grid_name));
        for (std::size_t i = 0; i < grid.columns.size() && !rows.at_eof(); ++i, rows.MoveNext()) {
            // A row that cannot be saved does not keep the others from it.
            step([&] {
                rows.Edit();
                rows.set("row_height", grid.row_height);
                rows.set("col_order", grid.columns[i].order);
                rows.set("col_width", grid.columns[i].width);
                rows.Update();
            });
        }
    });
}

}  // namespace brimley::presentation
