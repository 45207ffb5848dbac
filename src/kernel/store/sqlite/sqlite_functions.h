// The functions of the dialect that SQLite does not have.
#pragma once

#include <sqlite3.h>

namespace brimley::store {

inline constexpr const char* kNumberOfTextFunction = "brimley_number";
inline constexpr const char* kLeadingNumberFunction = "brimley_val";

// Makes them known to the connection.
void register_sqlite_functions(sqlite3* connection);

}  // namespace brimley::store
