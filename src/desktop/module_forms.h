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
    // Those of the masters and of the ledger have menus of their own.
    enum class Menu { forms, ledger, masters } menu = Menu::forms;
};

// In the order in which they are offered.
[[nodiscard]] const std::vector<ModuleForm>& module_forms();

}  // namespace brimley::desktop
