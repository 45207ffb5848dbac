// The tables of a catalog in the schema of a company: making them, and finding out whether a schema has them
// and nothing else.
#pragma once

#include <libpq-fe.h>

#include <string>
#include <string_view>
#include <vector>

#include "kernel/store/catalog.h"

namespace brimley::store {

// Every company is this schema of a database of its own.
inline constexpr const char* kCompanySchema = "brimley";
// One sequence gives the row keys of all tables.
inline constexpr const char* kRowKeySequence = "row_keys";
// What the schema of a company says of itself, before the number of its layout.
inline constexpr std::string_view kCompanyMark = "Brimley company, layout ";

// The schema and everything in it, in the order of making.
[[nodiscard]] std::vector<std::string> postgresql_layout(const Catalog& catalog);
// What the catalog has that came after that layout, within a company of it.
[[nodiscard]] std::vector<std::string> postgresql_upgrade(const Catalog& catalog, int after);

// What the schema has besides the tables and indexes of the catalog, lacks of them, or has in another form: a
// trigger that runs at each save, a rule, a field of a later version. The first of it by its name, as the end
// of a sentence; empty when the schema is laid out as the catalog says. Throws store::Error.
[[nodiscard]] std::string difference_from_layout(PGconn* connection, const Catalog& catalog);

}  // namespace brimley::store
