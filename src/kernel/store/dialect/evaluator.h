// Criteria tried on rows in memory: what FindFirst does on a snapshot. The rules are those of the queries:
// null makes a comparison neither true nor false, text and number compare by value, text byte by byte.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "kernel/store/dialect/lexer.h"
#include "kernel/store/dialect/syntax.h"
#include "kernel/store/row.h"
#include "kernel/store/value.h"

namespace brimley::store::dialect {

// Finds a result column by its name, -1 when there is none.
using ColumnFinder = std::function<int(std::string_view)>;

// Notes in the criteria which columns they speak of. Throws ErrorKind::name, and ErrorKind::syntax for an
// aggregate.
void look_up_columns(Expression& criteria, const ColumnFinder& column_of, std::string_view text);

// The criteria's literals as values: what holds for one FindFirst, whatever the row. Throws
// ErrorKind::conversion.
[[nodiscard]] std::vector<Value> literal_values(const Expression& criteria,
                                                std::span<const Literal> literals);

[[nodiscard]] bool meets(const Expression& criteria, const Row& row, std::span<const Value> literals);

// "=", "<>", "<", "<=", ">" or ">=" between two values; empty when either is null or they cannot be compared.
[[nodiscard]] std::optional<bool> compare(const Value& left, std::string_view sign, const Value& right);

}  // namespace brimley::store::dialect
