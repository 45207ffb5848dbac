// Comparing names without regard to case, without a copy. Names are ASCII.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace brimley::store {

[[nodiscard]] constexpr char lower_letter(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

[[nodiscard]] constexpr bool same_name(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (lower_letter(a[i]) != lower_letter(b[i])) return false;
    return true;
}

// Equal names in whatever case have equal hashes.
[[nodiscard]] constexpr std::uint32_t name_hash(std::string_view name) {
    std::uint32_t hash = 2166136261U;
    for (const char letter : name)
        hash = (hash ^ static_cast<unsigned char>(letter | 0x20)) * 16777619U;
    return hash ^ (hash >> 15);
}

}  // namespace brimley::store
