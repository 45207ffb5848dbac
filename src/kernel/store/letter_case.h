// Comparing names without regard to case, without a copy. Names are ASCII.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
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

// Equal names in whatever case have equal hashes. Takes eight letters at a time: it runs for every field that
// is read or set.
[[nodiscard]] inline std::uint32_t name_hash(std::string_view name) {
    constexpr std::uint64_t kLowerBits = 0x2020202020202020U;
    constexpr std::uint64_t kMultiplier = 0x9e3779b97f4a7c15U;
    constexpr std::size_t kStep = sizeof(std::uint64_t);
    std::uint64_t hash = name.size();
    const auto mix = [&](std::uint64_t letters) {
        hash = (hash ^ (letters | kLowerBits)) * kMultiplier;
        hash ^= hash >> 32;
    };
    const auto load = [&]<class Letters>(Letters letters, std::size_t at) {
        std::memcpy(&letters, name.data() + at, sizeof letters);
        return letters;
    };
    std::size_t at = 0;
    for (; at + kStep <= name.size(); at += kStep)
        mix(load(std::uint64_t{}, at));
    // The rest: letters may count twice, which costs nothing.
    if (at == name.size()) return static_cast<std::uint32_t>(hash);
    if (name.size() >= kStep)
        mix(load(std::uint64_t{}, name.size() - kStep));
    else if (name.size() >= 4)
        mix(std::uint64_t{load(std::uint32_t{}, 0)} << 32 | load(std::uint32_t{}, name.size() - 4));
    else
        for (const char letter : name)
            mix(static_cast<unsigned char>(letter));
    return static_cast<std::uint32_t>(hash);
}

}  // namespace brimley::store
