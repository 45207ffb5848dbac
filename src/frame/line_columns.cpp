#include "frame/line_columns.h"

#include <cmath>

#include "kernel/money.h"

namespace brimley::frame {

void LineColumns::begin(const store::Recordset& lines) {
    fields_.clear();
    cells_.clear();
    for (const LineColumn& column : columns_) {
        fields_.push_back(lines.has_field(column.field) ? lines.column_of(column.field) : -1);
        cells_.push_back({grid_.get_column(column.caption), {}});
    }
    texts_.resize(columns_.size());
}

void LineColumns::read(const store::Recordset& line) {
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        read_cell(line, fields_[i], columns_[i].shown, texts_[i]);
        cells_[i].text = texts_[i];
    }
}

void LineColumns::read_cell(const store::Recordset& line, int field, Shown shown, std::string& text) {
    if (field >= 0 && shown == Shown::text)
        line.read_text(field, text);
    else
        text = text_of(field < 0 ? store::Value() : line.column(field), shown);
}

void LineColumns::put(int row, std::span<const controls::TextArray::CellText> more) {
    cells_.insert(cells_.end(), more.begin(), more.end());
    grid_.array.set_row(row, cells_);
    cells_.resize(columns_.size());
}

const std::string& LineColumns::date_text_of(const store::Value& value) {
    static const std::string kNone;
    const auto date = value.date();
    if (!date) return kNone;
    const auto [text, is_new] = dates_.try_emplace(date->day);
    if (is_new) text->second = date_text(*date);
    return text->second;
}

std::string LineColumns::text_of(const store::Value& value, Shown shown) {
    if (shown == Shown::flag) return value.flag() ? "True" : "False";
    if (value.is_null()) return {};
    switch (shown) {
        case Shown::money:
            return kernel::format_money(value.number());
        case Shown::money_without_sign:
            return kernel::format_money(std::abs(value.number()));
        case Shown::date:
            return date_text_of(value);
        default:
            return value.text();
    }
}

}  // namespace brimley::frame
