// The forms of the module, as the menus and the first page offer them.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/apclass.h"

namespace brimley::desktop {

struct ModuleForm {
    std::string class_name;
    std::string caption;  // "&" before its letter, if it has one
    std::function<void(host::APclass&)> show;
    bool is_master = false;  // offered in a menu of its own
};

// In the order in which they are offered.
[[nodiscard]] const std::vector<ModuleForm>& module_forms();

}  // namespace brimley::desktop
