#include "kernel/store/sqlite/sqlite_layout.h"

#include <fmt/format.h>

#include <algorithm>
#include <functional>
#include <string_view>
#include <unordered_map>
#include <utility>

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

std::string index_name(const Table& table, std::size_t number) {
    return fmt::format("{}_index_{}", table.name, number);
}

std::string index_definition(const Table& table, const Index& index, std::size_t number) {
    std::string fields;
    for (const std::string& field : index.fields)
        fields += (fields.empty() ? "" : ", ") + sqlite_name(field);
    std::string rows;
    for (const std::string& flag : index.only_where_false)
        rows += (rows.empty() ? " WHERE " : " AND ") + sqlite_name(flag) + " = 0";
    return fmt::format("CREATE {}INDEX {} ON {} ({}){}", index.unique ? "UNIQUE " : "",
                       sqlite_name(index_name(table, number)), sqlite_name(table.name), fields, rows);
}

// One of the file's objects, as SQLite keeps it: a table, an index, a trigger or a view.
struct StoredObject {
    std::string kind;
    std::string name;
    std::string statement;  // that made it
};

std::string text_column(sqlite3_stmt* statement, int column) {
    const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    return text ? text : "";
}

void each_row(sqlite3* connection, const std::string& sql, const std::function<void(sqlite3_stmt*)>& visit) {
    const SqliteStatementHandle rows = prepare_sql(connection, sql);
    int code = sqlite3_step(rows.get());
    for (; code == SQLITE_ROW; code = sqlite3_step(rows.get()))
        visit(rows.get());
    if (code != SQLITE_DONE) throw_sqlite_error(connection, code, "the company file");
}

std::vector<StoredObject> stored_objects(sqlite3* connection) {
    std::vector<StoredObject> objects;
    each_row(connection, "SELECT type, name, sql FROM sqlite_schema", [&](sqlite3_stmt* row) {
        objects.push_back({text_column(row, 0), text_column(row, 1), text_column(row, 2)});
    });
    return objects;
}

std::vector<std::string> stored_fields(sqlite3* connection, const std::string& table) {
    std::vector<std::string> fields;
    each_row(connection, fmt::format("PRAGMA table_xinfo({})", sqlite_name(table)),
             [&](sqlite3_stmt* row) { fields.push_back(text_column(row, 1)); });
    return fields;
}

// In what a table differs that has the name of one of the catalog: by a field's name if possible.
std::string difference_of_table(sqlite3* connection, const Table& table) {
    const std::vector<std::string> fields = stored_fields(connection, table.name);
    for (const Field& field : table.fields)
        if (std::find(fields.begin(), fields.end(), field.name) == fields.end())
            return fmt::format("{}.{} is missing", table.name, field.name);
    for (const std::string& field : fields)
        if (field != dialect::kRowKeyColumn && table.field_index(field) < 0)
            return fmt::format("{}.{} does not belong to it", table.name, field);
    return fmt::format("table {} is not as it should be", table.name);
}

// after: the layout whose tables are there already.
std::vector<std::pair<std::string, std::string>> statements_by_name(const Catalog& catalog, int after = 0) {
    std::vector<std::pair<std::string, std::string>> statements;
    for (const Table& table : catalog.tables()) {
        if (table.since <= after) continue;
        statements.emplace_back(table.name, table_definition(table));
        // The index of a table's key, its first one, is made last: of several that seem as good SQLite takes
        // the youngest.
        for (std::size_t i = table.indexes.size(); i > 0; --i)
            if (!table.indexes[i - 1].in_order_of_adding)
                statements.emplace_back(index_name(table, i),
                                        index_definition(table, table.indexes[i - 1], i));
    }
    return statements;
}

}  // namespace

std::vector<std::string> sqlite_layout(const Catalog& catalog, int after) {
    std::vector<std::string> statements;
    for (auto& [name, statement] : statements_by_name(catalog, after))
        statements.push_back(std::move(statement));
    return statements;
}

// SQLite keeps the text of each statement, so that equal texts are equal objects, whoever made the file.
std::string difference_from_layout(sqlite3* connection, const Catalog& catalog) {
    const auto expected = statements_by_name(catalog);
    std::unordered_map<std::string_view, std::string_view> missing(expected.begin(), expected.end());
    for (const StoredObject& object : stored_objects(connection)) {
        const auto found = missing.find(object.name);
        if (found == missing.end())
            return fmt::format("{} {} does not belong to it", object.kind, object.name);
        if (object.statement != found->second) {
            const Table* const table = object.kind == "table" ? catalog.find(object.name) : nullptr;
            return table ? difference_of_table(connection, *table)
                         : fmt::format("{} {} is not as it should be", object.kind, object.name);
        }
        missing.erase(found);
    }
    for (const auto& [name, statement] : expected)
        if (missing.contains(name))
            return fmt::format("{} {} is missing", catalog.find(name) ? "table" : "index", name);
    return {};
}

}  // namespace brimley::store
