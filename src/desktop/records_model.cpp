#include "desktop/records_model.h"

#include <limits>

#include "desktop/model_view.h"
#include "kernel/money.h"
#include "kernel/user_dates.h"

namespace brimley::desktop {

namespace {

constexpr double kBelowAll = std::numeric_limits<double>::lowest();

}  // namespace

QString value_shown(const store::Value& value, bool money, const std::string& date_format) {
    if (value.is_date()) return shown(kernel::user_date_text(*value.date(), date_format));
    if (value.is_flag()) return value.flag() ? "Yes" : "";
    if (money && value.is_number()) return shown(kernel::format_money(value.number()));
    return shown(value.text());
}

RecordsModel::RecordsModel(store::Recordset& rows, const std::vector<RecordColumn>& columns,
                           const std::string& date_format)
    : date_format_(date_format) {
    std::vector<const RecordColumn*> present;
    for (const RecordColumn& column : columns) {
        if (!rows.has_field(column.field)) continue;
        present.push_back(&column);
        columns_.push_back({column.heading, column.money});
    }
    for (; !rows.at_eof(); rows.MoveNext()) {
        std::vector<QString>& row = rows_.emplace_back();
        for (const RecordColumn* const column : present) {
            const store::Value value = rows.field(column->field);
            columns_[row.size()].number &= column->money || value.is_number() || value.is_null();
            row.push_back(column->tell ? column->tell(rows) : value_shown(value, column->money, date_format));
        }
    }
}

int RecordsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int RecordsModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

QVariant RecordsModel::data(const QModelIndex& index, int role) const {
    const auto column = static_cast<std::size_t>(index.column());
    if (role == Qt::TextAlignmentRole)
        return QVariant(
            Qt::Alignment((columns_.at(column).right ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter));
    if (role != Qt::DisplayRole && role != kSortRole) return {};
    const QString& text = rows_.at(static_cast<std::size_t>(index.row())).at(column);
    return role == kSortRole ? sort_key(text, columns_.at(column)) : text;
}

QVariant RecordsModel::sort_key(const QString& text, const Column& column) const {
    if (column.number) return text.isEmpty() ? kBelowAll : kernel::money_value(typed(text));
    const auto date = kernel::try_user_date(typed(text), date_format_);
    return date ? shown(date->yyyymmdd()) : text;
}

QVariant RecordsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    return columns_.at(static_cast<std::size_t>(section)).heading;
}

}  // namespace brimley::desktop
