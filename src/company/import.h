// Loads a folder of CSV files into the tables of a company.
//
// Every FOLDER/TABLE.csv goes into its table; other files are left alone. The first line names fields, in any
// order and case; a field left out is null. What stands in the tables already:
// - A row whose natural key exists is refused, or replaced whole when `replace` is set; it then stands in for
//   all rows of that key.
// - Documents and their lines have no such key; they are added. So is a row whose key is all null: null is no
//   name that another row could have.
// - A table of a single row is replaced, unless the file holds no row.
//
// A key that is twice in the file is refused, whether or not the table itself keeps its key unique.
#pragma once

#include <filesystem>

#include "company/csv_reader.h"
#include "kernel/store/database.h"

namespace brimley::company {

struct ImportOptions {
    bool replace = false;
    // Who may not decide who may do what brings no rows about it.
    bool by_administrator = true;
    // Masters must name accounts, currencies and other rows that are there, once everything is loaded.
    bool looks_up = false;
};

// Runs inside the caller's transaction, which must be rolled back when this throws: some rows may be stored
// already. Throws CsvError for whatever is wrong with a file, Refusal for a folder without one,
// std::system_error when they cannot be read, store::Error otherwise.
void import_folder(store::Database& database, const std::filesystem::path& folder,
                   const ImportOptions& options);

}  // namespace brimley::company
