// Adds rows to one table, fields by name. Runs inside the caller's transaction.
#pragma once

#include <initializer_list>
#include <string_view>
#include <utility>
#include <vector>

#include "kernel/store/database.h"

namespace brimley::company {

using FieldValues = std::initializer_list<std::pair<std::string_view, store::Value>>;

class TableWriter {
  public:
    // The database must outlive the writer. Throws ErrorKind::name for an unknown table.
    TableWriter(store::Database& database, const std::string& table);

    // Fields not named are null, yes/no fields FALSE. Throws store::Error; the row is not added then.
    void add(FieldValues values);
    // One value per field, in the order of the catalog.
    void add_row(const std::vector<store::Value>& row);

    [[nodiscard]] const store::Table& table() const { return table_; }

  private:
    const store::Table& table_;
    store::Recordset rows_;
};

// A text for a query that reads a whole table in the order of export.
[[nodiscard]] std::string select_in_export_order(const store::Table& table);

}  // namespace brimley::company
