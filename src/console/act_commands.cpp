// Acts of the user on the current form.
#include "console/arguments.h"

namespace brimley::console {

using controls::CheckBox;
using controls::ComboBox;
using controls::Grid;
using controls::OptionButton;
using controls::Refusal;
using controls::TextField;

namespace {

// Types into a text field or a combo. Throws for a control that takes no text.
Refusal type_into(controls::Control& control, const std::string& value) {
    if (auto* field = dynamic_cast<TextField*>(&control)) return field->type(value);
    if (auto* combo = dynamic_cast<ComboBox*>(&control)) return combo->type(value);
    throw ScriptFault(control.name() + " takes no text");
}

}  // namespace

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

void Console::do_set(Arguments& arguments) {
    controls::Control& target = control(arguments.take("CONTROL"));
    const Refusal refusal = type_into(target, arguments.take_text("VALUE"));
    if (refusal != Refusal::none) {
        report(target.name(), refusal);
    } else if (auto* field = dynamic_cast<TextField*>(&target)) {
        field->leave();
    } else {
        dynamic_cast<ComboBox&>(target).leave();
    }
}

void Console::do_enter(Arguments& arguments) {
    controls::Control& target = control(arguments.take("CONTROL"));
    Refusal refusal = type_into(target, arguments.take_text("VALUE"));
    if (refusal == Refusal::none) {
        auto* field = dynamic_cast<TextField*>(&target);
        refusal = field != nullptr ? field->press_enter() : dynamic_cast<ComboBox&>(target).press_enter();
    }
    report(target.name(), refusal);
}

void Console::click_box(Arguments& arguments, bool ticked) {
    controls::Control& target = control(arguments.take("CONTROL"));
    if (auto* box = dynamic_cast<CheckBox*>(&target)) {
        report(target.name(), box->click(ticked));
    } else if (auto* option = dynamic_cast<OptionButton*>(&target); option != nullptr && ticked) {
        report(target.name(), option->click());
    } else {
        throw ScriptFault(target.name() + " is no box");
    }
}

void Console::do_check(Arguments& arguments) { click_box(arguments, true); }
void Console::do_uncheck(Arguments& arguments) { click_box(arguments, false); }

void Console::do_press(Arguments& arguments) {
    const int id = arguments.take_number("ID");
    if (form().CommandBars1().find(id) == nullptr) {
        desk_.refused(std::to_string(id), "absent");
        return;
    }
    report(std::to_string(id), form().press(id));
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
    report(target.name(), target.edit_cell(row, column, value));
}

void Console::do_visit(Arguments& arguments) {
    Grid& target = grid(arguments.take("GRID"));
    const int row = arguments.take_row();
    report(target.name(), target.visit_cell(row, column_of(target, arguments.take("CAPTION"))));
}

void Console::do_dblclick(Arguments& arguments) {
    Grid& target = grid(arguments.take("GRID"));
    report(target.name(), target.double_click(arguments.take_row()));
}

void Console::do_select(Arguments& arguments) {
    Grid& target = grid(arguments.take("GRID"));
    if (arguments.take_if("none")) {
        report(target.name(), target.user_selects_columns(std::nullopt));
        return;
    }
    const int from = arguments.take_number("FROM");
    const int to = arguments.take_number("TO");
    if (from < 0 || to < from || to >= static_cast<int>(target.columns.size())) {
        throw ScriptFault("no such range of columns");
    }
    report(target.name(), target.user_selects_columns(Grid::Range{from, to}));
}

void Console::do_column(Arguments& arguments) {
    Grid& target = grid(arguments.take("GRID"));
    const int column = column_of(target, arguments.take("CAPTION"));
    const std::string what = arguments.take("width or order");
    const int number = arguments.take_number("N");
    if (number < 0) throw ScriptFault("a column's width and order are not negative");
    if (what == "width") {
        report(target.name(), target.resize_column(column, number));
    } else if (what == "order") {
        report(target.name(), target.move_column(column, number));
    } else {
        throw ScriptFault("a column has a width and an order, no " + what);
    }
}

void Console::do_rowheight(Arguments& arguments) {
    Grid& target = grid(arguments.take("GRID"));
    const int height = arguments.take_number("N");
    if (height <= 0) throw ScriptFault("a row's height is more than 0");
    report(target.name(), target.resize_rows(height));
}

}  // namespace brimley::console
