// Owning handles of SQLite's two kinds of objects, and the few calls that need no prepared statement.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace brimley::store {

struct CloseSqlite {
    void operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }
};
struct FinalizeSqlite {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using SqliteHandle = std::unique_ptr<sqlite3, CloseSqlite>;
using SqliteStatementHandle = std::unique_ptr<sqlite3_stmt, FinalizeSqlite>;

// Statements without parameters and rows. Throws store::Error.
void run_sql(sqlite3* connection, const std::string& sql);
[[nodiscard]] SqliteStatementHandle prepare_sql(sqlite3* connection, const std::string& sql);
// The first column of the first row.
[[nodiscard]] std::string text_of_sql(sqlite3* connection, const std::string& sql);
// The name in the quotes that make it a name wherever it stands.
[[nodiscard]] std::string sqlite_name(std::string_view name);

}  // namespace brimley::store
