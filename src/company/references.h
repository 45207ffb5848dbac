// Which fields name a row of a master.
#pragma once

#include <span>
#include <string_view>

namespace brimley::company {

// Fields of a table that name a row of a master by one of its fields.
struct Reference {
    const char* table;
    const char* fields;  // parted by blanks
    const char* master;
    const char* master_field;

    // The base currency may be named although no row has it.
    [[nodiscard]] bool names_currency() const { return master == std::string_view("Working_currency_table"); }
};

// Of masters, which people bring along; and of what the forms store.
[[nodiscard]] std::span<const Reference> references_of_masters();
[[nodiscard]] std::span<const Reference> references_of_documents();

}  // namespace brimley::company
