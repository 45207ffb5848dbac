// Query texts of the dialect turned into statements of an engine.
//
// A translation depends on the shape of a text only, never on its literals, and so is kept and used for every
// text of that shape. The parameters of every statement of one translation stand in this order: the literals
// of the select list and the ORDER BY; the literals of the conditions; a row key where the statement wants
// one.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "kernel/store/catalog.h"
#include "kernel/store/dialect/parameters.h"
#include "kernel/store/dialect/statement_text.h"
#include "kernel/store/dialect/syntax.h"
#include "kernel/store/place_set.h"

namespace brimley::store::dialect {

struct ResultColumn {
    std::string name;
    FieldType type = FieldType::text;
    int field = -1;  // its place in the table, when it is a plain field
};

// Two literals compared with each other, as in WHERE 1 = 2. When such a condition is false no row can be in
// the result, and the engine need not be asked.
struct ConstantTest {
    std::size_t left = 0;
    std::size_t right = 0;
    std::string sign;
};

// Most keysets have one row, which is wanted at once. One with this many rows is opened once more for its
// keys alone, so that the rest of its rows is not read for nothing.
inline constexpr int kHeadRows = 8;

struct SelectTranslation {
    std::vector<ResultColumn> columns;
    // The table, when its rows have keys and can be changed: one table, no aggregate, nothing nested.
    const Table* table = nullptr;
    bool has_condition = false;
    bool ordered = false;                     // has an ORDER BY
    std::vector<LiteralParameter> outer;      // of the select list and the ORDER BY
    std::vector<LiteralParameter> condition;  // of the WHERE and every ON
    std::vector<ConstantTest> constants;

    // All rows, for those who only read them. Keyed only without an ORDER BY: a key beside the columns makes
    // a sort dearer, and a statement that is the same for those who change rows is prepared once.
    StatementText rows;
    // Only with a table, and keyed:
    StatementText first_row;  // only without conditions: the first of all rows
    StatementText keys;       // all keys, nothing else
    StatementText head;       // the first kHeadRows of all rows
    StatementText by_key;     // one row; parameters: outer, key
    StatementText
        held_row;  // the same, and held until the transaction ends; no row when somebody else has it

    std::string select_list;  // pieces that FindFirst is made of
    std::string from;
    std::string order;
    std::vector<ParameterKind> outer_kinds;
};

// The rows of a table that meet the criteria of a FindFirst on the recordset of a translation.
struct FindTranslation {
    std::vector<LiteralParameter> literals;
    // Parameters: outer, literals, and the key where it is named.
    StatementText first;        // the first in the recordset's order
    StatementText held_first;   // the same, and held as SelectTranslation::held_row is
    StatementText first_after;  // the first after the key, in insertion order
    StatementText keys;         // of all matches
    StatementText at_key;       // the row of the key, if it matches
};

struct ChangeTranslation {
    StatementText text;
    std::vector<LiteralParameter> literals;
    const Table* table = nullptr;
    PlaceSet assigned;  // the fields of the table; empty for a DELETE
    // Of a watched table: the rows that it changes, keyed, with every field, and held from then on.
    StatementText rows;
    std::vector<LiteralParameter> literals_of_rows;
};

class Translator {
  public:
    Translator(const Catalog& catalog, const Flavour& flavour) : catalog_(catalog), flavour_(flavour) {}

    // All of them throw ErrorKind::syntax and ErrorKind::name.
    [[nodiscard]] SelectTranslation select(std::string_view query) const;
    // Of a select that has a table. The criteria's names are fields of that table, or other names that the
    // select list gives to them.
    [[nodiscard]] FindTranslation find(const SelectTranslation& select, std::string_view criteria) const;
    // Criteria for rows in memory, of any select; the names are those of its columns.
    [[nodiscard]] ExpressionPtr filter(const SelectTranslation& select, std::string_view criteria) const;
    [[nodiscard]] ChangeTranslation change(std::string_view statement) const;

    // Statements of a table that need no query text. They write the fields at these places, whose values are
    // the parameters in order. What an insert leaves out holds what a field of a new row does: false when it
    // is a yes/no field, else null.
    [[nodiscard]] StatementText insert(const Table& table, const std::vector<int>& fields) const;
    // Of the row of the key, which is the last parameter.
    [[nodiscard]] StatementText update(const Table& table, const std::vector<int>& fields) const;

    // Number and hash of the last entry of the catalog's trail, keyed.
    [[nodiscard]] StatementText last_entry() const;
    // Appends an entry after it, with the next number and a hash that the engine computes. Parameters: the
    // fields between these, and Flavour::chained_hash's rest. Empty where the engine does not compute it.
    [[nodiscard]] std::optional<StatementText> next_entry() const;

  private:
    const Catalog& catalog_;
    const Flavour& flavour_;
};

}  // namespace brimley::store::dialect
