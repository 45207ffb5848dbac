// The values of a bare statement, bound as a company file holds them.
#pragma once

#include <sqlite3.h>

#include <span>

#include "bare_statements.h"

namespace brimley::bench {

// Texts must live until the statement has run.
inline sqlite3_stmt* bind_values(sqlite3_stmt* statement, std::span<const BareValue> values) {
    constexpr double kJulianOf1970 = 2440587.5;
    int at = 0;
    for (const BareValue& value : values) {
        ++at;
        if (const auto* const text = std::get_if<std::string_view>(&value))
            sqlite3_bind_text(statement, at, text->data(), static_cast<int>(text->size()), SQLITE_STATIC);
        else if (const auto* const number = std::get_if<double>(&value))
            sqlite3_bind_double(statement, at, *number);
        else if (const auto* const flag = std::get_if<bool>(&value))
            sqlite3_bind_int(statement, at, *flag ? 1 : 0);
        else
            sqlite3_bind_double(statement, at, kJulianOf1970 + std::get<store::DateTime>(value).day);
    }
    return statement;
}

}  // namespace brimley::bench
