// A company file in the hands of another program.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <string>

namespace brimley::testing {

// A file opened with SQLite alone, as another program would.
class OtherProgram {
  public:
    explicit OtherProgram(const std::string& path) {
        EXPECT_EQ(sqlite3_open(path.c_str(), &connection_), SQLITE_OK);
    }
    ~OtherProgram() { sqlite3_close(connection_); }
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;

    void run(const std::string& sql) {
        char* message = nullptr;
        EXPECT_EQ(sqlite3_exec(connection_, sql.c_str(), nullptr, nullptr, &message), SQLITE_OK) << message;
        sqlite3_free(message);
    }
    // The first column of the first row.
    std::string text(const std::string& sql) {
        sqlite3_stmt* statement = nullptr;
        EXPECT_EQ(sqlite3_prepare_v2(connection_, sql.c_str(), -1, &statement, nullptr), SQLITE_OK) << sql;
        std::string result;
        if (sqlite3_step(statement) == SQLITE_ROW)
            if (const auto* text = sqlite3_column_text(statement, 0))
                result = reinterpret_cast<const char*>(text);
        sqlite3_finalize(statement);
        return result;
    }

  private:
    sqlite3* connection_ = nullptr;
};

}  // namespace brimley::testing
