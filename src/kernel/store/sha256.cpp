#include "kernel/store/sha256.h"

#include <algorithm>

#include "kernel/store/error.h"

namespace brimley::store {

Sha256::Sha256() : algorithm_(EVP_MD_fetch(nullptr, "SHA256", nullptr)), context_(EVP_MD_CTX_new()) {
    if (!algorithm_ || !context_) throw Error(ErrorKind::io, "this machine's OpenSSL has no SHA-256");
}

Sha256Digest Sha256::of(std::string_view bytes) {
    Sha256Digest digest{};
    if (EVP_DigestInit_ex2(context_.get(), algorithm_.get(), nullptr) != 1 ||
        EVP_DigestUpdate(context_.get(), bytes.data(), bytes.size()) != 1 ||
        EVP_DigestFinal_ex(context_.get(), digest.data(), nullptr) != 1)
        throw Error(ErrorKind::io, "a hash could not be computed");
    return digest;
}

std::string hexadecimal(std::span<const unsigned char> bytes) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    constexpr unsigned kBitsOfDigit = 4;
    constexpr unsigned kLowDigit = 0xf;
    std::string digits;
    digits.reserve(bytes.size() * 2);
    for (const unsigned char byte : bytes) {
        digits += kDigits[byte >> kBitsOfDigit];
        digits += kDigits[byte & kLowDigit];
    }
    return digits;
}

std::string hexadecimal(std::string_view bytes) {
    return hexadecimal(std::span(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()));
}

void append_base64(std::string& text, std::span<const unsigned char> bytes) {
    const std::size_t before = text.size();
    const std::size_t groups = (bytes.size() + 2) / 3;
    std::array<unsigned char, 64> letters{};
    if (groups * 4 >= letters.size()) throw Error(ErrorKind::state, "too long for a digest");
    EVP_EncodeBlock(letters.data(), bytes.data(), static_cast<int>(bytes.size()));
    text.resize(before + groups * 4);
    std::copy_n(letters.begin(), groups * 4, text.begin() + static_cast<std::ptrdiff_t>(before));
}

std::vector<unsigned char> bytes_of_base64(std::string_view text) {
    const std::string letters(text);
    std::vector<unsigned char> bytes(letters.size());
    const int size = EVP_DecodeBlock(bytes.data(), reinterpret_cast<const unsigned char*>(letters.data()),
                                     static_cast<int>(letters.size()));
    const auto padding = std::ranges::count(letters, '=');
    bytes.resize(size < padding ? 0 : static_cast<std::size_t>(size - padding));
    return bytes;
}

}  // namespace brimley::store
