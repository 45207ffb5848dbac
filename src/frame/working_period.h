// The working period of COA_config_table: which periods documents may be saved in.
#pragma once

#include <string>

#include "kernel/module_g3.h"

namespace brimley::frame {

// False, after its message, when the period lies outside the working period and outside what is allowed of
// history. Without a working period every period is open.
[[nodiscard]] bool period_is_open(kernel::ModuleG3& kernel, const std::string& fyear, double period);

}  // namespace brimley::frame
