// One act of a user on a form, as it can be written down and done again (entries/).
#pragma once

#include <string>

namespace brimley::controls {

struct Act {
    enum class Kind {
        type,
        enter,
        leave,
        pick,  // `row` of a combo's list, whose first column is `text`
        click,
        tick,
        untick,
        choose_page,  // `row`
        type_range,   // from `text` to `other_text`
        close_pane,
        visit_cell,
        open_editor,
        leave_editor,  // with `text`
        abandon_editor,
        double_click,
        press,      // the command `row`
        host_call,  // what the host did for the user: the method `control`, with the texts as arguments
    };

    Kind kind = Kind::press;
    std::string control{};  // its name; empty for a command
    int row = 0;
    int column = 0;
    std::string text{};
    std::string other_text{};

    bool operator==(const Act&) const = default;
};

class Grid;

// Who wants to know what the user does to a form. Layouts of grids are no part of an entry and are not told.
class ActListener {
  public:
    virtual ~ActListener() = default;
    // The command is about to be carried out.
    virtual void before_command(int id) = 0;
    // The user is about to enter a cell of this row.
    virtual void before_visit(const Grid& grid, int row) = 0;
    // The act was not refused, and its handlers have run.
    virtual void acted(const Act& act) = 0;
};

}  // namespace brimley::controls
