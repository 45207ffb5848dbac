// A grid on the screen.
//
// Where users are, what they type and how they arrange the columns goes to the model as their acts; the
// result is shown, so a refused act leaves no trace, and whoever typed a text that the form has cancelled
// stays in its cell. Changes of the model are shown when control returns to the event loop, however many
// there were.
//
// Keys: Enter and Tab move to the next cell that may be typed in, from the last one to the next row;
// Ctrl+Enter stays; Alt+Down opens a list; Space ticks a box, 1 and 0 set it; Delete empties a cell; Escape
// leaves the grid.
#pragma once

#include <QTableView>

#include "controls/grid.h"
#include "desktop/grid_table.h"
#include "desktop/model_view.h"

namespace brimley::desktop {

class GridView : public QTableView, public ModelView {
  public:
    enum class Then { stay, move_on, move_back };

    GridView(controls::Grid& grid, ActGate& gate);

    // Shows the model soon.
    void refresh() override;
    // Shows the model now.
    void follow();
    void show_marks(GridTable::CellMarks marks);
    bool commit() override;
    [[nodiscard]] controls::Refusal found_by_user() const override;

    [[nodiscard]] controls::Grid& grid() { return grid_; }
    [[nodiscard]] GridTable& table() { return table_; }
    [[nodiscard]] ActGate& gate() { return gate_; }

    // --- acts of the user, as the header, the editor and the keys perform them ---
    // Opens the model's editor. False when the cell stays closed.
    [[nodiscard]] bool open_cell(int row, int column);
    // The text of the editor that is open, or of the cell at once when none is.
    void type_cell(int row, int column, const QString& text);
    void tick_cell(const QModelIndex& index, bool ticked);
    // Hands the editor's text over and moves on, unless the form has cancelled it.
    void finish_edit(Then then);
    // Opens the editor with a text that was typed before and not handed over.
    void put_typed(int row, int column, const QString& text);
    // The columns seen from place `from` to place `to`; nothing for none.
    void select_columns(std::optional<controls::Grid::Range> range);
    void resize_column_to(int column, int width_twips);
    void resize_rows_to(int height_twips);

    // No higher than the least that its place asks for; it takes what room there is.
    [[nodiscard]] QSize sizeHint() const override;

    // Gets the editor of each cell that opens.
    std::function<void(QWidget& editor)> on_editor;
    // Opens the menu of the grid.
    std::function<void(const QPoint& at)> on_menu;

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    bool focusNextPrevChild(bool next) override;
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;

  private:
    void connect_headers();
    void follow_columns();
    void follow_position();
    void follow_header_colour();
    void header_clicked(int column);
    void hold_user();
    void move_on(bool forward);
    [[nodiscard]] bool may_type(int row, int column) const;
    [[nodiscard]] bool row_takes_typing(int row) const;
    [[nodiscard]] bool may_stop_at(int row, int column) const;
    [[nodiscard]] bool take_key(QKeyEvent* event);

    controls::Grid& grid_;
    ActGate& gate_;
    GridTable table_;
    bool following_ = false;  // what changes now comes from the model
    bool refresh_waits_ = false;
    bool holds_user_ = false;  // in the cell whose text was cancelled, until the act is over
};

}  // namespace brimley::desktop
