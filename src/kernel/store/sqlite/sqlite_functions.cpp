#include "kernel/store/sqlite/sqlite_functions.h"

#include <string_view>

#include "kernel/store/dialect/leading_number.h"
#include "kernel/store/sqlite/sqlite_error.h"
#include "kernel/store/value.h"

namespace brimley::store {

namespace {

std::string_view text_of(sqlite3_value* argument) {
    const auto* const text = reinterpret_cast<const char*>(sqlite3_value_text(argument));
    if (!text) return {};
    return {text, static_cast<std::size_t>(sqlite3_value_bytes(argument))};
}

void number_of_text(sqlite3_context* context, int, sqlite3_value** arguments) {
    if (sqlite3_value_type(arguments[0]) == SQLITE_NULL) return sqlite3_result_null(context);
    if (const auto number = whole_number_text(text_of(arguments[0])))
        sqlite3_result_double(context, *number);
    else
        sqlite3_result_null(context);
}

void leading_number(sqlite3_context* context, int, sqlite3_value** arguments) {
    sqlite3_result_double(context, dialect::leading_number(text_of(arguments[0])));
}

}  // namespace

void register_sqlite_functions(sqlite3* connection) {
    const auto add = [&](const char* name, void (*function)(sqlite3_context*, int, sqlite3_value**)) {
        const int code = sqlite3_create_function(connection, name, 1,
                                                 SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_DIRECTONLY,
                                                 nullptr, function, nullptr, nullptr);
        if (code != SQLITE_OK) throw_sqlite_error(connection, code, "the company file");
    };
    add(kNumberOfTextFunction, number_of_text);
    add(kLeadingNumberFunction, leading_number);
}

}  // namespace brimley::store
