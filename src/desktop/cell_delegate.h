// Cells while they are painted and while they are typed in.
//
// The editor belongs to the cell and hands its text over once, when it closes; an editor in which nothing was
// typed changes nothing.
#pragma once

#include <QLineEdit>
#include <QStyledItemDelegate>

#include "controls/grid.h"
#include "desktop/act_gate.h"

namespace brimley::desktop {

class GridView;

class CellEditor : public QLineEdit {
  public:
    CellEditor(QWidget* parent, GridView& view, const controls::GridColumn& column);

    // The list of the column, if it has one, below the cell.
    void open_list();

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override;

  private:
    // False when the list cannot be fetched, which was shown.
    [[nodiscard]] bool look_at_list();
    void complete();

    GridView& view_;
    const controls::DropDown* drop_down_;
};

class CellDelegate : public QStyledItemDelegate {
  public:
    explicit CellDelegate(GridView& view);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;

  protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;

  private:
    void paint_lines(QPainter& painter, const QStyleOptionViewItem& option, int column) const;
    [[nodiscard]] QRect box_of(const QStyleOptionViewItem& option) const;

    GridView& view_;
};

}  // namespace brimley::desktop
