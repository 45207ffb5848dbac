#include "kernel/store/postgresql/postgresql_layout.h"

#include <fmt/format.h>

#include <unordered_map>

#include "kernel/store/dialect/flavour.h"
#include "kernel/store/postgresql/postgresql_flavour.h"
#include "kernel/store/postgresql/postgresql_handle.h"

namespace brimley::store {

namespace {

// As the server's own catalog names them.
const char* storage_of(FieldType type) {
    switch (type) {
        case FieldType::text:
            return "text";
        case FieldType::number:
            return "float8";
        case FieldType::integer:
            return "int8";
        case FieldType::date:
            return "date";
        case FieldType::datetime:
            return "timestamp";
        case FieldType::yes_no:
            break;
    }
    return "bool";
}

std::string column_definition(const Field& field) {
    std::string definition = fmt::format("{} {}", postgresql_name(field.name), storage_of(field.type));
    if (field.type == FieldType::text) definition += " COLLATE \"C\"";
    if (field.type == FieldType::yes_no && !field.nullable_flag) definition += " NOT NULL DEFAULT FALSE";
    return definition;
}

std::string table_definition(const Table& table) {
    std::string sql =
        fmt::format("CREATE TABLE {} ({} int8 PRIMARY KEY DEFAULT nextval('{}')", postgresql_name(table.name),
                    postgresql_name(dialect::kRowKeyColumn), kRowKeySequence);
    for (const Field& field : table.fields)
        sql += ", " + column_definition(field);
    return sql + ")";
}

// Nulls are smallest in the dialect, so they are in the indexes that its ORDER BY is to use.
std::string index_definition(const Table& table, const Index& index, std::size_t number) {
    std::string fields;
    for (const std::string& field : index.fields)
        fields += (fields.empty() ? "" : ", ") + postgresql_name(field) + " NULLS FIRST";
    std::string rows;
    for (const std::string& flag : index.only_where_false)
        rows += (rows.empty() ? " WHERE " : " AND ") + postgresql_name(flag) + " = FALSE";
    return fmt::format("CREATE {}INDEX {} ON {} ({}){}", index.unique ? "UNIQUE " : "",
                       postgresql_name(fmt::format("{}_index_{}", table.name, number)),
                       postgresql_name(table.name), fields, rows);
}

// The number that the whole of a text is: the same texts that the store takes for numbers, and null for those
// beyond a floating number.
std::string number_function() {
    return fmt::format(
        "CREATE FUNCTION {}(given text) RETURNS float8 LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ "
        "SELECT CASE WHEN length(given) <= 400 AND given ~ "
        "'^ *[+-]?([0-9]+[.]?[0-9]*|[.][0-9]+)([eE][+-]?[0-9]{{1,3}})? *$' "
        "THEN CASE WHEN abs(btrim(given)::numeric) > 1.7976931348623157e308 THEN NULL "
        "WHEN btrim(given)::numeric <> 0 AND abs(btrim(given)::numeric) < 5e-324 THEN NULL "
        "ELSE btrim(given)::numeric::float8 END END $$",
        kServerNumberFunction);
}

std::string leading_number_function() {
    return fmt::format(
        "CREATE FUNCTION {}(given text) RETURNS float8 LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ "
        "SELECT coalesce({}(substring(given FROM '^ *(?:[+](?!-))?(-?(?:[0-9]+[.]?[0-9]*|[.][0-9]+))')), 0) "
        "$$",
        kServerLeadingNumberFunction, kServerNumberFunction);
}

}  // namespace

std::vector<std::string> postgresql_layout(const Catalog& catalog) {
    std::vector<std::string> statements{
        fmt::format("CREATE SCHEMA {}", kCompanySchema),
        fmt::format("COMMENT ON SCHEMA {} IS '{}'", kCompanySchema, kCompanyMark),
        fmt::format("CREATE SEQUENCE {}", kRowKeySequence), number_function(), leading_number_function()};
    for (const Table& table : catalog.tables()) {
        statements.push_back(table_definition(table));
        for (std::size_t i = 0; i < table.indexes.size(); ++i)
            statements.push_back(index_definition(table, table.indexes[i], i + 1));
    }
    return statements;
}

std::string missing_in_schema(PGconn* connection, const Catalog& catalog) {
    const PostgresqlResult columns = run_sql(
        connection,
        fmt::format(
            "SELECT c.relname, a.attname, t.typname FROM pg_class c JOIN pg_attribute a ON a.attrelid "
            "= c.oid JOIN pg_type t ON t.oid = a.atttypid WHERE c.relnamespace = '{}'::regnamespace "
            "AND c.relkind = 'r' AND a.attnum > 0 AND NOT a.attisdropped",
            kCompanySchema));
    std::unordered_map<std::string, std::string> storage;
    for (int row = 0; row < PQntuples(columns.get()); ++row) {
        const auto text = [&](int column) { return std::string(PQgetvalue(columns.get(), row, column)); };
        storage[text(0) + "." + text(1)] = text(2);
    }
    const auto holds = [&](const std::string& table, std::string_view field, std::string_view type) {
        const auto found = storage.find(lower_case(fmt::format("{}.{}", table, field)));
        return found != storage.end() && found->second == type;
    };
    for (const Table& table : catalog.tables()) {
        if (!holds(table.name, dialect::kRowKeyColumn, "int8")) return table.name;
        for (const Field& field : table.fields)
            if (!holds(table.name, field.name, storage_of(field.type))) return table.name + "." + field.name;
    }
    return {};
}

}  // namespace brimley::store
