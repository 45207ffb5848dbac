#include "kernel/store/sqlite/sqlite_handle.h"

#include "kernel/store/sqlite/sqlite_error.h"

namespace brimley::store {

void run_sql(sqlite3* connection, const std::string& sql) {
    const int code = sqlite3_exec(connection, sql.c_str(), nullptr, nullptr, nullptr);
    if (code != SQLITE_OK) throw_sqlite_error(connection, code, "the company file");
}

SqliteStatementHandle prepare_sql(sqlite3* connection, const std::string& sql) {
    sqlite3_stmt* statement = nullptr;
    const int code = sqlite3_prepare_v3(connection, sql.data(), static_cast<int>(sql.size()),
                                        SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    if (code != SQLITE_OK) throw_sqlite_error(connection, code, "the statement");
    return SqliteStatementHandle(statement);
}

std::string text_of_sql(sqlite3* connection, const std::string& sql) {
    const SqliteStatementHandle statement = prepare_sql(connection, sql);
    const int code = sqlite3_step(statement.get());
    if (code != SQLITE_ROW) throw_sqlite_error(connection, code, "the company file");
    const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(statement.get(), 0));
    return text ? text : "";
}

std::string sqlite_name(std::string_view name) {
    std::string quoted = "\"";
    for (const char letter : name)
        quoted.append(letter == '"' ? 2 : 1, letter);
    return quoted + '"';
}

}  // namespace brimley::store
