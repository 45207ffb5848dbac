#include "controls/grid.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace brimley::controls {

int Grid::get_column(std::string_view caption) const {
    const auto found = std::find_if(columns.begin(), columns.end(),
                                    [&](const GridColumn& column) { return column.caption == caption; });
    return found == columns.end() ? -1 : static_cast<int>(found - columns.begin());
}

std::vector<int> Grid::column_order() const {
    std::vector<int> order(columns.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
        return columns[static_cast<std::size_t>(a)].order < columns[static_cast<std::size_t>(b)].order;
    });
    return order;
}

std::string Grid::cell(int row, std::string_view caption) const {
    return std::string(array.get(row, get_column(caption)));
}

void Grid::set_cell(int row, std::string_view caption, std::string_view text) {
    array.set(row, get_column(caption), text);
}

void Grid::go_to(int row, int column) {
    row_ = row;
    column_ = column;
}

// A layout may lack the column that somebody looks for.
bool Grid::shows(int column) const {
    const auto place = static_cast<std::size_t>(column);
    return column >= 0 && place < columns.size() && columns[place].visible;
}

Refusal Grid::visit_cell(int row, int column) {
    if (!reachable() || !shows(column)) return Refusal::hidden;
    if (!enabled()) return Refusal::disabled;
    if (listener() != nullptr) listener()->before_visit(*this, row);
    const int old_row = row_;
    const int old_column = column_;
    go_to(row, column);
    if (on_row_col_change && (old_row != row || old_column != column)) on_row_col_change(old_row, old_column);
    acted({.kind = Act::Kind::visit_cell, .row = row, .column = column});
    return Refusal::none;
}

Refusal Grid::edit_refusal(int row, int column) const {
    if (const Refusal why = refusal(); why != Refusal::none) return why;
    if (!shows(column)) return Refusal::hidden;
    const bool new_row = row >= array.rows();
    const bool locked =
        columns[static_cast<std::size_t>(column)].locked || !allow_update || (new_row && !allow_add_new);
    return locked ? Refusal::locked : Refusal::none;
}

Refusal Grid::open_editor(int row, int column) {
    abandon_editor();
    edit_was_cancelled_ = false;
    if (const Refusal why = edit_refusal(row, column); why != Refusal::none) return why;
    if (const Refusal why = visit_cell(row, column); why != Refusal::none) return why;
    const std::string old_text(array.get(row, column));
    CellEdit edit{row, column, columns[static_cast<std::size_t>(column)].caption, old_text, old_text, false};
    if (on_before_edit) on_before_edit(edit);
    if (!edit.cancel) edit_ = std::move(edit);
    acted({.kind = Act::Kind::open_editor, .row = row, .column = column});
    return Refusal::none;
}

// The form may have locked the cell while its editor was open.
Refusal Grid::leave_editor(const std::string& text) {
    if (!edit_) return Refusal::none;
    CellEdit edit = *std::exchange(edit_, std::nullopt);
    if (const Refusal why = edit_refusal(edit.row, edit.column); why != Refusal::none) return why;
    edit.old_text = array.get(edit.row, edit.column);
    edit.new_text = text;
    if (on_before_update) on_before_update(edit);
    edit_was_cancelled_ = edit.cancel;
    if (!edit.cancel) {
        array.set(edit.row, edit.column, edit.new_text);
        if (on_after_update) on_after_update(edit.column);
        tell();
    }
    acted({.kind = Act::Kind::leave_editor, .row = edit.row, .column = edit.column, .text = text});
    return Refusal::none;
}

void Grid::abandon_editor() {
    if (!edit_) return;
    const CellEdit edit = *std::exchange(edit_, std::nullopt);
    acted({.kind = Act::Kind::abandon_editor, .row = edit.row, .column = edit.column});
}

Refusal Grid::edit_cell(int row, int column, const std::string& text) {
    const Refusal refusal = open_editor(row, column);
    return refusal == Refusal::none ? leave_editor(text) : refusal;
}

Refusal Grid::double_click(int row) {
    if (!reachable()) return Refusal::hidden;
    if (!enabled()) return Refusal::disabled;
    go_to(row, column_);
    if (on_double_click) on_double_click(row);
    acted({.kind = Act::Kind::double_click, .row = row});
    return Refusal::none;
}

// The layout of a grid is the user's own, whether or not its cells may be changed.
Refusal Grid::layout_refusal() const {
    if (!reachable()) return Refusal::hidden;
    return enabled() ? Refusal::none : Refusal::disabled;
}

Refusal Grid::layout_refusal(int column) const {
    if (const Refusal why = layout_refusal(); why != Refusal::none) return why;
    return column >= 0 && column < static_cast<int>(columns.size()) ? Refusal::none : Refusal::hidden;
}

Refusal Grid::user_selects_columns(std::optional<Range> range) {
    if (const Refusal why = layout_refusal(); why != Refusal::none) return why;
    selected_ = range;
    return Refusal::none;
}

Refusal Grid::resize_column(int column, int width) {
    if (const Refusal why = layout_refusal(column); why != Refusal::none) return why;
    columns[static_cast<std::size_t>(column)].width = width;
    tell();
    return Refusal::none;
}

Refusal Grid::move_column(int column, int order) {
    if (const Refusal why = layout_refusal(column); why != Refusal::none) return why;
    std::vector<int> seen = column_order();
    seen.erase(std::find(seen.begin(), seen.end(), column));
    const auto place = std::clamp<std::ptrdiff_t>(order, 0, static_cast<std::ptrdiff_t>(seen.size()));
    seen.insert(seen.begin() + place, column);
    for (std::size_t i = 0; i < seen.size(); ++i) {
        columns[static_cast<std::size_t>(seen[i])].order = static_cast<int>(i);
    }
    tell();
    return Refusal::none;
}

Refusal Grid::resize_rows(int height) {
    if (const Refusal why = layout_refusal(); why != Refusal::none) return why;
    row_height = height;
    tell();
    return Refusal::none;
}

}  // namespace brimley::controls
