#include "kernel/store/sqlite/sqlite_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string_view>

#include "kernel/store/error.h"
#include "kernel/store/sqlite/sqlite_error.h"
#include "kernel/store/sqlite/sqlite_functions.h"
#include "kernel/store/sqlite/sqlite_layout.h"

namespace brimley::store {

namespace {

constexpr int kOpenWaitMs = 2000;
constexpr std::string_view kJournalMode = "wal";
constexpr std::string_view kSqliteMagic("SQLite format 3\0", 16);
constexpr std::size_t kHeadSize = 100;
constexpr std::size_t kApplicationIdOffset = 68;
constexpr std::size_t kUserVersionOffset = 60;

[[noreturn]] void refuse(const std::string& path, std::string_view why) {
    throw Error(ErrorKind::not_a_company, fmt::format("{} {}", path, why));
}

void require_regular_file(const std::string& path) {
    struct stat status {};
    if (path.find('\0') != std::string::npos || path.empty()) refuse('"' + path + '"', "is no file name");
    if (::stat(path.c_str(), &status) != 0) {
        if (errno == ENOENT) refuse(path, "does not exist");
        refuse(path, fmt::format("cannot be opened: {}", std::strerror(errno)));
    }
    if (S_ISDIR(status.st_mode)) refuse(path, "is a folder, not a company file");
    if (!S_ISREG(status.st_mode)) refuse(path, "is not a company file");
    if (::access(path.c_str(), R_OK) != 0)
        refuse(path, fmt::format("cannot be read: {}", std::strerror(errno)));
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

// The file's first bytes, read through SQLite's own file handle: opening and closing the file in any other
// way would drop the locks that other connections of this process hold on it. No lock is needed, these bytes
// are written once.
bool has_company_head(sqlite3* connection, std::uint32_t& version) {
    sqlite3_file* file = nullptr;
    std::array<unsigned char, kHeadSize> head{};
    if (sqlite3_file_control(connection, "main", SQLITE_FCNTL_FILE_POINTER, &file) != SQLITE_OK) return false;
    if (file->pMethods->xRead(file, head.data(), kHeadSize, 0) != SQLITE_OK) return false;
    const auto number_at = [&](std::size_t at) {
        std::uint32_t number = 0;
        for (std::size_t i = 0; i < 4; ++i)
            number = number << 8 | head[at + i];
        return number;
    };
    version = number_at(kUserVersionOffset);
    return std::memcmp(head.data(), kSqliteMagic.data(), kSqliteMagic.size()) == 0 &&
           number_at(kApplicationIdOffset) == kSqliteApplicationId;
}

void require_company(sqlite3* connection, const std::string& path, const Catalog& catalog) {
    std::uint32_t version = 0;
    if (!has_company_head(connection, version)) refuse(path, "is not a company file");
    if (version != kSqliteLayoutVersion) refuse(path, "was made by another version of this program");
    if (sqlite3_db_readonly(connection, "main") == 1) throw Error(ErrorKind::io, path + " cannot be written");
    const std::string missing = missing_in_sqlite(connection, catalog);
    if (!missing.empty())
        refuse(path, fmt::format("was made by another version of this program: {} is missing", missing));
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
    run_sql(connection, "PRAGMA trusted_schema = OFF");
    sqlite3_db_config(connection, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
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
    run_sql(connection.get(), fmt::format("PRAGMA user_version = {}", kSqliteLayoutVersion));
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

SqliteHandle open_sqlite_file(const std::string& path, const Catalog& catalog) {
    require_regular_file(path);
    try {
        SqliteHandle connection = connect(path);
        require_company(connection.get(), path, catalog);
        require_write_ahead_log(connection.get(), path);
        set_up(connection.get());
        return connection;
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

}  // namespace brimley::store
