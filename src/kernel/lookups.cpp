#include "kernel/module_g3.h"

namespace brimley::kernel {

namespace {

std::string query_for(std::string_view columns, std::string_view table, store::FieldValues fields) {
    std::string query = "SELECT ";
    query.append(columns).append(" FROM ").append(table).append(" WHERE ");
    return query.append(store::all_equal(fields));
}

}  // namespace

store::Recordset ModuleG3::read(std::string_view query) {
    return database_->OpenRecordset(query, store::RecordsetKind::snapshot);
}

store::Recordset ModuleG3::read_long(std::string_view query) {
    return database_->OpenRecordset(query, store::RecordsetKind::snapshot, [this] { outside_.pump(); });
}

store::Recordset ModuleG3::change(std::string_view query) {
    return database_->OpenRecordset(query, store::RecordsetKind::dynaset);
}

store::Recordset ModuleG3::find(std::string_view table, store::FieldValues fields) {
    return read(query_for("*", table, fields));
}

store::Recordset ModuleG3::find_to_change(std::string_view table, store::FieldValues fields) {
    return change(query_for("*", table, fields));
}

std::optional<store::Value> ModuleG3::look_up(std::string_view table, store::FieldValues fields,
                                              std::string_view wanted) {
    const auto row = read(query_for(wanted, table, fields));
    if (row.at_eof()) return std::nullopt;
    return row.column(0);
}

std::string ModuleG3::look_up_text(std::string_view table, store::FieldValues fields,
                                   std::string_view wanted) {
    return look_up(table, fields, wanted).value_or(store::Value()).text();
}

bool ModuleG3::exists(std::string_view table, store::FieldValues fields) {
    return look_up(table, fields, fields.begin()->first).has_value();
}

TextRows ModuleG3::rows_of(std::string_view query) {
    TextRows texts;
    for (auto rows = read(query); !rows.at_eof(); rows.MoveNext()) {
        std::vector<std::string>& row = texts.emplace_back();
        for (int column = 0; column < rows.column_count(); ++column)
            row.push_back(rows.column(column).text());
    }
    return texts;
}

}  // namespace brimley::kernel
