// SQLite's result codes as the store's errors.
#pragma once

#include <sqlite3.h>

#include <string>

namespace brimley::store {

// What follows the name of a file in the message of a disk that does not take or give its pages.
inline constexpr const char* kCannotBeWritten = " cannot be written: the disk is full or cannot be written";
inline constexpr const char* kCannotBeRead = " cannot be read: the disk fails";

// One of the two for a code that stands for such a failure, else null.
[[nodiscard]] const char* disk_failure(int code);

// Throws the store::Error that the code stands for. what: what was being done, as the start of a sentence.
[[noreturn]] void throw_sqlite_error(sqlite3* connection, int code, const std::string& what);

}  // namespace brimley::store
