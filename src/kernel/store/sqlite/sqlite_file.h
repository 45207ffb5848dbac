// Company files of SQLite as files: recognising, opening and making them.
#pragma once

#include <string>

#include "kernel/store/catalog.h"
#include "kernel/store/sqlite/sqlite_handle.h"

namespace brimley::store {

// "BrAP": what says in a SQLite file's head that it is a company of this program.
inline constexpr std::uint32_t kSqliteApplicationId = 0x42724150;
// Goes up when company files change in a way that older programs must not touch.
inline constexpr int kSqliteLayoutVersion = 1;

// A connection set up for a company: durable, with the dialect's functions. Throws not_a_company, locked, io.
[[nodiscard]] SqliteHandle open_sqlite_file(const std::string& path, const Catalog& catalog);
void create_sqlite_file(const std::string& path, const Catalog& catalog);
void remove_sqlite_file(const std::string& path);

}  // namespace brimley::store
