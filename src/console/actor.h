// Who carries out a script's acts on a form.
//
// The console's own actor speaks to the models. Another host may hand in one that does the same things to
// what it shows, key by key, so that one script tests both. An actor returns why an act did not take place,
// as the person in its place would find it; it prints nothing.
#pragma once

#include <optional>
#include <string>

#include "controls/date_range.h"
#include "controls/fields.h"
#include "controls/grid.h"

namespace brimley::frame {
class Form;
}

namespace brimley::console {

class Actor {
  public:
    using Refusal = controls::Refusal;

    virtual ~Actor() = default;

    // Types into a text field or combo, and leaves it; typing that is refused does not leave.
    [[nodiscard]] virtual Refusal type_and_leave(controls::Control& target, const std::string& text) = 0;
    [[nodiscard]] virtual Refusal type_and_enter(controls::Control& target, const std::string& text) = 0;
    // A check box, or an option button, which can only be ticked.
    [[nodiscard]] virtual Refusal click(controls::Control& box, bool ticked) = 0;
    [[nodiscard]] virtual Refusal click_button(controls::PushButton& button) = 0;
    // Types both dates and leaves the control.
    [[nodiscard]] virtual Refusal type_range(controls::DateRange& range, const std::string& from,
                                             const std::string& to) = 0;
    [[nodiscard]] virtual Refusal press(frame::Form& form, int command) = 0;
    [[nodiscard]] virtual Refusal close_pane(controls::Frame& pane) = 0;
    // Closes the pane of the form's child, which stands open.
    [[nodiscard]] virtual Refusal close_child(frame::Form& form) = 0;
    virtual void show_font_bar(frame::Form& form, bool visible) = 0;

    // Rows from 0, columns by their place in the grid's array. A check cell takes "True" and "False".
    [[nodiscard]] virtual Refusal edit_cell(controls::Grid& grid, int row, int column,
                                            const std::string& text) = 0;
    [[nodiscard]] virtual Refusal visit_cell(controls::Grid& grid, int row, int column) = 0;
    [[nodiscard]] virtual Refusal double_click(controls::Grid& grid, int row) = 0;
    [[nodiscard]] virtual Refusal select_columns(controls::Grid& grid,
                                                 std::optional<controls::Grid::Range> range) = 0;
    [[nodiscard]] virtual Refusal resize_column(controls::Grid& grid, int column, int width) = 0;
    [[nodiscard]] virtual Refusal move_column(controls::Grid& grid, int column, int order) = 0;
    [[nodiscard]] virtual Refusal resize_rows(controls::Grid& grid, int height) = 0;
};

// The controls that take text and the boxes that can be clicked; others are no target for the acts above.
[[nodiscard]] bool takes_text(const controls::Control& control);
[[nodiscard]] bool takes_click(const controls::Control& control, bool ticked);

// Acts on the models themselves.
class ModelActor : public Actor {
  public:
    [[nodiscard]] Refusal type_and_leave(controls::Control& target, const std::string& text) override;
    [[nodiscard]] Refusal type_and_enter(controls::Control& target, const std::string& text) override;
    [[nodiscard]] Refusal click(controls::Control& box, bool ticked) override;
    [[nodiscard]] Refusal click_button(controls::PushButton& button) override;
    [[nodiscard]] Refusal type_range(controls::DateRange& range, const std::string& from,
                                     const std::string& to) override;
    [[nodiscard]] Refusal press(frame::Form& form, int command) override;
    [[nodiscard]] Refusal close_pane(controls::Frame& pane) override;
    [[nodiscard]] Refusal close_child(frame::Form& form) override;
    void show_font_bar(frame::Form& form, bool visible) override;
    [[nodiscard]] Refusal edit_cell(controls::Grid& grid, int row, int column,
                                    const std::string& text) override;
    [[nodiscard]] Refusal visit_cell(controls::Grid& grid, int row, int column) override;
    [[nodiscard]] Refusal double_click(controls::Grid& grid, int row) override;
    [[nodiscard]] Refusal select_columns(controls::Grid& grid,
                                         std::optional<controls::Grid::Range> range) override;
    [[nodiscard]] Refusal resize_column(controls::Grid& grid, int column, int width) override;
    [[nodiscard]] Refusal move_column(controls::Grid& grid, int column, int order) override;
    [[nodiscard]] Refusal resize_rows(controls::Grid& grid, int height) override;
};

}  // namespace brimley::console
