// Whether the rows of a CSV file name rows that are there.
#pragma once

#include <string>

#include "kernel/store/database.h"

namespace brimley::company {

// Looks at a file of a master after everything was loaded: accounts, currencies, tax codes and so on that it
// names must be there. Throws CsvError for the first one that is not, and store::Error.
void require_named_rows(store::Database& database, const store::Table& table, const std::string& path);

}  // namespace brimley::company
