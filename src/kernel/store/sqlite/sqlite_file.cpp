#include "kernel/store/sqlite/sqlite_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>

#include "kernel/store/error.h"
#include "kernel/store/sqlite/sqlite_error.h"
#include "kernel/store/sqlite/sqlite_functions.h"
#include "kernel/store/sqlite/sqlite_head.h"
#include "kernel/store/sqlite/sqlite_layout.h"
#include "kernel/store/sqlite/sqlite_place.h"

namespace brimley::store {

namespace {

constexpr int kOpenWaitMs = 2000;
constexpr std::string_view kJournalMode = "wal";
constexpr int kLooksForDamage = 3;
constexpr int kPauseBetweenLooksMs = 20;

[[noreturn]] void refuse(const std::string& path, std::string_view why) {
    throw Error(ErrorKind::not_a_company, fmt::format("{} {}", path, why));
}

// SQLite keeps count of its memory under a lock of the whole process, which nobody here asks for.
void stop_memory_statistics() {
    [[maybe_unused]] static const int done = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
}

SqliteHandle connect(const std::string& path) {
    stop_memory_statistics();
    // A full path is a file to SQLite whatever its name; ":memory:" by itself is not.
    const std::string full_path = std::filesystem::absolute(path).string();
    sqlite3* raw = nullptr;
    const int code =
        sqlite3_open_v2(full_path.c_str(), &raw,
                        SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr);
    SqliteHandle connection(raw);
    if (code != SQLITE_OK) throw_sqlite_error(raw, code, "the file");
    sqlite3_busy_timeout(raw, kOpenWaitMs);
    return connection;
}

// What the file holds is data: nothing in it is run, whoever has written it.
void distrust(sqlite3* connection) {
    run_sql(connection, "PRAGMA trusted_schema = OFF; PRAGMA cell_size_check = ON");
    for (const int refused : {SQLITE_DBCONFIG_WRITABLE_SCHEMA, SQLITE_DBCONFIG_ENABLE_TRIGGER,
                              SQLITE_DBCONFIG_ENABLE_VIEW, SQLITE_DBCONFIG_DQS_DDL, SQLITE_DBCONFIG_DQS_DML})
        sqlite3_db_config(connection, refused, 0, nullptr);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
}

// SQLite reads the pages that are left only for somebody who might mend its schema. Nobody writes to such a
// file here.
void read_what_is_left(sqlite3* connection) {
    sqlite3_db_config(connection, SQLITE_DBCONFIG_DEFENSIVE, 0, nullptr);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_WRITABLE_SCHEMA, 1, nullptr);
}

// A company that was upgraded a moment before the power went says so in its log alone.
std::uint32_t layout_of(sqlite3* connection, const SqliteHead& head) {
    if (head.log_size == 0) return head.layout;
    try {
        return static_cast<std::uint32_t>(std::stoul(text_of_sql(connection, "PRAGMA user_version"))) &
               ~kSqliteLogNeeded;
    } catch (const Error&) {
        return head.layout;  // what is damaged is told later
    }
}

// Returns the catalog as companies of its layout have it.
const Catalog& require_company(sqlite3* connection, const std::string& path, const Catalog& catalog) {
    const SqliteHead head = head_of_sqlite(connection, path);
    if (!head.of_company()) refuse(path, "is not a company file");
    const std::uint32_t layout = layout_of(connection, head);
    if (layout == 0) refuse(path, "was made by another version of this program");
    if (layout > static_cast<std::uint32_t>(catalog.layout()))
        refuse(path, "was made by a newer version of this program");
    if (!head.utf8) refuse(path, "is not laid out as a company: its texts are not UTF-8");
    if (sqlite3_db_readonly(connection, "main") == 1) throw Error(ErrorKind::io, path + " cannot be written");
    if (head.is_cut_off()) read_what_is_left(connection);
    const Catalog& its_own = catalog.of_layout(static_cast<int>(layout));
    const std::string difference = difference_from_layout(connection, its_own);
    if (!difference.empty())
        refuse(path, fmt::format("is not laid out as a company of this version: {}", difference));
    return its_own;
}

// Looks again when something seems wrong: another program may have been writing in that instant.
std::string damage_of(sqlite3* connection, const std::string& path) {
    std::string damage;
    for (int looks = 0; looks < kLooksForDamage; ++looks) {
        damage = damage_of_sqlite(connection, head_of_sqlite(connection, path));
        if (damage.empty()) break;
        sqlite3_sleep(kPauseBetweenLooksMs);
    }
    return damage;
}

// What reading beside a writer rests on. The file keeps it, unless another program has changed it.
void require_write_ahead_log(sqlite3* connection, const std::string& path) {
    if (text_of_sql(connection, "PRAGMA journal_mode") == kJournalMode) return;
    if (text_of_sql(connection, fmt::format("PRAGMA journal_mode = {}", kJournalMode)) == kJournalMode)
        return;
    throw Error(ErrorKind::io, path + " cannot be used: its folder does not take a write-ahead log");
}

void set_up(sqlite3* connection) {
    // Large enough that the pages which a save touches again and again stay in memory.
    run_sql(connection, "PRAGMA cache_size = -16000");
    run_sql(connection, "PRAGMA synchronous = FULL");
    run_sql(connection, "PRAGMA wal_autocheckpoint = 10000");
    register_sqlite_functions(connection);
}

// Claims the path: SQLite itself would take a file that is already there, and readable by everybody.
void create_private_file(const std::string& path) {
    if (path.empty() || path.find('\0') != std::string::npos)
        throw Error(ErrorKind::io, "\"" + path + "\" is no file name");
    const int file = ::open(path.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file >= 0) {
        ::fchmod(file, S_IRUSR | S_IWUSR);
        ::close(file);
        return;
    }
    if (errno == EEXIST) throw Error(ErrorKind::state, path + " already exists");
    throw Error(ErrorKind::io, fmt::format("{} cannot be made: {}", path, std::strerror(errno)), errno);
}

void lay_out(const std::string& path, const Catalog& catalog) {
    const SqliteHandle connection = connect(path);
    run_sql(connection.get(), "BEGIN IMMEDIATE");
    run_sql(connection.get(), fmt::format("PRAGMA application_id = {}", kSqliteApplicationId));
    run_sql(connection.get(), fmt::format("PRAGMA user_version = {}", catalog.layout()));
    for (const std::string& statement : sqlite_layout(catalog))
        run_sql(connection.get(), statement);
    run_sql(connection.get(), "COMMIT");
    require_write_ahead_log(connection.get(), path);
}

// A failure of the disk, reported with the path as the user gave it.
void tell_disk_failure(const Error& error, const std::string& path) {
    if (const char* const failure = disk_failure(error.native_code()))
        throw Error(ErrorKind::io, path + failure, error.native_code());
}

}  // namespace

