// Passwords as they are stored: what scrypt makes of them, with a salt of their own.
//
//   scrypt$32768$8$1$SALT$HASH      cost, block size, parallel, then both in hexadecimal digits
//
// The parameters stand with the hash, so that a later version may raise them: what is stored stays readable.
// Computing one takes about a tenth of a second and 32 MiB, for whoever guesses as well.
#pragma once

#include <string>
#include <string_view>

#include "company/secret.h"

namespace brimley::company {

// With a new salt. Throws std::runtime_error when this machine's OpenSSL has no scrypt.
[[nodiscard]] std::string hash_of_password(const Secret& password);

// Compared in constant time. False as well for a stored text that is no hash, or one that would take more
// than this machine should give for it.
[[nodiscard]] bool is_password_of(std::string_view stored, const Secret& password);

}  // namespace brimley::company
