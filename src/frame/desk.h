// What a host gives the forms: the world outside, folders, and a place to stand on the screen.
#pragma once

#include <memory>

#include "kernel/carry_on.h"
#include "kernel/outside.h"

namespace brimley::frame {

class Form;

class Desk : public kernel::Outside {
  public:
    // An act was not stored: the message of the form, which may be empty (it says nothing then), and why,
    // oldest first.
    virtual void failure(const std::string& text, const std::vector<kernel::Reason>& /*why*/) {
        if (!text.empty()) message(text);
    }
    // The form appears, without blocking. The desk keeps it alive until form_closed.
    virtual void form_shown(std::shared_ptr<Form> form) = 0;
    // The form appears in a pane of its owner, which stays the one that the user works in.
    virtual void child_shown(Form& owner, std::shared_ptr<Form> child) = 0;
    // The form comes to the front.
    virtual void form_raised(Form& form) = 0;
    // The form has unloaded itself, or its child has; the desk releases it.
    virtual void form_closed(Form& form) = 0;

    // Paths may have a backslash where the platform has another separator, as BRIMLEY_PATH & "\Help" has.
    [[nodiscard]] virtual bool folder_exists(const std::string& path) = 0;
    // Makes the folder inside one that exists. False when it cannot be made.
    virtual bool make_folder(const std::string& path) = 0;
};

}  // namespace brimley::frame
