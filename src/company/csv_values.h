// What a cell of a CSV file means as the value of a field, and back.
//
//   nothing        null (a yes/no field that cannot hold null: FALSE)
//   ""             the empty text
//   date           2026-01-15, or with a time of day 2026-01-15 09:30:00
//   yes/no         TRUE or FALSE, in any case
//   number         a point, no grouping, no blanks
#pragma once

#include <string>

#include "company/csv_reader.h"
#include "kernel/store/catalog.h"
#include "kernel/store/value.h"

namespace brimley::company {

// Throws std::invalid_argument with a text that says what is wrong with the cell, the field's name in it.
[[nodiscard]] store::Value cell_value(const CsvCell& cell, const store::Field& field);

// Appends the value as a cell; cell_value() of it gives the value back.
void append_cell(std::string& line, const store::Value& value);

}  // namespace brimley::company
