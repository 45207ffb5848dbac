#include "typed_fields.h"

#include "controls/grid.h"

namespace brimley::testing {

using controls::ComboBox;
using controls::Grid;
using controls::Refusal;
using controls::TextField;

namespace {

template <class Field>
bool type_and_leave(Field& field, const std::string& text) {
    if (field.type(text) != Refusal::none) return false;
    static_cast<void>(field.press_enter());
    field.leave();
    return true;
}

}  // namespace

bool TypedField::type(frame::Form& form, const std::string& text) const {
    controls::Control* const control = form.controls().find(control_);
    if (auto* const field = dynamic_cast<TextField*>(control)) return type_and_leave(*field, text);
    if (auto* const combo = dynamic_cast<ComboBox*>(control)) return type_and_leave(*combo, text);
    auto& grid = dynamic_cast<Grid&>(*control);
    return grid.edit_cell(0, grid.get_column(caption_), text) == Refusal::none;
}

std::string TypedField::shown(frame::Form& form) const {
    controls::Control* const control = form.controls().find(control_);
    const auto* const grid = dynamic_cast<Grid*>(control);
    return grid ? grid->cell(0, caption_) : control->shown();
}

std::vector<TypedField> typed_fields(frame::Form& form) {
    std::vector<TypedField> fields;
    for (controls::Control* const control : form.controls().all()) {
        if (dynamic_cast<TextField*>(control) || dynamic_cast<ComboBox*>(control))
            fields.emplace_back(control->name(), "");
        if (const auto* const grid = dynamic_cast<Grid*>(control)) {
            for (const controls::GridColumn& column : grid->columns)
                fields.emplace_back(control->name(), column.caption);
        }
    }
    return fields;
}

}  // namespace brimley::testing
