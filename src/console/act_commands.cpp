// Acts of the user on the current form.
#include "console/arguments.h"
#include "frame/form.h"

namespace brimley::console {

using controls::Grid;
using controls::Refusal;

void Console::report(const std::string& name, Refusal refusal) {
    switch (refusal) {
        case Refusal::none:
            return;
        case Refusal::hidden:
            desk_.refused(name, "hidden");
            return;
        case Refusal::disabled:
            desk_.refused(name, "disabled");
            return;
        case Refusal::locked:
            desk_.refused(name, "locked");
            return;
    }
}

controls::Control& Console::text_target(const std::string& name) {
    controls::Control& target = control(name);
    if (!takes_text(target)) throw ScriptFault(target.name() + " takes no text");
    return target;
}

void Console::do_set(Arguments& arguments) {
    controls::Control& target = text_target(arguments.take("CONTROL"));
    report(target.name(), actor_.type_and_leave(target, arguments.take_text("VALUE")));
}

void Console::do_enter(Arguments& arguments) {
    controls::Control& target = text_target(arguments.take("CONTROL"));
    report(target.name(), actor_.type_and_enter(target, arguments.take_text("VALUE")));
}

void Console::click_box(Arguments& arguments, bool ticked) {
    controls::Control& target = control(arguments.take("CONTROL"));
    if (!takes_click(target, ticked)) throw ScriptFault(target.name() + " is no box");
    report(target.name(), actor_.click(target, ticked));
}

void Console::do_check(Arguments& arguments) { click_box(arguments, true); }
void Console::do_uncheck(Arguments& arguments) { click_box(arguments, false); }

void Console::do_click(Arguments& arguments) {
    controls::Control& target = control(arguments.take("CONTROL"));
    auto* const button = dynamic_cast<controls::PushButton*>(&target);
    if (button == nullptr) throw ScriptFault(target.name() + " is no button");
    report(target.name(), actor_.click_button(*button));
}

void Console::do_range(Arguments& arguments) {
    controls::Control& target = control(arguments.take("CONTROL"));
    auto* const range = dynamic_cast<controls::DateRange*>(&target);
    if (range == nullptr) throw ScriptFault(target.name() + " is no date range");
    const std::string from = arguments.take("FROM");
    report(target.name(), actor_.type_range(*range, from, arguments.take("TO")));
}

void Console::do_press(Arguments& arguments) {
    const int id = arguments.take_number("ID");
    if (form().CommandBars1().find(id) == nullptr) {
        desk_.refused(std::to_string(id), "absent");
        return;
    }
    report(std::to_string(id), actor_.press(form(), id));
}

// A pane is named by its frame, or by the class of the child form that stands in it.
void Console::do_close(Arguments& arguments) {
    const std::string name = arguments.take("PANE");
    const frame::Form* const child = form().last_child();
    if (child != nullptr && name == child->identity().class_name) {
        report(name, actor_.close_child(form()));
        return;
    }
    controls::Control& target = control(name);
    auto* const pane = dynamic_cast<controls::Frame*>(&target);
    if (pane == nullptr || !pane->is_pane()) throw ScriptFault(target.name() + " is no pane");
    report(target.name(), actor_.close_pane(*pane));
}

void Console::do_fontbar(Arguments& arguments) {
    const bool visible = arguments.take_if("on");
    if (!visible && !arguments.take_if("off")) throw ScriptFault("the font bar is on or off");
    actor_.show_font_bar(form(), visible);
}

void Console::do_cell(Arguments& arguments) {
    Grid& target = grid(arguments.take("GRID"));
    const int row = arguments.take_row();
    const int column = column_of(target, arguments.take("CAPTION"));
    std::string value = arguments.take_text("VALUE");
    if (target.columns[static_cast<std::size_t>(column)].check_box) {
        const bool ticked = controls::same_ignoring_case(value, "TRUE");
        if (!ticked && !controls::same_ignoring_case(value, "FALSE"))
            throw ScriptFault("a check cell takes TRUE or FALSE");
        value = ticked ? "True" : "False";
    }
    report(target.name(), actor_.edit_cell(target, row, column, value));
}

void Console::do_visit(Arguments& arguments) {
    Grid& target = grid(arguments.take("GRID"));
    const int row = arguments.take_row();
    report(target.name(), actor_.visit_cell(target, row, column_of(target, arguments.take("CAPTION"))));
}

void Console::do_dblclick(Arguments& arguments) {
    Grid& target = grid(arguments.take("GRID"));
    report(target.name(), actor_.double_click(target, arguments.take_row()));
}

void Console::do_select(Arguments& arguments) {
    Grid& target = grid(arguments.take("GRID"));
    if (arguments.take_if("none")) {
        report(target.name(), actor_.select_columns(target, std::nullopt));
        return;
    }
    const int from = arguments.take_number("FROM");
    const int to = arguments.take_number("TO");
    if (from < 0 || to < from || to >= static_cast<int>(target.columns.size())) {
        throw ScriptFault("no such range of columns");
    }
    report(target.name(), actor_.select_columns(target, Grid::Range{from, to}));
}

void Console::do_column(Arguments& arguments) {
    Grid& target = grid(arguments.take("GRID"));
    const int column = column_of(target, arguments.take("CAPTION"));
    const std::string what = arguments.take("width or order");
    const int number = arguments.take_number("N");
    if (number < 0) throw ScriptFault("a column's width and order are not negative");
    if (what == "width") {
        report(target.name(), actor_.resize_column(target, column, number));
    } else if (what == "order") {
        report(target.name(), actor_.move_column(target, column, number));
    } else {
        throw ScriptFault("a column has a width and an order, no " + what);
    }
}

void Console::do_rowheight(Arguments& arguments) {
    Grid& target = grid(arguments.take("GRID"));
    const int height = arguments.take_number("N");
    if (height <= 0) throw ScriptFault("a row's height is more than 0");
    report(target.name(), actor_.resize_rows(target, height));
}

}  // namespace brimley::console
