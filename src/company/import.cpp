#include "company/import.h"

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "company/import_look_ups.h"
#include "company/people.h"
#include "company/refusal.h"
#include "company/shown_text.h"
#include "company/table_import.h"

namespace brimley::company {

namespace {

namespace fs = std::filesystem;

// The CSV files of the folder by name, so that the first fault reported is the same on every machine.
std::vector<fs::path> csv_files(const fs::path& folder) {
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        if (entry.is_regular_file() && store::lower_case(entry.path().extension().string()) == ".csv") {
            files.push_back(entry.path());
        }
    }
    if (files.empty()) throw Refusal("there is no CSV file in " + folder.string());
    std::sort(files.begin(), files.end());
    return files;
}

std::map<const store::Table*, fs::path> files_by_table(const store::Catalog& catalog,
                                                       const fs::path& folder) {
    std::map<const store::Table*, fs::path> files;
    for (const fs::path& file : csv_files(folder)) {
        const std::string name = file.stem().string();
        const store::Table* table = catalog.find(name);
        if (!table) throw CsvError(file.string(), 1, "there is no table \"" + shown_text(name) + "\"");
        const auto [known, is_new] = files.emplace(table, file);
        if (!is_new) {
            throw CsvError(file.string(), 1,
                           table->name + " has another file, " + known->second.filename().string());
        }
    }
    return files;
}

void require_none_about_people(const std::map<const store::Table*, fs::path>& files) {
    for (const auto& [table, file] : files)
        if (is_about_people(*table))
            throw Refusal(
                file.string() +
                " says who may do what: only an administrator imports it, who has all rights on all "
                "forms");
}

}  // namespace

void import_folder(store::Database& database, const fs::path& folder, const ImportOptions& options) {
    const store::Catalog& catalog = database.catalog();
    const auto files = files_by_table(catalog, folder);
    if (!options.by_administrator) require_none_about_people(files);
    for (const store::Table& table : catalog.tables()) {
        const auto file = files.find(&table);
        if (file != files.end()) TableImport(database, table, file->second.string()).run(options.replace);
    }
    if (!options.looks_up) return;
    for (const store::Table& table : catalog.tables()) {
        const auto file = files.find(&table);
        if (file != files.end()) require_named_rows(database, table, file->second.string());
    }
}

}  // namespace brimley::company
