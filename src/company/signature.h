// Who works here, and when: what the programs sign a company's trail with, and the hosts give to the forms.
#pragma once

#include <string>

#include "kernel/store/database.h"

namespace brimley::company {

// Local time, to the second.
[[nodiscard]] store::DateTime local_now();
// The name of this machine; empty when it has none.
[[nodiscard]] std::string machine_name();
// Of the user who has logged in to this machine, at this moment.
[[nodiscard]] store::Signature signature_of_login();
// The same for who works in this company: on a server the role that is connected.
[[nodiscard]] store::Signature signature_in(const store::Database& company);

}  // namespace brimley::company
