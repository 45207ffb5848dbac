// The turn with which a viewer shows the pages of a PDF file.
#pragma once

#include <string>

namespace brimley::printing {

// Turns all pages of the file by these degrees, clockwise: appends a new version of its page tree, and leaves
// the pages themselves as they are. Throws std::runtime_error when the file cannot be read or written.
void append_rotation(const std::string& path, int degrees);

}  // namespace brimley::printing
