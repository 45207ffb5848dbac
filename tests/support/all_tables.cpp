#include "support/all_tables.h"

namespace brimley::testing {

AllTables all_tables(store::Database& database) {
    AllTables contents;
    for (const store::Table& table : database.catalog().tables()) {
        std::string& text = contents[table.name];
        auto rows = database.OpenRecordset("SELECT * FROM " + table.name, store::RecordsetKind::snapshot);
        for (; !rows.at_eof(); rows.MoveNext()) {
            for (int column = 0; column < rows.column_count(); ++column) {
                const store::Value value = rows.column(column);
                text += (value.is_null() ? std::string("null") : value.text()) + '|';
            }
            text += '\n';
        }
    }
    return contents;
}

std::string difference(const AllTables& one, const AllTables& other) {
    std::string names;
    for (const auto& [name, text] : one) {
        if (other.at(name) != text) names += name + ' ';
    }
    return names;
}

}  // namespace brimley::testing
