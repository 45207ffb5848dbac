// The tables of a catalog in the schema of a company: making them, and finding out whether a schema has
// them.
#pragma once

#include <libpq-fe.h>

#include <string>
#include <vector>

#include "kernel/store/catalog.h"

namespace brimley::store {

// Every company is this schema of a database of its own.
inline constexpr const char* kCompanySchema = "brimley";
// One sequence gives the row keys of all tables.
inline constexpr const char* kRowKeySequence = "row_keys";
// What the schema of a company says of itself. The number goes up when companies change in a way that older
// programs must not touch.
inline constexpr const char* kCompanyMark = "Brimley company, layout 1";

// The schema and everything in it, in the order of making.
[[nodiscard]] std::vector<std::string> postgresql_layout(const Catalog& catalog);

// The first table or field of the catalog that the schema lacks or holds as another type, as "table" or
// "table.field"; empty when all are there.
[[nodiscard]] std::string missing_in_schema(PGconn* connection, const Catalog& catalog);

}  // namespace brimley::store
