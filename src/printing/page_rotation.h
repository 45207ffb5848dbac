// The turn with which a viewer shows the pages of a PDF file.
#pragma once

#include <string>

namespace brimley::printing {

// Appends to the file that its page tree is turned by so many degrees, clockwise; the pages themselves stay
// as they are. Throws std::runtime_error when the file cannot be read or written.
void append_rotation(const std::string& path, int degrees);

}  // namespace brimley::printing
