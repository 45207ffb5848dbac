// One line of a script as words.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace brimley::console {

// The script is wrong: unknown command, control, caption, grid or method, a question without an answer. Not a
// runtime_error, so that no "carry on" of a form can swallow it.
class ScriptFault : public std::logic_error {
  public:
    using std::logic_error::logic_error;
};

// Words are separated by blanks; "..." keeps blanks, with \", \\ and \n inside; # begins a comment. Throws
// ScriptFault for a quote that is not closed.
[[nodiscard]] std::vector<std::string> split_line(std::string_view line);

// True when the text matches the pattern, in which * stands for any text.
[[nodiscard]] bool matches_pattern(std::string_view pattern, std::string_view text);

}  // namespace brimley::console
