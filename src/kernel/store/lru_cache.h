// A bounded map from texts to plans that forgets what was not used for longest.
#pragma once

#include <cstddef>
#include <list>
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
        const auto found = places_.find(text);
        if (found == places_.end()) return nullptr;
        entries_.splice(entries_.begin(), entries_, found->second);
        return found->second->second;
    }

    void add(std::string_view text, std::shared_ptr<T> value) {
        if (entries_.size() == size_max_) {
            places_.erase(entries_.back().first);
            entries_.pop_back();
        }
        entries_.emplace_front(std::string(text), std::move(value));
        places_.emplace(entries_.front().first, entries_.begin());
    }

  private:
    using Entries = std::list<std::pair<std::string, std::shared_ptr<T>>>;
    std::size_t size_max_;
    Entries entries_;
    TextMap<typename Entries::iterator> places_;
};

}  // namespace brimley::store
