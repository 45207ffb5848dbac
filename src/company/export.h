// Writes the tables of a company as CSV files, one per table, rows in key order.
//
// import_folder() of what this wrote gives an equal company. Files of an earlier export are overwritten,
// others in the folder are left alone. All files are written before the first takes its place, so that an
// export that fails leaves the earlier one as it was.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "kernel/store/database.h"

namespace brimley::company {

// Makes the folder when it is absent. No `tables`: all of them. Reads inside the caller's ReadingMoment or
// transaction. Throws ErrorKind::name for an unknown table, before anything is written, and std::system_error
// when the folder cannot be made or a file cannot be written.
void export_tables(store::Database& database, const std::filesystem::path& folder,
                   const std::vector<std::string>& tables = {});

}  // namespace brimley::company
