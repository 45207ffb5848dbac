// The rows of a query as a table to look at: read once, shown in the user's own formats.
#pragma once

#include <QAbstractTableModel>
#include <functional>
#include <string>
#include <vector>

#include "kernel/store/database.h"

namespace brimley::desktop {

// A heading for a field, and whether its numbers are money.
struct RecordColumn {
    std::string field;
    QString heading;
    bool money = false;
    // What is shown of the row in place of the field's own text, such as a name for a number.
    std::function<QString(const store::Recordset& row)> tell = {};
};

// A value as a person reads it: dates in the user's format, money with two places, yes/no as words.
[[nodiscard]] QString value_shown(const store::Value& value, bool money, const std::string& date_format);

class RecordsModel : public QAbstractTableModel {
  public:
    // Reads all rows. Fields that the query does not have are left out.
    RecordsModel(store::Recordset& rows, const std::vector<RecordColumn>& columns,
                 const std::string& date_format);

    // What a row is sorted by in a column: numbers as numbers, dates in their order.
    static constexpr int kSortRole = Qt::UserRole;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override;

  private:
    struct Column {
        QString heading;
        bool right = false;
        bool number = true;  // all of them, as far as there are any
    };
    [[nodiscard]] QVariant sort_key(const QString& text, const Column& column) const;

    std::string date_format_;
    std::vector<Column> columns_;
    std::vector<std::vector<QString>> rows_;
};

}  // namespace brimley::desktop
