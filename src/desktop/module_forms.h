// The forms of the module, as the menus and the first page offer them.
#pragma once

#include <span>

#include "host/apclass.h"

namespace brimley::desktop {

struct ModuleForm {
    const char* class_name;
    const char* caption;  // "&" before its letter
    void (*show)(host::APclass&);
};

// In the order in which they are offered.
[[nodiscard]] std::span<const ModuleForm> module_forms();

}  // namespace brimley::desktop
