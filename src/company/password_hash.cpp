#include "company/password_hash.h"

#include <fmt/format.h>
#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/rand.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <vector>

namespace brimley::company {

namespace {

constexpr std::string_view kScheme = "scrypt";
constexpr std::size_t kSaltBytes = 16;
constexpr std::size_t kHashBytes = 32;
constexpr std::size_t kParts = 6;
constexpr std::uint64_t kMemoryMax = std::uint64_t{256} << 20;
constexpr std::uint64_t kParallelMax = 16;

struct Cost {
    std::uint64_t cost = 1 << 15;
    std::uint64_t block_size = 8;
    std::uint64_t parallel = 1;
};

struct StoredHash {
    Cost cost;
    std::vector<unsigned char> salt;
    std::vector<unsigned char> hash;
};

std::string hexadecimal(const std::vector<unsigned char>& bytes) {
    std::string digits;
    for (const unsigned char byte : bytes)
        digits += fmt::format("{:02x}", byte);
    return digits;
}

template <class Number>
bool read_number(std::string_view digits, Number& number, int base) {
    const char* const end = digits.data() + digits.size();
    const auto read = std::from_chars(digits.data(), end, number, base);
    return read.ec == std::errc() && read.ptr == end;
}

std::optional<std::vector<unsigned char>> bytes_of(std::string_view digits, std::size_t count) {
    if (digits.size() != 2 * count) return std::nullopt;
    std::vector<unsigned char> bytes(count);
    for (std::size_t i = 0; i < count; ++i)
        if (!read_number(digits.substr(2 * i, 2), bytes[i], 16)) return std::nullopt;
    return bytes;
}

std::vector<std::string_view> parts_of(std::string_view stored) {
    std::vector<std::string_view> parts;
    for (std::size_t end = 0; end != std::string_view::npos;
         stored.remove_prefix(std::min(end, stored.size()))) {
        end = stored.find('$');
        parts.push_back(stored.substr(0, end));
        if (end != std::string_view::npos) ++end;
    }
    return parts;
}

bool is_affordable(const Cost& cost) {
    constexpr std::uint64_t kBytesOfBlock = 128;
    return cost.cost > 1 && cost.block_size > 0 && cost.parallel > 0 && cost.parallel <= kParallelMax &&
           cost.block_size < kMemoryMax && cost.cost < kMemoryMax &&
           kBytesOfBlock * cost.cost * cost.block_size <= kMemoryMax;
}

std::optional<StoredHash> read_stored(std::string_view stored) {
    const auto parts = parts_of(stored);
    StoredHash read;
    if (parts.size() != kParts || parts[0] != kScheme || !read_number(parts[1], read.cost.cost, 10) ||
        !read_number(parts[2], read.cost.block_size, 10) || !read_number(parts[3], read.cost.parallel, 10) ||
        !is_affordable(read.cost))
        return std::nullopt;
    auto salt = bytes_of(parts[4], kSaltBytes);
    auto hash = bytes_of(parts[5], kHashBytes);
    if (!salt || !hash) return std::nullopt;
    read.salt = std::move(*salt);
    read.hash = std::move(*hash);
    return read;
}

// Empty when OpenSSL cannot: it has no scrypt, or does not take the parameters.
std::vector<unsigned char> scrypt(const Secret& password, const std::vector<unsigned char>& salt,
                                  const Cost& cost) {
    std::vector<unsigned char> hash(kHashBytes);
    const bool done =
        EVP_PBE_scrypt(password.text().data(), password.text().size(), salt.data(), salt.size(), cost.cost,
                       cost.block_size, cost.parallel, 2 * kMemoryMax, hash.data(), hash.size()) == 1;
    return done ? hash : std::vector<unsigned char>{};
}

}  // namespace

// A short text is copied by the move, and its letters would stay.
Secret::Secret(std::string text) : text_(std::move(text)) {
    text.resize(text.capacity());
    OPENSSL_cleanse(text.data(), text.size());
}

void Secret::wipe() noexcept {
    text_.resize(text_.capacity());  // what stood behind the end as well
    OPENSSL_cleanse(text_.data(), text_.size());
    text_.clear();
}

Secret& Secret::operator=(Secret&& other) noexcept {
    if (this == &other) return *this;
    wipe();
    text_ = std::move(other.text_);
    other.wipe();
    return *this;
}

std::string hash_of_password(const Secret& password) {
    std::vector<unsigned char> salt(kSaltBytes);
    if (RAND_bytes(salt.data(), static_cast<int>(salt.size())) != 1)
        throw std::runtime_error("this machine's OpenSSL has no random numbers");
    const Cost cost;
    const auto hash = scrypt(password, salt, cost);
    if (hash.empty()) throw std::runtime_error("this machine's OpenSSL has no scrypt");
    return fmt::format("{}${}${}${}${}${}", kScheme, cost.cost, cost.block_size, cost.parallel,
                       hexadecimal(salt), hexadecimal(hash));
}

bool is_password_of(std::string_view stored, const Secret& password) {
    const auto read = read_stored(stored);
    if (!read) return false;
    const auto hash = scrypt(password, read->salt, read->cost);
    return hash.size() == read->hash.size() &&
           CRYPTO_memcmp(hash.data(), read->hash.data(), hash.size()) == 0;
}

}  // namespace brimley::company
