#include "company/export.h"

#include <algorithm>
#include <system_error>

#include "company/csv_values.h"
#include "company/durable_folder.h"
#include "company/output_file.h"
#include "company/people.h"
#include "company/table_writer.h"

namespace brimley::company {

namespace {

std::vector<const store::Table*> chosen_tables(const store::Catalog& catalog,
                                               const std::vector<std::string>& names) {
    std::vector<const store::Table*> chosen;
    for (const std::string& name : names) {
        const store::Table* table = catalog.find(name);
        if (!table) throw store::Error(store::ErrorKind::name, "there is no table " + name);
        if (std::find(chosen.begin(), chosen.end(), table) == chosen.end()) chosen.push_back(table);
    }
    if (names.empty()) {
        for (const store::Table& table : catalog.tables()) {
            chosen.push_back(&table);
        }
    }
    return chosen;
}

std::string header_line(const store::Table& table) {
    std::string line;
    for (const store::Field& field : table.fields) {
        if (!line.empty()) line += ',';
        line += field.name;
    }
    return line + '\n';
}

OutputFile write_table(store::Database& database, const store::Table& table,
                       const std::filesystem::path& folder) {
    OutputFile file(folder / (table.name + ".csv"), keeps_secrets(table));
    file.write(header_line(table));
    store::Recordset rows =
        database.OpenRecordset(select_in_export_order(table), store::RecordsetKind::snapshot);
    std::string line;
    for (; !rows.at_eof(); rows.MoveNext()) {
        line.clear();
        for (int column = 0; column < rows.column_count(); ++column) {
            if (column > 0) line += ',';
            append_cell(line, rows.column(column));
        }
        line += '\n';
        file.write(line);
    }
    file.finish();
    return file;
}

void make_folder(const std::filesystem::path& folder) {
    std::error_code failure;
    std::filesystem::create_directories(folder, failure);
    if (failure) throw std::system_error(failure, "the folder " + folder.string() + " cannot be made");
}

}  // namespace

void export_tables(store::Database& database, const std::filesystem::path& folder,
                   const std::vector<std::string>& tables) {
    const std::vector<const store::Table*> chosen = chosen_tables(database.catalog(), tables);
    make_folder(folder);
    std::vector<OutputFile> files;
    for (const store::Table* table : chosen) {
        files.push_back(write_table(database, *table, folder));
    }
    for (OutputFile& file : files) {
        file.publish();
    }
    sync_folder(folder);
    sync_folder(std::filesystem::absolute(folder).parent_path());
}

}  // namespace brimley::company
