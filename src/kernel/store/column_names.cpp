#include "kernel/store/column_names.h"

#include <bit>
#include <cstring>

#include "kernel/store/letter_case.h"

namespace brimley::store {

namespace {

// A call of the C library for a handful of letters costs more than looking at them.
bool equal_bytes(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    std::size_t at = 0;
    for (; at + sizeof(std::uint64_t) <= a.size(); at += sizeof(std::uint64_t)) {
        std::uint64_t left = 0;
        std::uint64_t right = 0;
        std::memcpy(&left, a.data() + at, sizeof left);
        std::memcpy(&right, b.data() + at, sizeof right);
        if (left != right) return false;
    }
    for (; at < a.size(); ++at)
        if (a[at] != b[at]) return false;
    return true;
}

}  // namespace

ColumnNames::ColumnNames(std::vector<std::string> names)
    : names_(std::move(names)), slots_(std::bit_ceil(names_.size() * 2 + 1)), next_(names_.size() + 1, -1) {
    for (std::size_t column = 0; column < names_.size(); ++column) {
        if (look_up(names_[column]) >= 0) continue;
        const std::uint32_t hash = name_hash(names_[column]);
        std::size_t at = hash & (slots_.size() - 1);
        while (slots_[at].column_plus_one != 0)
            at = (at + 1) & (slots_.size() - 1);
        slots_[at] = {hash, static_cast<std::uint32_t>(column + 1)};
    }
}

int ColumnNames::find(std::string_view name) const {
    if (slots_.empty()) return -1;
    int& next = next_[static_cast<std::size_t>(last_)];
    if (next < 0 || !equal_bytes(names_[static_cast<std::size_t>(next)], name)) {
        const int column = look_up(name);
        if (column < 0) return -1;
        next = column;
    }
    last_ = next;
    return last_;
}

int ColumnNames::look_up(std::string_view name) const {
    const std::uint32_t hash = name_hash(name);
    for (std::size_t at = hash & (slots_.size() - 1); slots_[at].column_plus_one != 0;
         at = (at + 1) & (slots_.size() - 1)) {
        const std::uint32_t column = slots_[at].column_plus_one - 1;
        if (slots_[at].hash != hash) continue;
        // Most callers spell a name as the catalog does.
        if (equal_bytes(names_[column], name) || same_name(names_[column], name))
            return static_cast<int>(column);
    }
    return -1;
}

}  // namespace brimley::store
