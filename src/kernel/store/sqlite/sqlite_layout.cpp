#include "kernel/store/sqlite/sqlite_layout.h"

#include <fmt/format.h>

#include <unordered_map>

#include "kernel/store/dialect/flavour.h"
#include "kernel/store/sqlite/sqlite_error.h"
#include "kernel/store/sqlite/sqlite_handle.h"

namespace brimley::store {

namespace {

// Dates are Julian day numbers: SQLite's own date functions read them, and they subtract.
const char* storage_of(FieldType type) {
    switch (type) {
        case FieldType::text:
            return "TEXT";
        case FieldType::integer:
        case FieldType::yes_no:
            return "INTEGER";
        default:
            return "REAL";
    }
}

std::string column_definition(const Field& field) {
    const std::string name = sqlite_name(field.name);
    std::string definition = fmt::format("{} {}", name, storage_of(field.type));
    if (field.type != FieldType::yes_no) return definition;
    if (!field.nullable_flag) definition += " NOT NULL DEFAULT 0";
    return definition + fmt::format(" CHECK ({} IN (0, 1))", name);
}

std::string table_definition(const Table& table) {
    std::string sql = fmt::format("CREATE TABLE {} ({} INTEGER PRIMARY KEY", sqlite_name(table.name),
                                  sqlite_name(dialect::kRowKeyColumn));
    for (const Field& field : table.fields)
        sql += ", " + column_definition(field);
    return sql + ") STRICT";
}

std::string index_definition(const Table& table, const Index& index, std::size_t number) {
    std::string fields;
    for (const std::string& field : index.fields)
        fields += (fields.empty() ? "" : ", ") + sqlite_name(field);
    std::string rows;
    for (const std::string& flag : index.only_where_false)
        rows += (rows.empty() ? " WHERE " : " AND ") + sqlite_name(flag) + " = 0";
    return fmt::format("CREATE {}INDEX {} ON {} ({}){}", index.unique ? "UNIQUE " : "",
                       sqlite_name(fmt::format("{}_index_{}", table.name, number)), sqlite_name(table.name),
                       fields, rows);
}

std::string text_column(sqlite3_stmt* statement, int column) {
    const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    return text ? text : "";
}

}  // namespace

std::vector<std::string> sqlite_layout(const Catalog& catalog) {
    std::vector<std::string> statements;
    for (const Table& table : catalog.tables()) {
        statements.push_back(table_definition(table));
        // The index of a table's key, its first one, is made last: of several that seem as good SQLite takes
        // the youngest.
        for (std::size_t i = table.indexes.size(); i > 0; --i)
            statements.push_back(index_definition(table, table.indexes[i - 1], i));
    }
    return statements;
}

std::string missing_in_sqlite(sqlite3* connection, const Catalog& catalog) {
    std::unordered_map<std::string, std::string> storage;
    const SqliteStatementHandle columns =
        prepare_sql(connection,
                    "SELECT m.name, c.name, c.type FROM sqlite_schema AS m, pragma_table_info(m.name) AS c "
                    "WHERE m.type = 'table'");
    int code = sqlite3_step(columns.get());
    for (; code == SQLITE_ROW; code = sqlite3_step(columns.get())) {
        const std::string name = text_column(columns.get(), 0) + "." + text_column(columns.get(), 1);
        storage[lower_case(name)] = text_column(columns.get(), 2);
    }
    if (code != SQLITE_DONE) throw_sqlite_error(connection, code, "the company file");
    const auto holds = [&](const std::string& table, std::string_view field, const char* type) {
        const auto found = storage.find(lower_case(fmt::format("{}.{}", table, field)));
        return found != storage.end() && found->second == type;
    };
    for (const Table& table : catalog.tables()) {
        if (!holds(table.name, dialect::kRowKeyColumn, "INTEGER")) return table.name;
        for (const Field& field : table.fields)
            if (!holds(table.name, field.name, storage_of(field.type))) return table.name + "." + field.name;
    }
    return {};
}

}  // namespace brimley::store
