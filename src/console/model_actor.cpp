#include "console/actor.h"
#include "controls/combo_box.h"
#include "controls/fields.h"
#include "frame/form.h"

namespace brimley::console {

using controls::CheckBox;
using controls::ComboBox;
using controls::Control;
using controls::Grid;
using controls::OptionButton;
using controls::Refusal;
using controls::TextField;

namespace {

// Runs the act on the field or combo that the control is.
template <class Act>
auto on_text(Control& target, const Act& act) {
    if (auto* field = dynamic_cast<TextField*>(&target)) return act(*field);
    return act(dynamic_cast<ComboBox&>(target));
}

}  // namespace

bool takes_text(const Control& control) {
    return dynamic_cast<const TextField*>(&control) != nullptr ||
           dynamic_cast<const ComboBox*>(&control) != nullptr;
}

bool takes_click(const Control& control, bool ticked) {
    return dynamic_cast<const CheckBox*>(&control) != nullptr ||
           (ticked && dynamic_cast<const OptionButton*>(&control) != nullptr);
}

Refusal ModelActor::type_and_leave(Control& target, const std::string& text) {
    return on_text(target, [&](auto& field) {
        const Refusal refusal = field.type(text);
        if (refusal == Refusal::none) field.leave();
        return refusal;
    });
}

Refusal ModelActor::type_and_enter(Control& target, const std::string& text) {
    return on_text(target, [&](auto& field) {
        const Refusal refusal = field.type(text);
        return refusal == Refusal::none ? field.press_enter() : refusal;
    });
}

Refusal ModelActor::click(Control& box, bool ticked) {
    if (auto* check = dynamic_cast<CheckBox*>(&box)) return check->click(ticked);
    return dynamic_cast<OptionButton&>(box).click();
}

Refusal ModelActor::click_button(controls::PushButton& button) { return button.click(); }

Refusal ModelActor::type_range(controls::DateRange& range, const std::string& from, const std::string& to) {
    return range.type(from, to);
}

Refusal ModelActor::press(frame::Form& form, int command) { return form.press(command); }

Refusal ModelActor::close_pane(controls::Frame& pane) { return pane.close(); }

Refusal ModelActor::close_child(frame::Form& form) { return form.close_child(); }

void ModelActor::show_font_bar(frame::Form& form, bool visible) {
    form.CommandBars1().show_font_bar(visible);
}

Refusal ModelActor::edit_cell(Grid& grid, int row, int column, const std::string& text) {
    return grid.edit_cell(row, column, text);
}

Refusal ModelActor::visit_cell(Grid& grid, int row, int column) { return grid.visit_cell(row, column); }

Refusal ModelActor::double_click(Grid& grid, int row) { return grid.double_click(row); }

Refusal ModelActor::select_columns(Grid& grid, std::optional<Grid::Range> range) {
    return grid.user_selects_columns(range);
}

Refusal ModelActor::resize_column(Grid& grid, int column, int width) {
    return grid.resize_column(column, width);
}

Refusal ModelActor::move_column(Grid& grid, int column, int order) { return grid.move_column(column, order); }

Refusal ModelActor::resize_rows(Grid& grid, int height) { return grid.resize_rows(height); }

}  // namespace brimley::console
