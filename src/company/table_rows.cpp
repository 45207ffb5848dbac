#include "company/table_rows.h"

#include <algorithm>

namespace brimley::company {

TableRows::TableRows(const Books& books, const std::string& table)
    : rows_(books.read("SELECT * FROM " + table)), count_(rows_.RecordCount()) {}

void TableRows::go(std::int64_t row) const {
    if (row == at_) return;
    rows_.Bookmark(store::Bookmark{row});
    at_ = row;
}

store::Value TableRows::value(std::int64_t row, int column) const {
    go(row);
    return rows_.column(column);
}

std::string TableRows::text(std::int64_t row, const std::string& field) const {
    return value(row, column(field)).text();
}

std::string TableRows::key(std::int64_t row, const std::vector<std::string>& fields) const {
    std::string key;
    for (const std::string& field : fields)
        key += text(row, field) + '\n';
    return key;
}

RowsByKey::RowsByKey(const TableRows& rows, const std::vector<std::string>& fields) {
    for (std::int64_t row = 0; row < rows.count(); ++row)
        first_.try_emplace(rows.key(row, fields), row);
}

std::optional<std::int64_t> RowsByKey::find(const std::string& key) const {
    const auto found = first_.find(key);
    return found == first_.end() ? std::nullopt : std::optional(found->second);
}

const TableRows& Tables::rows(const std::string& table) {
    return rows_.try_emplace(table, books_, table).first->second;
}

const RowsByKey& Tables::by_key(const std::string& table, const std::string& fields) {
    const std::string name = table + '.' + fields;
    const auto known = keys_.find(name);
    if (known != keys_.end()) return known->second;
    return keys_.try_emplace(name, rows(table), words_of(fields)).first->second;
}

bool is_nothing(const store::Value& value) {
    if (value.is_null()) return true;
    if (value.is_text()) return value.text_ref().empty();
    if (value.is_number()) return value.number_ref() == 0;
    return value.is_flag() && !value.flag();
}

std::vector<std::string> words_of(const std::string& text, char parting) {
    std::vector<std::string> words;
    for (std::size_t from = 0; from < text.size();) {
        const std::size_t to = std::min(text.find(parting, from), text.size());
        if (to > from) words.push_back(text.substr(from, to - from));
        from = to + 1;
    }
    return words;
}

}  // namespace brimley::company
