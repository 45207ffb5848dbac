// The rows and columns of a grid's model as the toolkit's views want to see them.
//
// Nothing is copied: a cell is read from the model when it is painted. Rows are those of the array, and one
// more while rows may be added. A column's number is its place in the array; where it is seen is the view's
// matter.
#pragma once

#include <QAbstractTableModel>
#include <QFont>
#include <map>
#include <utility>

#include "controls/grid.h"

namespace brimley::desktop {

class GridTable : public QAbstractTableModel {
  public:
    explicit GridTable(controls::Grid& grid) : grid_(grid) {}

    // Takes up what the model's rows, columns and fonts are now. True when there are more or fewer of them.
    bool follow(const QWidget& view);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

    // What is said beside cells, by row and column. True when it is something else than before.
    using CellMarks = std::map<std::pair<int, int>, QString>;
    bool take_marks(CellMarks marks);

    [[nodiscard]] const controls::GridColumn& column(int index) const {
        return grid_.columns[static_cast<std::size_t>(index)];
    }
    [[nodiscard]] bool is_check_cell(const QModelIndex& index) const;
    [[nodiscard]] bool is_ticked(const QModelIndex& index) const;

  private:
    [[nodiscard]] int rows_of_model() const { return grid_.array.rows() + (grid_.allow_add_new ? 1 : 0); }
    [[nodiscard]] QVariant text_colour_of(const QModelIndex& index) const;
    [[nodiscard]] QVariant back_colour_of(const QModelIndex& index) const;
    [[nodiscard]] bool is_selected(int column) const;
    [[nodiscard]] QVariant said_of(const QModelIndex& index) const;

    controls::Grid& grid_;
    int rows_ = 0;
    int columns_ = 0;
    std::vector<QFont> fonts_;  // of the columns
    std::vector<int> places_;   // where each column is seen, hidden ones counted
    QPalette palette_;
    CellMarks marks_;
};

}  // namespace brimley::desktop
