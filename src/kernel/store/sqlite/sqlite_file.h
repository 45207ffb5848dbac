// Company files of SQLite as files: recognising, opening and making them.
#pragma once

#include <string>

#include "kernel/store/catalog.h"
#include "kernel/store/sqlite/sqlite_handle.h"

namespace brimley::store {

struct SqliteFile {
    SqliteHandle connection;
    const Catalog* catalog;  // of its layout
    // Why it may only be read, as the end of a sentence; empty when it is sound.
    std::string damage;
};

// A connection set up for a company: durable, with the dialect's functions, and nothing in the file can run
// by itself. Throws not_a_company, locked, io.
[[nodiscard]] SqliteFile open_sqlite_file(const std::string& path, const Catalog& catalog);
void create_sqlite_file(const std::string& path, const Catalog& catalog);
void remove_sqlite_file(const std::string& path);
// Copies what the connection sees of its company at this moment, while others go on writing, to a new file of
// mode 0600. Throws ErrorKind::state when the path exists, io. A failure leaves nothing behind.
void copy_sqlite_file(sqlite3* connection, const std::string& to);

}  // namespace brimley::store
