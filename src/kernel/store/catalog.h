// The shape of a company database as data: tables, fields, keys, indexes.
//
// The store is given a catalog when it opens a database and knows no table by itself. From the catalog come
// the engine's DDL, the meaning of every name in a query text, import and export, and the tests. The one
// catalog of the product is kernel/tables.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace brimley::store {

enum class FieldType { text, number, integer, date, datetime, yes_no };

[[nodiscard]] constexpr bool is_date(FieldType type) {
    return type == FieldType::date || type == FieldType::datetime;
}

struct Field {
    std::string name;  // written as it is shown; look-ups ignore case
    FieldType type = FieldType::text;
    // A yes/no field that may hold null. All others are FALSE on a new row; every other type is null there.
    bool nullable_flag = false;
};

// A text field that queries compare with bare numbers (company = 1) compares by value, which no index helps
// with: "01" is 1 too. In an index it belongs after the fields that are looked up as what they are.
struct Index {
    std::vector<std::string> fields;
    bool unique = false;
    // Only rows in which all of these yes/no fields are FALSE are in it. It serves queries that ask for just
    // that, at a cost that does not grow with the other rows.
    std::vector<std::string> only_where_false = {};
    // Rows are added in its order. An engine whose row keys grow with each row added to a table has no such
    // index, since they serve as well.
    bool in_order_of_adding = false;
};

// A table whose rows the company's trail watches (trail_table()).
struct Watched {
    std::string document;      // what its rows are part of: "invoice"
    std::string number_field;  // which one, as its users name it
    // Rows that go along with a document: an entry is named after them only when nothing else was written.
    bool goes_along = false;
    // Fields that acts on other documents change, and that follow from those documents.
    std::vector<std::string> left_out = {};
};

struct Table {
    std::string name;
    std::vector<Field> fields;
    // What single rows are looked up by; empty for documents and their lines, which import only adds.
    std::vector<std::string> natural_key;
    bool single_row = false;                // a table of exactly one row, without a key
    std::vector<std::string> export_order;  // rows are exported in this order, then in insertion order
    std::vector<Index> indexes;
    int since = 1;                        // the layout that it came with
    std::optional<Watched> watched = {};  // by the trail
    bool is_trail = false;                // made by trail_table()

    // Position of the field, or -1. Ignores case.
    [[nodiscard]] int field_index(std::string_view field) const;
};

// The table that a company's trail is kept in: one entry for each transaction that wrote rows of watched
// tables, each holding the hash of the one before it (trail.h).
[[nodiscard]] Table trail_table(std::string name);

// A layout is what a company had when it was made, or was last upgraded to: the tables up to some number.
class Catalog {
  public:
    explicit Catalog(std::vector<Table> tables);

    // Null when there is no such table. Ignores case.
    [[nodiscard]] const Table* find(std::string_view table) const;
    [[nodiscard]] const std::vector<Table>& tables() const { return tables_; }
    // Null when its companies have none.
    [[nodiscard]] const Table* trail() const { return trail_; }
    // Of the companies that it describes: 1 or more.
    [[nodiscard]] int layout() const { return layout_; }
    // The tables as companies of that layout have them, 1 to layout(). Lives as long as this one.
    [[nodiscard]] const Catalog& of_layout(int layout) const;

  private:
    std::vector<Table> tables_;
    const Table* trail_ = nullptr;
    int layout_ = 1;
    std::vector<std::unique_ptr<const Catalog>> older_;
    std::unordered_map<std::string, std::size_t> by_lower_name_;
};

// ASCII lower case; names of tables and fields are ASCII.
std::string lower_case(std::string_view text);

}  // namespace brimley::store
