// What names mean inside one SELECT, UPDATE or DELETE: the tables and nested SELECTs in its FROM.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "kernel/store/catalog.h"
#include "kernel/store/dialect/flavour.h"
#include "kernel/store/dialect/syntax.h"

namespace brimley::store::dialect {

struct ScopeColumn {
    std::string name;  // as shown
    std::string sql;
    FieldType type = FieldType::text;
    int field = -1;  // its place in the table; -1 when it is computed
};

struct ScopeSource {
    const Table* table = nullptr;  // null for a nested SELECT
    std::vector<ScopeColumn> columns;
    std::vector<std::string> row_keys;  // the SQL of the keys that give insertion order
};

class Scope {
  public:
    Scope(std::string_view query, const Catalog& catalog, const Flavour& flavour)
        : query_(query), catalog_(catalog), flavour_(flavour) {}

    // Adds a table and gives its alias. Throws ErrorKind::name when the catalog has none of that name.
    std::string add_table(const Source& source);
    void add(ScopeSource source) { sources_.push_back(std::move(source)); }
    // Another name for a field of the first table, unless something has that name already.
    void add_name(std::string_view name, int field);
    [[nodiscard]] std::string next_alias() const;

    // Null when there is no such column. Without a qualifier the first source that has the name gives it.
    [[nodiscard]] const ScopeColumn* find(std::string_view qualifier, std::string_view name) const;
    // Throws ErrorKind::name instead.
    [[nodiscard]] const ScopeColumn& resolve(const Expression& column) const;
    [[nodiscard]] const ScopeSource& source_of_table(std::string_view table, std::size_t position) const;
    [[nodiscard]] const std::vector<ScopeSource>& sources() const { return sources_; }
    [[nodiscard]] std::string_view query() const { return query_; }

  private:
    std::string_view query_;
    const Catalog& catalog_;
    const Flavour& flavour_;
    std::vector<ScopeSource> sources_;
};

}  // namespace brimley::store::dialect
