// A password as somebody types it: at a terminal without an echo, else a line of standard input.
#pragma once

#include <string>

#include "company/secret.h"

namespace brimley::company {

[[nodiscard]] bool somebody_types();
// The prompt appears at a terminal only. Throws std::runtime_error when the input has ended.
[[nodiscard]] Secret typed_secret(const std::string& prompt);

}  // namespace brimley::company
