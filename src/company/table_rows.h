// The rows of a table as checks look them up: by number, by field, and by key.
#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "company/books.h"

namespace brimley::company {

// A snapshot of a whole table. Reading jumps to the row, so that one look at a time is possible.
class TableRows {
  public:
    TableRows(const Books& books, const std::string& table);

    [[nodiscard]] std::int64_t count() const { return count_; }
    [[nodiscard]] int column(const std::string& field) const { return rows_.column_of(field); }
    [[nodiscard]] bool has(const std::string& field) const { return rows_.has_field(field); }
    [[nodiscard]] store::Value value(std::int64_t row, int column) const;
    [[nodiscard]] std::string text(std::int64_t row, const std::string& field) const;
    // The texts of some fields, one after the other, as a key.
    [[nodiscard]] std::string key(std::int64_t row, const std::vector<std::string>& fields) const;

  private:
    void go(std::int64_t row) const;

    mutable store::Recordset rows_;
    mutable std::int64_t at_ = 0;
    std::int64_t count_ = 0;
};

// The rows of a table by the texts of some of its fields.
class RowsByKey {
  public:
    RowsByKey(const TableRows& rows, const std::vector<std::string>& fields);
    // The first one, in the table's order.
    [[nodiscard]] std::optional<std::int64_t> find(const std::string& key) const;
    [[nodiscard]] bool contains(const std::string& key) const { return first_.contains(key); }

  private:
    std::unordered_map<std::string, std::int64_t> first_;
};

// The tables that checks have asked for, each read once.
class Tables {
  public:
    explicit Tables(const Books& books) : books_(books) {}
    [[nodiscard]] const TableRows& rows(const std::string& table);
    // `fields` are parted by blanks.
    [[nodiscard]] const RowsByKey& by_key(const std::string& table, const std::string& fields);

  private:
    const Books& books_;
    std::unordered_map<std::string, TableRows> rows_;
    std::unordered_map<std::string, RowsByKey> keys_;
};

// Null, the empty text, 0 and FALSE.
[[nodiscard]] bool is_nothing(const store::Value& value);
[[nodiscard]] std::vector<std::string> words_of(const std::string& text, char parting = ' ');

}  // namespace brimley::company
