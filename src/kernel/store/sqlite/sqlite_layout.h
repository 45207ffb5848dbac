// The tables of a catalog in a SQLite file: making them, and finding out whether a file has them and nothing
// else.
#pragma once

#include <sqlite3.h>

#include <string>
#include <vector>

#include "kernel/store/catalog.h"

namespace brimley::store {

// CREATE TABLE and CREATE INDEX for everything in the catalog that came after that layout.
[[nodiscard]] std::vector<std::string> sqlite_layout(const Catalog& catalog, int after = 0);

// What the file has besides the tables and indexes of the catalog, lacks of them, or has in another form: a
// trigger that runs at each save, a field of a later version. The first of it, as the end of a sentence;
// empty when the file is laid out as the catalog says. Throws store::Error for a file that cannot be read.
[[nodiscard]] std::string difference_from_layout(sqlite3* connection, const Catalog& catalog);

}  // namespace brimley::store
