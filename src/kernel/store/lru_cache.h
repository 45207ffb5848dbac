// A bounded map from texts to plans that forgets what was not used for longest.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

namespace brimley::store {

struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
};

template <class T>
using TextMap = std::unordered_map<std::string, T, TextHash, std::equal_to<>>;

template <class T>
class LruCache {
  public:
    explicit LruCache(std::size_t size_max) : size_max_(size_max) {}

    // Null when it is not there.
    [[nodiscard]] std::shared_ptr<T> find(std::string_view text) {
        const auto found = entries_.find(text);
        if (found == entries_.end()) return nullptr;
        found->second.used = ++uses_;
        return found->second.value;
    }

    void add(std::string_view text, std::shared_ptr<T> value) {
        // Looking at each of them costs less than making the value did.
        if (entries_.size() == size_max_) entries_.erase(std::ranges::min_element(entries_, {}, last_use));
        entries_.insert_or_assign(std::string(text), Entry{std::move(value), ++uses_});
    }

  private:
    struct Entry {
        std::shared_ptr<T> value;
        std::uint64_t used = 0;  // when it was last asked for
    };
    static std::uint64_t last_use(const std::pair<const std::string, Entry>& entry) {
        return entry.second.used;
    }

    std::size_t size_max_;
    std::uint64_t uses_ = 0;
    TextMap<Entry> entries_;
};

}  // namespace brimley::store
