// A prepared statement of SQLite with typed parameters and typed columns.
#pragma once

#include <span>

#include "kernel/store/engine.h"
#include "kernel/store/sqlite/sqlite_handle.h"

namespace brimley::store {

class SqliteStatement final : public EngineStatement, public EngineRow {
  public:
    SqliteStatement(sqlite3* connection, const StatementText& text);

    // Parameters stay bound, and texts looked at, until finish().
    void bind(std::span<const Parameter> parameters);
    // Whether there is a row.
    [[nodiscard]] bool step();
    // Releases rows and locks. Harmless at any time.
    void finish() noexcept;

    [[nodiscard]] RowKey key() const override;
    void read(Row& into) const override;
    [[nodiscard]] bool has_whole_seconds() const override;

  private:
    sqlite3* connection_;
    SqliteStatementHandle statement_;
    int parameter_count_;
    std::vector<FieldType> columns_;
    bool keyed_;
};

// Finishes the statement whatever happens.
class SqliteRun {
  public:
    SqliteRun(SqliteStatement& statement, std::span<const Parameter> parameters) : statement_(statement) {
        statement_.bind(parameters);
    }
    ~SqliteRun() { statement_.finish(); }
    SqliteRun(const SqliteRun&) = delete;
    SqliteRun& operator=(const SqliteRun&) = delete;

  private:
    SqliteStatement& statement_;
};

// The day number that a REAL date column holds, and back, exact to the second.
[[nodiscard]] double julian_day(DateTime date);
[[nodiscard]] DateTime from_julian_day(double julian);

}  // namespace brimley::store
