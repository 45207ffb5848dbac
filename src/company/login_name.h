// Who runs this program.
#pragma once

#include <string>

namespace brimley::company {

// The login name of the effective user, or its number when it has no name.
[[nodiscard]] std::string login_name();

}  // namespace brimley::company
