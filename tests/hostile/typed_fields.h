// The fields of a form that a user can type into, read from its models.
#pragma once

#include <string>
#include <vector>

#include "frame/form.h"

namespace brimley::testing {

class TypedField {
  public:
    TypedField(std::string control, std::string caption)
        : control_(std::move(control)), caption_(std::move(caption)) {}

    // "txtremark", or "dbgrid1 description".
    [[nodiscard]] std::string name() const { return caption_.empty() ? control_ : control_ + " " + caption_; }
    // Goes to the field of this form, types the text, presses Enter where there is that act, and leaves it.
    // False when the field is locked, hidden or disabled.
    [[nodiscard]] bool type(frame::Form& form, const std::string& text) const;
    // What it shows.
    [[nodiscard]] std::string shown(frame::Form& form) const;

  private:
    std::string control_;
    std::string caption_;  // of a column of a grid, in whose first row is typed
};

[[nodiscard]] std::vector<TypedField> typed_fields(frame::Form& form);

}  // namespace brimley::testing
