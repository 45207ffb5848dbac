// Which field a message of a form speaks of.
#pragma once

#include <string>

#include "frame/form.h"

namespace brimley::marks {

struct Place {
    const controls::Control* control = nullptr;  // null: none that the user could type in
    int row = -1;                                // of a grid
    int column = -1;
};

[[nodiscard]] Place field_of_message(frame::Form& form, const std::string& message);

}  // namespace brimley::marks
