// A grid: columns with their look, over a text array that the form owns.
//
// Columns are found by caption, never by position, unless told otherwise: users move and hide them. A
// column's index is its place in the array and does not change while the form is open; its order is where the
// user sees it.
#pragma once

#include <functional>
#include <optional>

#include "controls/control.h"
#include "controls/text_array.h"

namespace brimley::controls {

enum class Alignment { left = 0, right = 1, centre = 2 };

struct FontStyle {
    std::string name = "Arial";
    double size = 9;
    bool bold = false;
    bool italic = false;
    bool underline = false;
};

// A list that opens below a cell. As that of a combo it is fetched when somebody first looks at it.
struct DropDown {
    using Rows = std::vector<std::vector<std::string>>;

    std::vector<std::string> captions;
    std::vector<int> widths;  // of its columns, twentieths of a point; set when a cell opens
    std::function<Rows()> source;
    std::size_t taken = 0;  // the column whose text a choice puts into the cell
    mutable std::optional<Rows> fetched = {};

    [[nodiscard]] const Rows& rows() const {
        if (!fetched) fetched = source();
        return *fetched;
    }
};

struct GridColumn {
    std::string caption;
    std::string stored_caption;  // of its row in Grid_property, whatever the form has made of the caption
    bool visible = true;
    bool locked = false;
    int width = 1000;  // twentieths of a point
    int order = 0;     // where it stands, from 0
    FontStyle font;
    Colour font_colour = 0;
    Alignment alignment = Alignment::left;
    bool check_box = false;
    bool auto_completion = false;
    bool divider = true;
    bool header_divider = true;
    bool fetch_style = false;
    bool merge = false;
    const DropDown* drop_down = nullptr;
};

// What a change of a cell is about, for the handlers before it takes place. Setting `cancel` keeps the editor
// closed, or the old text. Before the editor opens the new text is the old one.
struct CellEdit {
    int row = 0;
    int column = 0;
    std::string caption;
    std::string old_text;
    std::string new_text;
    bool cancel = false;
};

class Grid : public Control {
  public:
    Grid(ControlSet& controls, std::string name) : Control(controls, std::move(name)) {}

    // --- shape ---
    std::string title;  // above the captions, in a pane; mostly none
    std::vector<GridColumn> columns;
    int row_height = 370;
    Colour even_row_colour = kWhite;
    Colour header_colour = kWhite;
    bool allow_add_new = false;
    bool allow_update = false;
    bool allow_delete = false;

    // The index of the column with this caption, or -1.
    [[nodiscard]] int get_column(std::string_view caption) const;
    // Column indexes in the order in which they are seen.
    [[nodiscard]] std::vector<int> column_order() const;

    // --- content ---
    TextArray array;
    [[nodiscard]] std::string cell(int row, std::string_view caption) const;
    void set_cell(int row, std::string_view caption, std::string_view text);
    // The form has changed the array or the columns.
    void rebind() const { tell(); }
    [[nodiscard]] std::string shown() const override { return title; }

    // --- position ---
    [[nodiscard]] int row() const { return row_; }
    [[nodiscard]] int column() const { return column_; }
    void go_to(int row, int column);  // from code
    // The columns that the user has selected, by position; nothing selected: none.
    struct Range {
        int from;
        int to;
    };
    [[nodiscard]] std::optional<Range> selected_columns() const { return selected_; }

    // --- the user ---
    [[nodiscard]] Refusal visit_cell(int row, int column);
    // What stops a user from typing into the cell now.
    [[nodiscard]] Refusal edit_refusal(int row, int column) const;
    // The cell's editor. It opens (on_before_edit, which may keep it closed) and is left with a text
    // (on_before_update, which may cancel it; on_after_update) or without one. One is open at a time; none
    // is, when the form kept it closed.
    [[nodiscard]] Refusal open_editor(int row, int column);
    [[nodiscard]] bool editor_is_open() const { return edit_.has_value(); }
    [[nodiscard]] Refusal leave_editor(const std::string& text);
    // The form has cancelled the text that an editor was last left with: the cell keeps its old one, and the
    // user is to stay in it. Hosts ask before they move on.
    [[nodiscard]] bool edit_was_cancelled() const { return edit_was_cancelled_; }
    void abandon_editor();
    // All of it at once: moves into the cell, types the text and leaves the cell.
    [[nodiscard]] Refusal edit_cell(int row, int column, const std::string& text);
    [[nodiscard]] Refusal double_click(int row);
    [[nodiscard]] Refusal user_selects_columns(std::optional<Range> range);
    [[nodiscard]] Refusal resize_column(int column, int width);
    [[nodiscard]] Refusal move_column(int column, int order);
    [[nodiscard]] Refusal resize_rows(int height);

    std::function<void(CellEdit&)> on_before_edit;
    std::function<void(CellEdit&)> on_before_update;
    std::function<void(int column)> on_after_update;
    std::function<void(int old_row, int old_column)> on_row_col_change;
    std::function<void(int row)> on_double_click;
    // The colour of a row's text, asked by hosts for the columns with fetch_style; empty: the column's own.
    std::function<std::optional<Colour>(int row)> on_fetch_row_style;

  private:
    [[nodiscard]] bool shows(int column) const;
    [[nodiscard]] Refusal layout_refusal() const;
    [[nodiscard]] Refusal layout_refusal(int column) const;

    int row_ = 0;
    int column_ = 0;
    std::optional<CellEdit> edit_;  // in the editor that is open
    bool edit_was_cancelled_ = false;
    std::optional<Range> selected_;
};

}  // namespace brimley::controls
