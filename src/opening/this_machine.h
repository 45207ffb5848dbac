// The folders of the machine, as every host gives them to the forms.
#pragma once

#include <string>

namespace brimley::opening {

// As frame::Desk has them.
[[nodiscard]] bool folder_exists(const std::string& path);
bool make_folder(const std::string& path);

}  // namespace brimley::opening
