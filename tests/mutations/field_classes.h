// What each field of a company holds, and whether the books can prove it: data of the mutation harness.
//
// Every field of the catalog has a row here, so that a new field has to be classed before the harness runs.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brimley::testing {

enum class FieldClass {
    money,
    key,
    vendor,
    currency,
    account,
    docno,
    date,
    flag,
    counter,
    number,   // rates, days, periods, numbers of lines
    text,     // texts that follow from other rows
    setting,  // masters: decisions of people, which may be others today than yesterday
    words,    // remarks, names, addresses
    layout,   // grids, page setups, remembered values, rights
    entry,    // of the trail, which only the trail itself proves
    absent,   // what this module never writes: tables of its sisters, marks of a host that prints
};

enum class Provable {
    every_change,
    names_nothing,  // any row of a master may be meant, but it must be there
    nothing,
};

struct ClassOfFields {
    std::string_view table;
    FieldClass held;
    Provable provable;
    std::string_view fields;  // parted by blanks
};

// Which rows of a table are changed: the first of each kind, and only rows that some other row names.
struct SampledTable {
    std::string_view table;
    std::string_view kinds;  // the fields that make kinds of rows, parted by blanks
    std::string_view key;    // empty: any row
    std::string_view used_in;
};

// In place of a field in `used_in`: any number above 1.
inline constexpr std::string_view kUsedCounters = "counters";

struct ClassOfField {
    FieldClass held;
    Provable provable;
};

[[nodiscard]] std::string_view name_of(FieldClass held);
// Whether the harness asks for every single change of such a field to be found.
[[nodiscard]] bool must_be_found_always(FieldClass held);
// Fields of these classes of which some changes go unseen: by the books alone, or by the trail as well, which
// watches documents and no masters.
[[nodiscard]] bool is_known_gap(const std::string& table_and_field, bool seen_by_trail);
// Throws std::out_of_range for a field that has no row, or two.
[[nodiscard]] ClassOfField class_of(const std::string& table, const std::string& field);
[[nodiscard]] SampledTable sampling_of(const std::string& table);
[[nodiscard]] std::vector<std::string> words_of(std::string_view text);

}  // namespace brimley::testing
