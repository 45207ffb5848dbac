// One input for a fuzz target, and what a target may say of it.
//
// A target is a file that defines fuzz_one. It throws Finding for what must never be; any other exception, a
// crash and whatever a sanitizer says are findings too.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace brimley::testing {

class Finding : public std::logic_error {
  public:
    using std::logic_error::logic_error;
};

void fuzz_one(std::string_view input);
// Words that the target knows, for the mutations.
[[nodiscard]] const std::vector<std::string>& fuzz_words();

}  // namespace brimley::testing
