// The first hundred bytes of a company file, and what can be seen from them and from the pages that they lead
// to, without reading the whole file.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <string>

namespace brimley::store {

// "BrAP": what says in a SQLite file's head that it is a company of this program.
inline constexpr std::uint32_t kSqliteApplicationId = 0x42724150;
// Added to the layout while the log holds what the file itself does not (sqlite_log.h).
inline constexpr std::uint32_t kSqliteLogNeeded = 0x10000;

struct SqliteHead {
    std::uint32_t application_id = 0;
    std::uint32_t layout = 0;  // Catalog::layout()
    bool log_needed = false;
    bool utf8 = false;
    std::uint32_t page_size = 0;
    std::uint32_t pages = 0;  // 0 when the file does not say
    std::uint32_t free_pages = 0;
    std::int64_t file_size = 0;
    std::int64_t log_size = 0;  // 0 when there is none

    [[nodiscard]] bool of_company() const { return application_id == kSqliteApplicationId; }
    // Its end was cut off.
    [[nodiscard]] bool is_cut_off() const {
        return log_size == 0 && page_size != 0 && file_size / page_size < static_cast<std::int64_t>(pages);
    }
    // What was saved last is missing with the log that held it.
    [[nodiscard]] bool lacks_its_log() const { return log_needed && log_size == 0; }
};

// Reads through SQLite's own file handle: opening and closing the file in any other way would drop the locks
// that other connections of this process hold on it. All zero for a file that is no SQLite file.
[[nodiscard]] SqliteHead head_of_sqlite(sqlite3* connection, const std::string& path);

// What is wrong with the file as far as its head, its size and the first pages of its tables show it; empty
// when nothing is. A file that another program is writing to may look damaged for an instant.
[[nodiscard]] std::string damage_of_sqlite(sqlite3* connection, const SqliteHead& head);

}  // namespace brimley::store
