#include "kernel/store/sqlite/sqlite_flavour.h"

#include <fmt/format.h>

#include "kernel/store/sqlite/sqlite_functions.h"
#include "kernel/store/sqlite/sqlite_handle.h"

namespace brimley::store {

std::string SqliteFlavour::parameter(std::size_t number, dialect::ParameterKind) const {
    return fmt::format("?{}", number);
}

std::string SqliteFlavour::flag(bool value) const { return value ? "1" : "0"; }

std::string SqliteFlavour::number_of_text(const std::string& text) const {
    return fmt::format("{}({})", kNumberOfTextFunction, text);
}

std::string SqliteFlavour::leading_number(const std::string& text) const {
    return fmt::format("{}({})", kLeadingNumberFunction, text);
}

std::string SqliteFlavour::upper_case(const std::string& text) const {
    return fmt::format("upper({})", text);
}

std::string SqliteFlavour::days_between(const std::string& later, const std::string& earlier) const {
    return fmt::format("({} - {})", later, earlier);
}

std::string SqliteFlavour::plus_days(const std::string& date, const std::string& days) const {
    return fmt::format("({} + {})", date, days);
}

std::string SqliteFlavour::quotient(const std::string& dividend, const std::string& divisor) const {
    return fmt::format("(CAST({} AS REAL) / {})", dividend, divisor);
}

// Nulls are smallest in SQLite by themselves.
std::string SqliteFlavour::nulls_first(bool) const { return {}; }

std::string SqliteFlavour::key_order(const std::string& key) const { return key; }

bool SqliteFlavour::rows_come_singly() const { return true; }

std::string SqliteFlavour::row_lock() const { return {}; }

std::string SqliteFlavour::lock_to_change() const { return {}; }

bool SqliteFlavour::draws_keys() const { return false; }

std::string SqliteFlavour::name(std::string_view name) const { return sqlite_name(name); }

}  // namespace brimley::store
