#include "company/table_import.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>
#include <unordered_set>

#include "company/csv_values.h"
#include "company/shown_text.h"

namespace brimley::company {

namespace {

using store::Value;

void append_key_part(std::string& key, const Value& value) {
    key += value.is_null() ? "-" : "=" + value.text();
    key += '\0';
}

}  // namespace

TableImport::TableImport(store::Database& database, const store::Table& table, std::string path)
    : database_(database), table_(table), reader_(std::move(path)), writer_(database, table.name) {
    for (const std::string& field : table_.natural_key) {
        key_fields_.push_back(table_.field_index(field));
    }
}

void TableImport::run(bool replace) {
    read_header();
    if (table_.is_trail) return load_entries();
    if (table_.single_row) return load_single_row();
    if (table_.natural_key.empty()) return load_documents();
    if (replace) return load_replacing();
    load_keyed();
}

int TableImport::field_named(const CsvCell& cell) const {
    const int field = table_.field_index(cell.text);
    if (field < 0) {
        reader_.fail(fmt::format("{} has no field \"{}\"", table_.name, shown_text(cell.text)));
    }
    if (std::find(columns_.begin(), columns_.end(), field) != columns_.end()) {
        reader_.fail(fmt::format("the field {} is named twice", table_.fields[field].name));
    }
    return field;
}

void TableImport::read_header() {
    // next() itself refuses a file without a first line.
    if (!reader_.next(record_)) return;
    for (const CsvCell& cell : record_) {
        columns_.push_back(field_named(cell));
    }
}

std::optional<TableImport::TableRow> TableImport::next_row() {
    if (!reader_.next(record_)) return std::nullopt;
    TableRow row(table_.fields.size());
    for (std::size_t column = 0; column < columns_.size(); ++column) {
        const auto field = static_cast<std::size_t>(columns_[column]);
        try {
            row[field] = cell_value(record_[column], table_.fields[field]);
        } catch (const std::invalid_argument& error) {
            reader_.fail(error.what());
        }
    }
    return row;
}

void TableImport::add(const TableRow& row) {
    try {
        writer_.add_row(row);
    } catch (const store::Error& error) {
        using store::ErrorKind;
        if (error.kind() == ErrorKind::constraint || error.kind() == ErrorKind::conversion) {
            reader_.fail(error.what());
        }
        throw;
    }
}

void TableImport::load_single_row() {
    const std::optional<TableRow> row = next_row();
    if (!row) return;
    database_.Execute(fmt::format("DELETE * FROM [{}]", table_.name));
    add(*row);
    if (next_row()) reader_.fail(fmt::format("{} holds a single row", table_.name));
}

void TableImport::load_documents() {
    while (const std::optional<TableRow> row = next_row()) {
        add(*row);
    }
}

// A trail is one chain: it comes whole and in its order, or not at all.
void TableImport::load_entries() {
    if (database_.end_of_trail()->number != 0)
        reader_.fail("the company has a trail of its own, to which entries of another cannot be added");
    const int number = key_fields_.front();
    double last = 0;
    while (const std::optional<TableRow> row = next_row()) {
        const double next = (*row)[number].is_null() ? 0 : (*row)[number].number();
        if (next <= last) reader_.fail(fmt::format("entry {} stands after entry {}", next, last));
        add(*row);
        last = next;
    }
}

store::Recordset TableImport::open_table() const {
    return database_.OpenRecordset(fmt::format("SELECT * FROM [{}]", table_.name),
                                   store::RecordsetKind::snapshot);
}

std::optional<std::string> TableImport::key_of(const TableRow& row) const {
    std::string key;
    bool all_null = true;
    for (const int field : key_fields_) {
        append_key_part(key, row[field]);
        // A yes/no field is never null, and names no row by itself.
        all_null = all_null && (row[field].is_null() || row[field].is_flag());
    }
    return all_null ? std::nullopt : std::optional(std::move(key));
}

TableImport::TableRow TableImport::row_of(const store::Recordset& rows) const {
    TableRow row;
    for (int field = 0; field < static_cast<int>(table_.fields.size()); ++field) {
        row.push_back(rows.column(field));
    }
    return row;
}

std::string TableImport::described_key(const TableRow& row) const {
    std::string text;
    for (const int field : key_fields_) {
        if (!text.empty()) text += ", ";
        text += fmt::format("{} {}", table_.fields[field].name, shown_text(row[field].text()));
    }
    return text;
}

void TableImport::note_key(const std::string& key, const TableRow& row) {
    const auto [known, is_new] = lines_by_key_.emplace(key, reader_.line());
    if (!is_new) {
        reader_.fail(fmt::format("{} is already in line {}", described_key(row), known->second));
    }
}

void TableImport::load_keyed() {
    std::unordered_set<std::string> existing;
    for (store::Recordset rows = open_table(); !rows.at_eof(); rows.MoveNext()) {
        if (auto key = key_of(row_of(rows))) existing.insert(std::move(*key));
    }
    while (const std::optional<TableRow> row = next_row()) {
        if (const auto key = key_of(*row)) {
            if (existing.contains(*key)) reader_.fail(described_key(*row) + " exists already");
            note_key(*key, *row);
        }
        add(*row);
    }
}

void TableImport::load_replacing() {
    Replacements replacements;
    for (store::Recordset rows = open_table(); !rows.at_eof(); rows.MoveNext()) {
        if (auto key = key_of(row_of(rows))) replacements.try_emplace(std::move(*key));
    }
    bool any_replaced = false;
    while (std::optional<TableRow> row = next_row()) {
        const auto key = key_of(*row);
        if (key) note_key(*key, *row);
        const auto replacement = key ? replacements.find(*key) : replacements.end();
        if (replacement == replacements.end()) {
            add(*row);
        } else {
            any_replaced = true;
            replacement->second = std::move(row);
        }
    }
    if (any_replaced) rewrite_table(replacements);
}

void TableImport::rewrite_table(const Replacements& replacements) {
    store::Recordset rows = open_table();
    database_.Execute(fmt::format("DELETE * FROM [{}]", table_.name));
    std::unordered_set<std::string> written;
    for (; !rows.at_eof(); rows.MoveNext()) {
        const TableRow kept = row_of(rows);
        const auto key = key_of(kept);
        const auto replacement = key ? replacements.find(*key) : replacements.end();
        if (replacement == replacements.end() || !replacement->second) {
            add(kept);
        } else if (written.insert(*key).second) {
            add(*replacement->second);
        }
    }
}

}  // namespace brimley::company
