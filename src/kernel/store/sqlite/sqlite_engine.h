// A company in one SQLite file. Several programs, and several workspaces of one program, may have it open:
// each reads without waiting for a writer, and one at a time writes.
#pragma once

#include <memory>
#include <string>

#include "kernel/store/catalog.h"
#include "kernel/store/engine.h"

namespace brimley::store {

// Opens a company file that exists. Throws not_a_company, locked, io.
[[nodiscard]] OpenedEngine open_sqlite_company(const std::string& path, const Catalog& catalog);

// Makes a company file of mode 0600 with every table of the catalog. Throws ErrorKind::state when the path
// exists. A failure leaves nothing behind.
void create_sqlite_company(const std::string& path, const Catalog& catalog);
// With the files that SQLite keeps beside it. Nobody may have it open.
void remove_sqlite_company(const std::string& path);

}  // namespace brimley::store
