#include "kernel/store/catalog.h"

#include <algorithm>
#include <iterator>

#include "kernel/store/letter_case.h"

namespace brimley::store {

int Table::field_index(std::string_view field) const {
    for (std::size_t i = 0; i < fields.size(); ++i)
        if (same_name(fields[i].name, field)) return static_cast<int>(i);
    return -1;
}

Catalog::Catalog(std::vector<Table> tables) : tables_(std::move(tables)) {
    for (std::size_t i = 0; i < tables_.size(); ++i) {
        by_lower_name_.emplace(lower_case(tables_[i].name), i);
        layout_ = std::max(layout_, tables_[i].since);
        if (tables_[i].is_trail) trail_ = &tables_[i];
    }
    for (int layout = 1; layout < layout_; ++layout) {
        std::vector<Table> older;
        std::ranges::copy_if(tables_, std::back_inserter(older),
                             [&](const Table& table) { return table.since <= layout; });
        older_.push_back(std::make_unique<const Catalog>(std::move(older)));
    }
}

const Catalog& Catalog::of_layout(int layout) const {
    return layout == layout_ ? *this : *older_.at(static_cast<std::size_t>(layout - 1));
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
