// A set of places, counted from 0: of the fields of a table, or of the columns of a recordset.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace brimley::store {

class PlaceSet {
  public:
    // Empty, with room for places below that; the memory is kept.
    void clear(std::size_t places) { words_.assign((places + kBits - 1) / kBits, 0); }
    void add(std::size_t place) {
        if (place / kBits >= words_.size()) words_.resize(place / kBits + 1);
        words_[place / kBits] |= bit_of(place);
    }
    [[nodiscard]] bool contains(std::size_t place) const {
        return place / kBits < words_.size() && (words_[place / kBits] & bit_of(place)) != 0;
    }
    [[nodiscard]] bool is_empty() const {
        return std::ranges::all_of(words_, [](std::uint64_t word) { return word == 0; });
    }
    // Whether a place is in both.
    [[nodiscard]] bool meets(const PlaceSet& other) const {
        for (std::size_t word = 0; word < std::min(words_.size(), other.words_.size()); ++word)
            if ((words_[word] & other.words_[word]) != 0) return true;
        return false;
    }
    // Calls it with each place, in order.
    template <class Act>
    void each(const Act& act) const {
        for (std::size_t word = 0; word < words_.size(); ++word)
            for (std::uint64_t bits = words_[word]; bits != 0; bits &= bits - 1)
                act(word * kBits + static_cast<std::size_t>(std::countr_zero(bits)));
    }
    // The same for sets that are equal and were cleared for as many places.
    [[nodiscard]] std::string_view as_key() const {
        return {reinterpret_cast<const char*>(words_.data()), words_.size() * sizeof(std::uint64_t)};
    }
    bool operator==(const PlaceSet&) const = default;

  private:
    static constexpr std::size_t kBits = 64;
    static std::uint64_t bit_of(std::size_t place) { return std::uint64_t{1} << (place % kBits); }

    std::vector<std::uint64_t> words_;
};

}  // namespace brimley::store
