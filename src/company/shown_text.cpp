#include "company/shown_text.h"

#include <fmt/format.h>

namespace brimley::company {

std::string shown_text(std::string_view text, std::size_t longest) {
    std::string shown;
    for (const char byte : text) {
        const auto code = static_cast<unsigned char>(byte);
        const bool inside_character = (code & 0xC0) == 0x80;
        if (shown.size() >= longest && !inside_character) return shown + "...";
        if (byte == '\n') {
            shown += "\\n";
        } else if (byte == '\t') {
            shown += "\\t";
        } else if (code < 0x20 || code == 0x7F) {
            shown += fmt::format("\\x{:02x}", code);
        } else {
            shown += byte;
        }
    }
    return shown;
}

}  // namespace brimley::company
