#include "company/shown_text.h"

#include "kernel/visible_text.h"

namespace brimley::company {

std::string shown_text(std::string_view text, std::size_t longest) {
    std::string shown;
    for (std::size_t at = 0; at < text.size();) {
        if (shown.size() >= longest) return shown + "...";
        at = kernel::append_visible(shown, text, at);
    }
    return shown;
}

}  // namespace brimley::company
