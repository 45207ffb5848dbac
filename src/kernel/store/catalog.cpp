#include "kernel/store/catalog.h"

#include "kernel/store/letter_case.h"

namespace brimley::store {

int Table::field_index(std::string_view field) const {
    for (std::size_t i = 0; i < fields.size(); ++i)
        if (same_name(fields[i].name, field)) return static_cast<int>(i);
    return -1;
}

Catalog::Catalog(std::vector<Table> tables) : tables_(std::move(tables)) {
    for (std::size_t i = 0; i < tables_.size(); ++i)
        by_lower_name_.emplace(lower_case(tables_[i].name), i);
}

const Table* Catalog::find(std::string_view table) const {
    const auto found = by_lower_name_.find(lower_case(table));
    return found == by_lower_name_.end() ? nullptr : &tables_[found->second];
}

std::string lower_case(std::string_view text) {
    std::string lower(text);
    for (char& letter : lower)
        letter = lower_letter(letter);
    return lower;
}

}  // namespace brimley::store
