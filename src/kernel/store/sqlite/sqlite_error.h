// SQLite's result codes as the store's errors.
#pragma once

#include <sqlite3.h>

#include <string>

namespace brimley::store {

// Throws the store::Error that the code stands for. what: what was being done, as the start of a sentence.
[[noreturn]] void throw_sqlite_error(sqlite3* connection, int code, const std::string& what);

}  // namespace brimley::store
