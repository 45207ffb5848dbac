#include "kernel/store/sqlite/sqlite_log.h"

#include <fmt/format.h>

#include "kernel/store/error.h"
#include "kernel/store/sqlite/sqlite_error.h"
#include "kernel/store/sqlite/sqlite_head.h"

namespace brimley::store {

namespace {

int run_to_end(sqlite3_stmt* statement) noexcept {
    while (sqlite3_step(statement) == SQLITE_ROW) {
    }
    return sqlite3_reset(statement);
}

void checkpoint(sqlite3* connection) noexcept {
    sqlite3_wal_checkpoint_v2(connection, nullptr, SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr);
}

}  // namespace

SqliteLog::SqliteLog(sqlite3* connection, int layout)
    : connection_(connection),
      layout_(static_cast<std::uint32_t>(layout)),
      version_(prepare_sql(connection, "PRAGMA user_version")),
      begin_(prepare_sql(connection, "BEGIN IMMEDIATE")),
      commit_(prepare_sql(connection, "COMMIT")) {}

std::uint32_t SqliteLog::version() {
    const int stepped = sqlite3_step(version_.get());
    const auto version = static_cast<std::uint32_t>(sqlite3_column_int64(version_.get(), 0));
    const int code = sqlite3_reset(version_.get());
    if (stepped != SQLITE_ROW) throw_sqlite_error(connection_, code, "the company file");
    return version;
}

bool SqliteLog::is_needed() {
    const std::uint32_t found = version();
    if ((found & ~kSqliteLogNeeded) != layout_)
        throw Error(ErrorKind::state, "the company was upgraded meanwhile: it must be opened again");
    return (found & kSqliteLogNeeded) != 0;
}

// Whatever the layout is by now, it stays.
int SqliteLog::write_version(bool needed) {
    const std::uint32_t layout = version() & ~kSqliteLogNeeded;
    const std::uint32_t version = needed ? layout | kSqliteLogNeeded : layout;
    const std::string statement = fmt::format("PRAGMA user_version = {}", version);
    return sqlite3_exec(connection_, statement.c_str(), nullptr, nullptr, nullptr);
}

int SqliteLog::store_need(bool needed) {
    int code = run_to_end(begin_.get());
    if (code == SQLITE_OK) code = write_version(needed);
    if (code == SQLITE_OK) code = run_to_end(commit_.get());
    if (sqlite3_get_autocommit(connection_) == 0)
        sqlite3_exec(connection_, "ROLLBACK", nullptr, nullptr, nullptr);
    return code;
}

bool SqliteLog::mark_as_needed() {
    const int code = store_need(true);
    if ((code & 0xff) == SQLITE_BUSY) return false;
    if (code != SQLITE_OK) throw_sqlite_error(connection_, code, "the company file");
    checkpoint(connection_);
    return true;
}

void SqliteLog::tidy() noexcept {
    try {
        if ((version() & kSqliteLogNeeded) == 0) return;
        if (store_need(false) == SQLITE_OK) checkpoint(connection_);
    } catch (...) {
        // What cannot even be read is left as it is.
    }
}

}  // namespace brimley::store
