// A company file read with bare SQLite, and the clock that it is measured by.
#pragma once

#include <sqlite3.h>

#include <algorithm>
#include <ctime>
#include <stdexcept>
#include <string>
#include <vector>

namespace brimley::bench {

constexpr int kRounds = 7;

inline double cpu_ms() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

// What the median of several rounds takes.
template <class Work>
double median_ms(Work&& work) {
    std::vector<double> rounds;
    for (int i = 0; i < kRounds; ++i) {
        const double before = cpu_ms();
        work();
        rounds.push_back(cpu_ms() - before);
    }
    std::sort(rounds.begin(), rounds.end());
    return rounds[kRounds / 2];
}

class BareConnection {
  public:
    explicit BareConnection(const std::string& company) {
        if (sqlite3_open_v2(company.c_str(), &db_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr) !=
            SQLITE_OK)
            throw std::runtime_error(sqlite3_errmsg(db_));
        exec("PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL");
    }
    ~BareConnection() {
        for (sqlite3_stmt* statement : statements_)
            sqlite3_finalize(statement);
        sqlite3_close(db_);
    }
    BareConnection(const BareConnection&) = delete;
    BareConnection& operator=(const BareConnection&) = delete;

    void exec(const std::string& sql) {
        if (sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
            throw std::runtime_error(sqlite3_errmsg(db_) + (": " + sql));
    }
    sqlite3_stmt* prepare(const std::string& sql) {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v3(db_, sql.c_str(), -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr) !=
            SQLITE_OK)
            throw std::runtime_error(sqlite3_errmsg(db_) + (": " + sql));
        statements_.push_back(statement);
        return statement;
    }
    // Reads every column of the current row. What it returns keeps the reading from being left out.
    static std::size_t read_row(sqlite3_stmt* statement) {
        std::size_t read = 0;
        for (int column = 0; column < sqlite3_column_count(statement); ++column)
            read += sqlite3_column_type(statement, column) == SQLITE_TEXT
                        ? std::string(reinterpret_cast<const char*>(sqlite3_column_text(statement, column)))
                              .size()
                        : static_cast<std::size_t>(sqlite3_column_double(statement, column) != 0);
        return read;
    }
    // Steps to the end and reads every row. Returns the rows.
    static int drain(sqlite3_stmt* statement) {
        int rows = 0;
        std::size_t read = 0;
        while (sqlite3_step(statement) == SQLITE_ROW) {
            read += read_row(statement);
            ++rows;
        }
        sqlite3_reset(statement);
        return read == static_cast<std::size_t>(-1) ? 0 : rows;
    }

  private:
    sqlite3* db_ = nullptr;
    std::vector<sqlite3_stmt*> statements_;
};

}  // namespace brimley::bench