SqliteFile open_sqlite_file(const std::string& path, const Catalog& catalog) {
    require_place_of_company(path);
    try {
        SqliteFile file{connect(path), &catalog, {}};
        distrust(file.connection.get());
        file.catalog = &require_company(file.connection.get(), path, catalog);
        file.damage = damage_of(file.connection.get(), path);
        if (file.damage.empty()) {
            distrust(file.connection.get());
            require_write_ahead_log(file.connection.get(), path);
        }
        set_up(file.connection.get());
        return file;
    } catch (const Error& error) {
        if (error.kind() == ErrorKind::locked)
            throw Error(ErrorKind::locked, path + " is in use by another program", error.native_code());
        if (error.native_code() == 0) throw;
        tell_disk_failure(error, path);
        throw Error(error.kind(), fmt::format("{} cannot be opened: {}", path, error.what()),
                    error.native_code());
    }
}

void create_sqlite_file(const std::string& path, const Catalog& catalog) {
    create_private_file(path);
    try {
        lay_out(path, catalog);
    } catch (const Error& error) {
        remove_sqlite_file(path);
        tell_disk_failure(error, path);
        throw;
    } catch (...) {
        remove_sqlite_file(path);
        throw;
    }
}

void remove_sqlite_file(const std::string& path) {
    for (const char* const suffix : {"", "-wal", "-shm", "-journal"})
        ::unlink((path + suffix).c_str());
}

void copy_sqlite_file(sqlite3* connection, const std::string& to) {
    create_private_file(to);
    try {
        const SqliteHandle copy = connect(to);
        sqlite3_backup* const pages = sqlite3_backup_init(copy.get(), "main", connection, "main");
        if (!pages) throw_sqlite_error(copy.get(), sqlite3_errcode(copy.get()), "the copy");
        sqlite3_backup_step(pages, -1);
        const int code = sqlite3_backup_finish(pages);
        if (code != SQLITE_OK) throw_sqlite_error(copy.get(), code, "the copy");
        // The copy has everything and needs no log.
        const auto version =
            static_cast<std::uint32_t>(std::stoul(text_of_sql(copy.get(), "PRAGMA user_version")));
        run_sql(copy.get(), fmt::format("PRAGMA user_version = {}", version & ~kSqliteLogNeeded));
    } catch (const Error& error) {
        remove_sqlite_file(to);
        tell_disk_failure(error, to);
        throw;
    } catch (...) {
        remove_sqlite_file(to);
        throw;
    }
}

}  // namespace brimley::store
