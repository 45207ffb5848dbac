#include "kernel/store/sqlite/sqlite_log.h"

#include <fmt/format.h>

#include "kernel/store/sqlite/sqlite_error.h"
#include "kernel/store/sqlite/sqlite_head.h"

namespace brimley::store {

namespace {

int run_to_end(sqlite3_stmt* statement) noexcept {
    while (sqlite3_step(statement) == SQLITE_ROW) {
    }
    return sqlite3_reset(statement);
}

SqliteStatementHandle version_statement(sqlite3* connection, std::uint32_t version) {
    return prepare_sql(connection, fmt::format("PRAGMA user_version = {}", version));
}

void checkpoint(sqlite3* connection) noexcept {
    sqlite3_wal_checkpoint_v2(connection, nullptr, SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr);
}

}  // namespace

SqliteLog::SqliteLog(sqlite3* connection)
    : connection_(connection),
      version_(prepare_sql(connection, "PRAGMA user_version")),
      with_log_(version_statement(connection, kSqliteLayoutVersion | kSqliteLogNeeded)),
      without_log_(version_statement(connection, kSqliteLayoutVersion)),
      begin_(prepare_sql(connection, "BEGIN IMMEDIATE")),
      commit_(prepare_sql(connection, "COMMIT")) {}

bool SqliteLog::is_needed() {
    const int stepped = sqlite3_step(version_.get());
    const auto version = static_cast<std::uint32_t>(sqlite3_column_int64(version_.get(), 0));
    const int code = sqlite3_reset(version_.get());
    if (stepped != SQLITE_ROW) throw_sqlite_error(connection_, code, "the company file");
    return (version & kSqliteLogNeeded) != 0;
}

int SqliteLog::store_version(sqlite3_stmt* version) noexcept {
    int code = run_to_end(begin_.get());
    if (code == SQLITE_OK) code = run_to_end(version);
    if (code == SQLITE_OK) code = run_to_end(commit_.get());
    if (sqlite3_get_autocommit(connection_) == 0)
        sqlite3_exec(connection_, "ROLLBACK", nullptr, nullptr, nullptr);
    return code;
}

bool SqliteLog::mark_as_needed() {
    const int code = store_version(with_log_.get());
    if ((code & 0xff) == SQLITE_BUSY) return false;
    if (code != SQLITE_OK) throw_sqlite_error(connection_, code, "the company file");
    checkpoint(connection_);
    return true;
}

void SqliteLog::tidy() noexcept {
    try {
        if (!is_needed()) return;
    } catch (...) {
        return;  // what cannot even be read is left as it is
    }
    if (store_version(without_log_.get()) == SQLITE_OK) checkpoint(connection_);
}

}  // namespace brimley::store
