#include "kernel/store/key_list.h"

#include <algorithm>

namespace brimley::store {

KeyList::KeyList(std::vector<RowKey> keys)
    : keys_(std::move(keys)), ascending_(std::ranges::is_sorted(keys_)) {}

std::ptrdiff_t KeyList::index_of(RowKey key) {
    if (ascending_) {
        const auto found = std::ranges::lower_bound(keys_, key);
        return found == keys_.end() || *found != key ? -1 : found - keys_.begin();
    }
    if (!indexes_) indexes_.emplace();
    for (std::size_t i = indexes_->size(); i < keys_.size(); ++i)
        indexes_->emplace(keys_[i], static_cast<std::ptrdiff_t>(i));
    const auto found = indexes_->find(key);
    return found == indexes_->end() ? -1 : found->second;
}

std::ptrdiff_t KeyList::index_after(RowKey key) {
    // A row that was found in the table and has been deleted since is none of the keys fetched now.
    if (ascending_) return std::ranges::upper_bound(keys_, key) - keys_.begin();
    const std::ptrdiff_t index = index_of(key);
    return index < 0 ? size() : index + 1;
}

void KeyList::append(RowKey key) {
    ascending_ = ascending_ && (keys_.empty() || keys_.back() < key);
    keys_.push_back(key);
}

}  // namespace brimley::store
