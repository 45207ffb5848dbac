// The tables of a catalog in a SQLite file: making them, and finding out whether a file has them.
#pragma once

#include <sqlite3.h>

#include <string>
#include <vector>

#include "kernel/store/catalog.h"

namespace brimley::store {

// CREATE TABLE and CREATE INDEX for everything in the catalog.
[[nodiscard]] std::vector<std::string> sqlite_layout(const Catalog& catalog);

// The first table or field of the catalog that the file lacks or holds as another type, as "table" or
// "table.field"; empty when all are there.
[[nodiscard]] std::string missing_in_sqlite(sqlite3* connection, const Catalog& catalog);

}  // namespace brimley::store
