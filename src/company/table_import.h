// Loads one CSV file into one table. See import.h for the rules.
#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "company/csv_reader.h"
#include "company/table_writer.h"

namespace brimley::company {

class TableImport {
  public:
    TableImport(store::Database& database, const store::Table& table, std::string path);

    // Inside the caller's transaction. Throws CsvError and store::Error.
    void run(bool replace);

  private:
    using TableRow = std::vector<store::Value>;  // one value per field, in the order of the catalog

    void read_header();
    [[nodiscard]] int field_named(const CsvCell& cell) const;
    // The next row of the file, or empty at its end.
    [[nodiscard]] std::optional<TableRow> next_row();
    // Adds a row; what the table refuses is the file's fault, at the line being read.
    void add(const TableRow& row);

    void load_single_row();
    void load_documents();
    void load_entries();
    void load_keyed();
    void load_replacing();
    // By key; no row yet for a key of the table that the file has not named.
    using Replacements = std::unordered_map<std::string, std::optional<TableRow>>;
    // Rewrites the table, each row of `replacements` in the place of the rows whose key it has.
    void rewrite_table(const Replacements& replacements);

    [[nodiscard]] store::Recordset open_table() const;
    // The natural key of a row as one text, equal only for equal keys; empty when the key is all null.
    [[nodiscard]] std::optional<std::string> key_of(const TableRow& row) const;
    [[nodiscard]] TableRow row_of(const store::Recordset& rows) const;
    [[nodiscard]] std::string described_key(const TableRow& row) const;
    // Remembers the key, and refuses one that an earlier line of the file has.
    void note_key(const std::string& key, const TableRow& row);

    store::Database& database_;
    const store::Table& table_;
    CsvReader reader_;
    TableWriter writer_;
    std::vector<int> columns_;     // the field of each column of the file
    std::vector<int> key_fields_;  // positions of the natural key
    std::unordered_map<std::string, int> lines_by_key_;
    std::vector<CsvCell> record_;
};

}  // namespace brimley::company
