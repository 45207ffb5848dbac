// The look of a form: what stands where in its window, written in one text file per form.
//
//   # to the end of the line: a comment
//   title "A/P Invoice" [CONTROL]         of the window; after it comes what the control shows
//   menus File Edit Record ...            the order of the menus; others come after
//   column                                a column of fields above the lines; each line that follows is a row
//   of it
//     "Kind" cmbdoctype 14                caption, control, width in characters
//     @labeldocno txtdocno 14             a label of the form itself as caption
//     "Period" cmbperiod 4 + cmbfyear 8   several in one row, each of which may have a caption
//     "" txtvendor_address 30 lines 5     a field of several lines
//     "Total" txttotal 14 amount          right-aligned, and selected when the user comes in
//   grid dbgrid1 [rows 6]                 the lines of the form; rows: as many in view, and no more
//   tabs TabControl                       pages that share one place; the grids that follow have one each
//   foot                                  as column, below the lines
//   pane frame_tax bottom [rows 6]        a docked pane: bottom, top, left or right; fields or a grid follow
//
// A control that no line names, and that can be seen, comes after the others, so a look that is older than
// its form loses nothing. Without a file every control appears in the order of its declaration.
#pragma once

#include <QString>
#include <QStringList>
#include <optional>
#include <stdexcept>
#include <vector>

namespace brimley::desktop {

struct LookField {
    QString control = {};
    int width = 0;  // characters; 0: as wide as there is room
    int lines = 1;
    bool amount = false;
    QString caption = {};  // before a field that is not the first of its row
};

struct LookRow {
    QString caption;  // "@name": what the label of this name says
    std::vector<LookField> fields;
};

struct LookPart {
    enum class Kind { column, grid, tabs, foot, pane };
    Kind kind = Kind::column;
    QString name = {};   // of a pane's frame, of a grid, or of the control with the pages
    QString place = {};  // of a pane
    int rows = 0;  // of a grid, or of a pane that holds one: how many are in view; 0: what there is room for
    std::vector<LookRow> fields = {};
    QStringList grids = {};  // of a pane, or of pages

    [[nodiscard]] bool holds_grids() const { return kind == Kind::pane || kind == Kind::tabs; }
};

struct Look {
    QString title;
    QString title_control;
    QStringList menus;
    std::vector<LookPart> parts;

    [[nodiscard]] bool names(const QString& control) const;
};

// A line that cannot be read, with its number.
class LookFault : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

[[nodiscard]] Look parse_look(const QString& text);
// The look of a form class; nothing when it has no file.
[[nodiscard]] std::optional<Look> look_of(const QString& class_name);

}  // namespace brimley::desktop
