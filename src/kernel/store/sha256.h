// SHA-256 by the system's OpenSSL.
#pragma once

#include <openssl/evp.h>

#include <array>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace brimley::store {

using Sha256Digest = std::array<unsigned char, 32>;

class Sha256 {
  public:
    // Throws ErrorKind::io on a machine whose OpenSSL has been told not to offer it.
    Sha256();

    [[nodiscard]] Sha256Digest of(std::string_view bytes);

  private:
    struct Free {
        void operator()(EVP_MD* algorithm) const { EVP_MD_free(algorithm); }
        void operator()(EVP_MD_CTX* context) const { EVP_MD_CTX_free(context); }
    };
    std::unique_ptr<EVP_MD, Free> algorithm_;
    std::unique_ptr<EVP_MD_CTX, Free> context_;
};

[[nodiscard]] std::string hexadecimal(std::span<const unsigned char> bytes);
[[nodiscard]] std::string hexadecimal(std::string_view bytes);
// Base 64, filled up with "=".
void append_base64(std::string& text, std::span<const unsigned char> bytes);
// Empty when the text is not base 64.
[[nodiscard]] std::vector<unsigned char> bytes_of_base64(std::string_view text);

}  // namespace brimley::store
