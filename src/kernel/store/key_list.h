// The row keys of a keyset, in its order: where a key stands among them.
#pragma once

#include <cstddef>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include "kernel/store/engine.h"

namespace brimley::store {

class KeyList {
  public:
    explicit KeyList(std::vector<RowKey> keys);

    [[nodiscard]] std::ptrdiff_t size() const { return static_cast<std::ptrdiff_t>(keys_.size()); }
    [[nodiscard]] RowKey at(std::ptrdiff_t index) const { return keys_[static_cast<std::size_t>(index)]; }
    // -1 when the key is none of them.
    [[nodiscard]] std::ptrdiff_t index_of(RowKey key);
    // The end when it is not known where the key stood.
    [[nodiscard]] std::ptrdiff_t index_after(RowKey key);
    void append(RowKey key);

  private:
    std::vector<RowKey> keys_;
    bool ascending_;  // then they are searched as they are
    std::optional<std::unordered_map<RowKey, std::ptrdiff_t>>
        indexes_;  // else by this, made when first asked
};

}  // namespace brimley::store
