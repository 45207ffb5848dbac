// Everything that a company holds, as texts to compare.
#pragma once

#include <map>
#include <string>

#include "kernel/store/database.h"

namespace brimley::testing {

// Table by table, a line a row, the fields parted by "|".
using AllTables = std::map<std::string, std::string>;

[[nodiscard]] AllTables all_tables(store::Database& database);

// The names of the tables that differ; empty when the two are equal.
[[nodiscard]] std::string difference(const AllTables& one, const AllTables& other);

}  // namespace brimley::testing
