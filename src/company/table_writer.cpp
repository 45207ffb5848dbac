#include "company/table_writer.h"

#include <fmt/format.h>

namespace brimley::company {

namespace {

const store::Table& known_table(const store::Database& database, const std::string& name) {
    const store::Table* table = database.catalog().find(name);
    if (!table) throw store::Error(store::ErrorKind::name, "there is no table " + name);
    return *table;
}

}  // namespace

TableWriter::TableWriter(store::Database& database, const std::string& table)
    : table_(known_table(database, table)),
      rows_(database.OpenRecordset(fmt::format("SELECT * FROM [{}] WHERE 1 = 2", table_.name),
                                   store::RecordsetKind::dynaset)) {}

void TableWriter::add(FieldValues values) {
    rows_.AddNew();
    for (const auto& [field, value] : values) {
        rows_.set(field, value);
    }
    rows_.Update();
}

void TableWriter::add_row(const std::vector<store::Value>& row) {
    rows_.AddNew();
    for (std::size_t field = 0; field < row.size(); ++field) {
        if (!row[field].is_null()) rows_.set(table_.fields[field].name, row[field]);
    }
    rows_.Update();
}

std::string select_in_export_order(const store::Table& table) {
    std::string query = fmt::format("SELECT * FROM [{}]", table.name);
    const char* joint = " ORDER BY ";
    for (const std::string& field : table.export_order) {
        query += fmt::format("{}[{}]", joint, field);
        joint = ",";
    }
    return query;
}

}  // namespace brimley::company
