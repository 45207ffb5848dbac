// The layouts that a new company starts with: the rows of Grid_property, as data.
//
// A form builds its grids from Grid_property and finds columns by their caption, so a grid without rows here
// is an empty grid. Captions are the forms' keys and stand character for character. Users reshape the grids
// afterwards; nothing here is read again once the company exists.
#pragma once

#include <span>

namespace brimley::presentation {

enum class ColumnKind {
    text,
    amount,     // right-aligned
    centred,    // short codes, numbers and dates
    check_box,  // cell_type "dbgCheckBox"
};

// Yes/no settings of a column, to be joined by |.
enum ColumnFlag : unsigned {
    kPlain = 0,
    kEntered = 1,    // the user types here: Locked is FALSE
    kHidden = 2,     // Visible is FALSE
    kRowStyle = 4,   // col_fetchstyle: the form styles each row by its content
    kCompleted = 8,  // AutoCompletion: the column's list completes what is typed
};

struct GridColumnDefault {
    const char* caption;
    int width;  // in the grid's units, as col_width
    ColumnKind kind;
    unsigned flags;
};

struct GridDefault {
    const char* form_name;
    const char* grid_name;
    std::span<const GridColumnDefault> columns;  // col_order counts them from 0
};

// The presentation text of a check box column, in `cell_type`.
inline constexpr const char* kCheckBoxCell = "dbgCheckBox";
// Row height of every new grid, in the grid's units.
inline constexpr int kRowHeight = 370;

// Every grid of every form, in the order of the forms.
[[nodiscard]] std::span<const GridDefault> grid_defaults();

}  // namespace brimley::presentation
