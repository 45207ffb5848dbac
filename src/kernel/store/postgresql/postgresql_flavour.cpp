#include "kernel/store/postgresql/postgresql_flavour.h"

#include <fmt/format.h>

#include "kernel/store/catalog.h"
#include "kernel/store/postgresql/postgresql_layout.h"
#include "kernel/store/row_digest.h"

namespace brimley::store {

namespace {

// The bytes of a number as they lie in memory, the lowest first; the server's functions send the highest
// first.
std::string number_bytes(const std::string& number) {
    const std::string sent = fmt::format("float8send(CAST({} AS double precision))", number);
    std::string bytes;
    for (std::size_t byte = sizeof(double); byte > 0; --byte)
        bytes += fmt::format("{}substring({} FROM {} FOR 1)", bytes.empty() ? "" : " || ", sent, byte);
    return bytes;
}

std::string doubled(std::string_view text, char mark) {
    std::string quoted(1, mark);
    for (const char letter : text)
        quoted.append(letter == mark ? 2 : 1, letter);
    return quoted + mark;
}

}  // namespace

std::string PostgresqlFlavour::parameter(std::size_t number, dialect::ParameterKind kind) const {
    return fmt::format("${}{}", number, kind == dialect::ParameterKind::text ? " COLLATE \"C\"" : "");
}

std::string PostgresqlFlavour::flag(bool value) const { return value ? "TRUE" : "FALSE"; }

std::string PostgresqlFlavour::number_of_text(const std::string& text) const {
    return fmt::format("{}({})", kServerNumberFunction, text);
}

std::string PostgresqlFlavour::leading_number(const std::string& text) const {
    return fmt::format("{}({})", kServerLeadingNumberFunction, text);
}

std::string PostgresqlFlavour::upper_case(const std::string& text) const {
    return fmt::format("upper({} COLLATE \"C\")", text);
}

std::string PostgresqlFlavour::days_between(const std::string& later, const std::string& earlier) const {
    return fmt::format(
        "(CAST(EXTRACT(EPOCH FROM CAST({} AS timestamp) - CAST({} AS timestamp)) AS double precision) / "
        "86400)",
        later, earlier);
}

std::string PostgresqlFlavour::plus_days(const std::string& date, const std::string& days) const {
    return fmt::format("(CAST({} AS timestamp) + {} * INTERVAL '1 day')", date, days);
}

std::string PostgresqlFlavour::quotient(const std::string& dividend, const std::string& divisor) const {
    return fmt::format("(CAST({} AS double precision) / NULLIF({}, 0))", dividend, divisor);
}

std::string PostgresqlFlavour::nulls_first(bool descending) const {
    return descending ? " NULLS LAST" : " NULLS FIRST";
}

// With a LIMIT after it, PostgreSQL would rather walk the keys and try every row than sort the few that an
// index finds.
std::string PostgresqlFlavour::key_order(const std::string& key) const { return "(" + key + " + 0)"; }

bool PostgresqlFlavour::rows_come_singly() const { return false; }

std::string PostgresqlFlavour::row_lock() const { return " FOR UPDATE SKIP LOCKED"; }

std::string PostgresqlFlavour::lock_to_change() const { return " FOR UPDATE"; }

bool PostgresqlFlavour::draws_keys() const { return true; }

std::string PostgresqlFlavour::next_key() const { return fmt::format("nextval('{}')", kRowKeySequence); }

std::string PostgresqlFlavour::chained_hash(std::string_view trail, const std::string& hash_before,
                                            const std::string& number, const std::string& rest) const {
    return fmt::format(
        "encode(sha256(decode('{}', 'hex') || convert_to({}, 'UTF8') || decode('{}', 'hex') || {} || "
        "decode({}, 'hex')), 'hex')",
        hexadecimal(entry_start(trail)), hash_before, hexadecimal(entry_number_start()), number_bytes(number),
        rest);
}

std::string PostgresqlFlavour::name(std::string_view name) const { return postgresql_name(name); }

std::string postgresql_name(std::string_view name) { return doubled(lower_case(name), '"'); }

std::string postgresql_quoted(std::string_view name) { return doubled(name, '"'); }

std::string postgresql_text(std::string_view text) { return doubled(text, '\''); }

}  // namespace brimley::store
