#include "kernel/store/sqlite/sqlite_head.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include <array>
#include <cstring>
#include <string_view>
#include <unordered_set>

#include "kernel/store/sqlite/sqlite_error.h"
#include "kernel/store/sqlite/sqlite_handle.h"

namespace brimley::store {

namespace {

constexpr std::string_view kSqliteMagic("SQLite format 3\0", 16);
constexpr std::size_t kHeadSize = 100;
// Where the head keeps its numbers.
constexpr std::size_t kPageSizeAt = 16;
constexpr std::size_t kChangesAt = 24;
constexpr std::size_t kPagesAt = 28;
constexpr std::size_t kFreePagesAt = 36;
constexpr std::size_t kEncodingAt = 56;
constexpr std::size_t kUserVersionAt = 60;
constexpr std::size_t kApplicationIdAt = 68;
constexpr std::size_t kPagesValidForAt = 92;
constexpr std::uint32_t kUtf8 = 1;
constexpr std::uint32_t kLargestPage = 65536;

using HeadBytes = std::array<unsigned char, kHeadSize>;

std::uint32_t number_at(const HeadBytes& head, std::size_t at) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < 4; ++i)
        number = number << 8 | head[at + i];
    return number;
}

// 1 stands for the largest size, which two bytes cannot hold.
std::uint32_t page_size_in(const HeadBytes& head) {
    const std::uint32_t size = static_cast<std::uint32_t>(head[kPageSizeAt]) << 8 | head[kPageSizeAt + 1];
    return size == 1 ? kLargestPage : size;
}

sqlite3_file* file_of(sqlite3* connection) {
    sqlite3_file* file = nullptr;
    const int code = sqlite3_file_control(connection, "main", SQLITE_FCNTL_FILE_POINTER, &file);
    return code == SQLITE_OK && file != nullptr && file->pMethods != nullptr ? file : nullptr;
}

std::int64_t size_of_log(const std::string& path) {
    struct stat status {};
    return ::stat((path + "-wal").c_str(), &status) == 0 ? status.st_size : 0;
}

// The first byte of a page that a table or an index begins with.
bool begins(unsigned char kind, bool table) {
    return table ? kind == 0x05 || kind == 0x0d : kind == 0x02 || kind == 0x0a;
}

// Whether the table and its indexes hold together, as the log has them.
bool is_sound_with_log(sqlite3* connection, const std::string& table) {
    try {
        return text_of_sql(connection, fmt::format("PRAGMA quick_check({})", sqlite_name(table))) == "ok";
    } catch (const Error&) {
        return false;
    }
}

// Looks at the first page of each table and index. A page that is still in the log alone is passed over; what
// kind it is never changes. One that was in use for something else before, or was not written to its end, may
// stand in the log as well.
std::string damage_of_roots(sqlite3* connection, const SqliteHead& head) {
    sqlite3_file* const file = file_of(connection);
    std::unordered_set<std::int64_t> taken;
    const SqliteStatementHandle roots =
        prepare_sql(connection, "SELECT rootpage, type = 'table', tbl_name FROM sqlite_schema");
    while (sqlite3_step(roots.get()) == SQLITE_ROW) {
        const std::int64_t page = sqlite3_column_int64(roots.get(), 0);
        if (page < 2 || !taken.insert(page).second) return "a table or index begins nowhere";
        const std::int64_t at = (page - 1) * head.page_size;
        unsigned char kind = 0;
        if (at >= head.file_size && head.log_size > 0) continue;
        const bool read = file->pMethods->xRead(file, &kind, 1, at) == SQLITE_OK;
        if (read && begins(kind, sqlite3_column_int(roots.get(), 1) != 0)) continue;
        const auto* const table = reinterpret_cast<const char*>(sqlite3_column_text(roots.get(), 2));
        if (head.log_size > 0 && table && is_sound_with_log(connection, table)) continue;
        return fmt::format("page {} is not what it should be", page);
    }
    return {};
}

}  // namespace

SqliteHead head_of_sqlite(sqlite3* connection, const std::string& path) {
    SqliteHead head;
    HeadBytes bytes{};
    sqlite3_file* const file = file_of(connection);
    sqlite3_int64 size = 0;
    if (!file || file->pMethods->xRead(file, bytes.data(), kHeadSize, 0) != SQLITE_OK) return head;
    if (file->pMethods->xFileSize(file, &size) != SQLITE_OK) return head;
    if (std::memcmp(bytes.data(), kSqliteMagic.data(), kSqliteMagic.size()) != 0) return head;
    const std::uint32_t version = number_at(bytes, kUserVersionAt);
    head.application_id = number_at(bytes, kApplicationIdAt);
    head.layout = version & ~kSqliteLogNeeded;
    head.log_needed = (version & kSqliteLogNeeded) != 0;
    head.utf8 = number_at(bytes, kEncodingAt) == kUtf8;
    head.page_size = page_size_in(bytes);
    if (number_at(bytes, kChangesAt) == number_at(bytes, kPagesValidForAt))
        head.pages = number_at(bytes, kPagesAt);
    head.free_pages = number_at(bytes, kFreePagesAt);
    head.file_size = size;
    head.log_size = size_of_log(path);
    return head;
}

std::string damage_of_sqlite(sqlite3* connection, const SqliteHead& head) {
    if (head.lacks_its_log()) {
        return "its log is missing, and what was saved last with it: it was copied while it was in use";
    }
    if (head.page_size == 0) return "its pages have no size";
    const std::int64_t pages = head.file_size / head.page_size;
    if (head.log_size == 0) {
        if (head.file_size % head.page_size != 0) return "its last page is not whole";
        if (head.pages != 0 && head.pages != pages)
            return fmt::format("it says that it has {} pages and has {}", head.pages, pages);
    }
    if (head.pages != 0 && head.free_pages >= head.pages) return "its free pages are more than it has";
    return damage_of_roots(connection, head);
}

}  // namespace brimley::store
