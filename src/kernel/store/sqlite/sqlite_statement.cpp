#include "kernel/store/sqlite/sqlite_statement.h"

#include <algorithm>
#include <cmath>

#include "kernel/store/error.h"
#include "kernel/store/sqlite/sqlite_error.h"

namespace brimley::store {

namespace {

constexpr double kJulianOf1970 = 2440587.5;
constexpr double kSecondsOfDay = 86400;

class Binder {
  public:
    Binder(sqlite3_stmt* statement, int index) : statement_(statement), index_(index) {}

    int operator()(std::monostate) const { return sqlite3_bind_null(statement_, index_); }
    int operator()(std::string_view text) const {
        // A view without data would be null to SQLite.
        const char* const at = text.data() ? text.data() : "";
        return sqlite3_bind_text64(statement_, index_, at, text.size(), SQLITE_STATIC, SQLITE_UTF8);
    }
    int operator()(double number) const { return sqlite3_bind_double(statement_, index_, number); }
    int operator()(std::int64_t number) const { return sqlite3_bind_int64(statement_, index_, number); }
    int operator()(bool flag) const { return sqlite3_bind_int(statement_, index_, flag ? 1 : 0); }
    int operator()(DateTime date) const { return sqlite3_bind_double(statement_, index_, julian_day(date)); }

  private:
    sqlite3_stmt* statement_;
    int index_;
};

// The cell itself, asked for once: a connection serves one thread, so nobody changes it meanwhile.
void read_cell(sqlite3_value* cell, FieldType type, Row& into) {
    if (sqlite3_value_type(cell) == SQLITE_NULL) return into.add_null();
    switch (type) {
        case FieldType::text: {
            const auto* const text = reinterpret_cast<const char*>(sqlite3_value_text(cell));
            return into.add_text({text, static_cast<std::size_t>(sqlite3_value_bytes(cell))});
        }
        case FieldType::number:
        case FieldType::integer:
            return into.add_number(sqlite3_value_double(cell));
        case FieldType::yes_no:
            return into.add_flag(sqlite3_value_int(cell) != 0);
        default:
            return into.add_date(from_julian_day(sqlite3_value_double(cell)));
    }
}

}  // namespace

double julian_day(DateTime date) { return kJulianOf1970 + date.day + date.second_of_day / kSecondsOfDay; }

DateTime from_julian_day(double julian) {
    const double since = julian - kJulianOf1970;
    const double day = std::floor(since);
    const double second = std::round((since - day) * kSecondsOfDay);
    if (second < kSecondsOfDay) return {static_cast<std::int32_t>(day), static_cast<std::int32_t>(second)};
    return {static_cast<std::int32_t>(day) + 1, 0};
}

SqliteStatement::SqliteStatement(sqlite3* connection, const StatementText& text)
    : connection_(connection),
      statement_(prepare_sql(connection, text.sql)),
      parameter_count_(sqlite3_bind_parameter_count(statement_.get())),
      columns_(text.columns),
      keyed_(text.keyed) {}

void SqliteStatement::bind(std::span<const Parameter> parameters) {
    // Statements of one translation share their parameters; this one may leave out the last of them.
    int index = 0;
    for (const Parameter& parameter : parameters) {
        if (++index > parameter_count_) break;
        const int code = std::visit(Binder(statement_.get(), index), parameter);
        if (code != SQLITE_OK) throw_sqlite_error(connection_, code, "a value of the query");
    }
}

bool SqliteStatement::step() {
    const int code = sqlite3_step(statement_.get());
    if (code == SQLITE_ROW) return true;
    if (code != SQLITE_DONE) throw_sqlite_error(connection_, code, "the company file");
    return false;
}

void SqliteStatement::finish() noexcept { sqlite3_reset(statement_.get()); }

RowKey SqliteStatement::key() const { return sqlite3_column_int64(statement_.get(), 0); }

void SqliteStatement::read(Row& into) const {
    into.clear();
    into.expect(columns_.size());
    int column = keyed_ ? 1 : 0;
    for (const FieldType type : columns_)
        read_cell(sqlite3_column_value(statement_.get(), column++), type, into);
}

bool SqliteStatement::has_whole_seconds() const {
    int column = keyed_ ? 1 : 0;
    return std::ranges::all_of(columns_, [&](FieldType type) {
        sqlite3_value* const cell = sqlite3_column_value(statement_.get(), column++);
        if (!is_date(type) || sqlite3_value_type(cell) == SQLITE_NULL) return true;
        const double julian = sqlite3_value_double(cell);
        return julian_day(from_julian_day(julian)) == julian;
    });
}

}  // namespace brimley::store
