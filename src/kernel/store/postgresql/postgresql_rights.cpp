#include "kernel/store/postgresql/postgresql_rights.h"

#include <fmt/format.h>

#include <algorithm>

#include "kernel/store/postgresql/postgresql_flavour.h"
#include "kernel/store/postgresql/postgresql_layout.h"

namespace brimley::store {

namespace {

std::string table_in_schema(const std::string& table) {
    return fmt::format("{}.{}", kCompanySchema, postgresql_name(table));
}

// Without the schema nobody comes to its tables. A list of privileges asks for any of them.
std::string has_privilege(const std::string& role, const char* privileges) {
    return fmt::format(
        "(pg_catalog.has_schema_privilege({0}, '{1}', 'USAGE') AND pg_catalog.has_table_privilege({0}, "
        "name, '{2}'))::int4::text",
        postgresql_text(role), kCompanySchema, privileges);
}

std::string privileges_of(const TableRights& rights) {
    std::string privileges;
    const auto add = [&](bool has, const char* privilege) {
        if (has) privileges += (privileges.empty() ? "" : ", ") + std::string(privilege);
    };
    add(rights.reads, "SELECT");
    add(rights.adds, "INSERT");
    add(rights.changes, "UPDATE");
    add(rights.removes, "DELETE");
    return privileges;
}

}  // namespace

std::string role_sql(const std::string& role) {
    return "SELECT 1 FROM pg_catalog.pg_roles WHERE rolname = " + postgresql_text(role);
}

std::string rights_of_role_sql(const std::string& role, const Catalog& catalog) {
    std::string tables;
    for (const Table& table : catalog.tables())
        tables += (tables.empty() ? "" : ", ") + postgresql_text(table_in_schema(table.name));
    return fmt::format(
        "SELECT {}, {}, {}, {} FROM unnest(ARRAY[{}]) WITH ORDINALITY AS tables(name, place) ORDER BY place",
        has_privilege(role, "SELECT"), has_privilege(role, "INSERT"), has_privilege(role, "UPDATE"),
        has_privilege(role, "DELETE, TRUNCATE"), tables);
}

std::vector<std::string> statements_giving(const std::string& role, std::span<const TableRights> rights) {
    const std::string name = postgresql_quoted(role);
    std::vector<std::string> statements{
        fmt::format("REVOKE ALL ON ALL TABLES IN SCHEMA {} FROM {}", kCompanySchema, name),
        fmt::format("REVOKE ALL ON ALL SEQUENCES IN SCHEMA {} FROM {}", kCompanySchema, name),
        fmt::format("REVOKE ALL ON SCHEMA {} FROM {}", kCompanySchema, name),
        fmt::format("GRANT USAGE ON SCHEMA {} TO {}", kCompanySchema, name)};
    for (const TableRights& table : rights)
        if (const std::string privileges = privileges_of(table); !privileges.empty())
            statements.push_back(
                fmt::format("GRANT {} ON {} TO {}", privileges, table_in_schema(table.table), name));
    // Whoever adds rows draws their keys.
    if (std::ranges::any_of(rights, &TableRights::adds))
        statements.push_back(
            fmt::format("GRANT USAGE ON SEQUENCE {}.{} TO {}", kCompanySchema, kRowKeySequence, name));
    return statements;
}

}  // namespace brimley::store
