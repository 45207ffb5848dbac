// The clock, the name and the folders of the machine, as every host gives them to the forms.
#pragma once

#include <string>

#include "kernel/store/value.h"

namespace brimley::opening {

// Local time, to the second.
[[nodiscard]] store::DateTime local_now();
// Empty when the machine does not give one.
[[nodiscard]] std::string machine_name();

// As frame::Desk has them.
[[nodiscard]] bool folder_exists(const std::string& path);
bool make_folder(const std::string& path);

}  // namespace brimley::opening
