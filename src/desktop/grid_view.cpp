#include "desktop/grid_view.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <algorithm>
#include <utility>

#include "desktop/cell_delegate.h"
#include "desktop/grid_header.h"

namespace brimley::desktop {

using controls::Grid;
using controls::GridColumn;
using controls::Refusal;

namespace {

constexpr int kRowHeightMin = 12;  // pixels

// Keeps a flag set for as long as it lives.
class Held {
  public:
    explicit Held(bool& flag) : flag_(flag), before_(flag) { flag_ = true; }
    ~Held() { flag_ = before_; }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;

  private:
    bool& flag_;
    bool before_;
};

}  // namespace

GridView::GridView(Grid& grid, ActGate& gate) : grid_(grid), gate_(gate), table_(grid) {
    setHorizontalHeader(new GridHeader(this, grid));
    setModel(&table_);
    setShowGrid(false);  // the cells draw the lines that the columns want
    setItemDelegate(new CellDelegate(*this));
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::AnyKeyPressed | QAbstractItemView::EditKeyPressed |
                    QAbstractItemView::DoubleClicked);
    setTabKeyNavigation(false);  // Tab moves as Enter does
    setWordWrap(false);
    setCornerButtonEnabled(false);
    connect_headers();
}

QSize GridView::sizeHint() const {
    const QSize usual = QTableView::sizeHint();
    return minimumHeight() > 0 ? QSize(usual.width(), minimumHeight()) : usual;
}

void GridView::connect_headers() {
    QHeaderView* const header = horizontalHeader();
    verticalHeader()->setFixedWidth(14);
    verticalHeader()->setMinimumSectionSize(kRowHeightMin);
    // The toolkit's own selection of a column would move the user to another cell.
    disconnect(header, SIGNAL(sectionPressed(int)), this, SLOT(selectColumn(int)));
    disconnect(verticalHeader(), SIGNAL(sectionPressed(int)), this, SLOT(selectRow(int)));
    connect(header, &QHeaderView::sectionClicked, this, [this](int column) { header_clicked(column); });
    connect(header, &QHeaderView::sectionResized, this, [this](int column, int, int width) {
        if (!following_) gate_.run([&] { return grid_.resize_column(column, twips(*this, width)); });
    });
    connect(header, &QHeaderView::sectionMoved, this, [this](int column, int, int place) {
        if (!following_) gate_.run([&] { return grid_.move_column(column, place); });
        refresh();
    });
    connect(verticalHeader(), &QHeaderView::sectionResized, this, [this](int, int, int height) {
        if (!following_) resize_rows_to(twips(*this, height));
    });
}

// --- the model leads ---
void GridView::refresh() {
    if (refresh_waits_) return;
    refresh_waits_ = true;
    QMetaObject::invokeMethod(
        this, [this] { follow(); }, Qt::QueuedConnection);
}

void GridView::follow() {
    refresh_waits_ = false;
    const Held leads(following_);
    show_state(*this, grid_);
    table_.follow(*this);
    follow_columns();
    follow_header_colour();
    follow_position();
    viewport()->update();
    horizontalHeader()->viewport()->update();
    updateGeometries();  // captions may need more lines, or fewer
}

void GridView::follow_columns() {
    QHeaderView* const header = horizontalHeader();
    const std::vector<int> seen = grid_.column_order();
    for (int place = 0; place < static_cast<int>(seen.size()); ++place) {
        const int column = seen[static_cast<std::size_t>(place)];
        const GridColumn& shape = grid_.columns[static_cast<std::size_t>(column)];
        if (header->visualIndex(column) != place) header->moveSection(header->visualIndex(column), place);
        if (header->isSectionHidden(column) == shape.visible)
            header->setSectionHidden(column, !shape.visible);
        const int width = pixels(*this, shape.width);
        if (shape.visible && header->sectionSize(column) != width) header->resizeSection(column, width);
    }
    const int height = std::max(kRowHeightMin, pixels(*this, grid_.row_height));
    if (verticalHeader()->defaultSectionSize() != height) verticalHeader()->setDefaultSectionSize(height);
}

void GridView::follow_header_colour() {
    const QColor back = back_colour(grid_.header_colour, QApplication::palette(this));
    QPalette colours = QApplication::palette(this);
    colours.setColor(QPalette::Button, back);
    colours.setColor(QPalette::Window, back);
    colours.setColor(QPalette::ButtonText, readable_on(back));
    colours.setColor(QPalette::WindowText, readable_on(back));
    if (horizontalHeader()->palette() == colours) return;
    horizontalHeader()->setPalette(colours);
    horizontalHeader()->setFont(QFont("Arial", 9));
}

void GridView::follow_position() {
    const QModelIndex place = table_.index(grid_.row(), grid_.column());
    if (state() == QAbstractItemView::EditingState || currentIndex() == place) return;
    selectionModel()->setCurrentIndex(place, QItemSelectionModel::ClearAndSelect);
}

Refusal GridView::found_by_user() const { return state_found(*this); }

// --- the user leads ---
void GridView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTableView::currentChanged(current, previous);
    if (following_ || !current.isValid()) return;
    gate_.run([&] { return grid_.visit_cell(current.row(), current.column()); });
    refresh();
}

void GridView::show_marks(GridTable::CellMarks marks) {
    if (table_.take_marks(std::move(marks))) viewport()->update();
}

bool GridView::open_cell(int row, int column) {
    return gate_.run([&] { return grid_.open_editor(row, column); }) && grid_.editor_is_open();
}

void GridView::type_cell(int row, int column, const QString& text) {
    gate_.run([&] {
        return grid_.editor_is_open() ? grid_.leave_editor(typed(text))
                                      : grid_.edit_cell(row, column, typed(text));
    });
    if (grid_.edit_was_cancelled()) hold_user();
    refresh();
}

// A click elsewhere has made the editor hand its text over, and is on its way: it must not take the user out
// of the cell.
void GridView::hold_user() {
    holds_user_ = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (std::exchange(holds_user_, false)) setFocus(Qt::OtherFocusReason);
        },
        Qt::QueuedConnection);
}

void GridView::mousePressEvent(QMouseEvent* event) {
    if (!holds_user_) QTableView::mousePressEvent(event);
}

void GridView::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
    QTableView::closeEditor(editor, hint);
    grid_.abandon_editor();
}

void GridView::tick_cell(const QModelIndex& index, bool ticked) {
    type_cell(index.row(), index.column(), ticked ? "True" : "False");
}

void GridView::put_typed(int row, int column, const QString& text) {
    const QModelIndex cell = table_.index(row, column);
    setCurrentIndex(cell);
    edit(cell);
    auto* const editor = dynamic_cast<QLineEdit*>(indexWidget(cell));
    if (editor == nullptr) return;
    editor->setText(text);
    editor->setModified(true);
}

void GridView::finish_edit(Then then) {
    const bool taken = commit();
    setFocus();
    if (taken && then != Then::stay) move_on(then == Then::move_on);
}

bool GridView::commit() {
    if (state() != QAbstractItemView::EditingState) return true;
    QWidget* const editor = indexWidget(currentIndex());
    if (editor == nullptr) return true;
    commitData(editor);
    closeEditor(editor, QAbstractItemDelegate::NoHint);
    return !std::exchange(holds_user_, false);
}

void GridView::select_columns(std::optional<Grid::Range> range) {
    gate_.run([&] { return grid_.user_selects_columns(range); });
    refresh();
}

void GridView::header_clicked(int column) {
    const int place = horizontalHeader()->visualIndex(column);
    const auto before = grid_.selected_columns();
    if (before && QApplication::keyboardModifiers().testFlag(Qt::ShiftModifier)) {
        select_columns(Grid::Range{std::min(before->from, place), std::max(before->from, place)});
    } else if (before && before->from == place && before->to == place) {
        select_columns(std::nullopt);
    } else {
        select_columns(Grid::Range{place, place});
    }
}

void GridView::resize_column_to(int column, int width_twips) {
    gate_.run([&] { return grid_.resize_column(column, width_twips); });
    refresh();
}

void GridView::resize_rows_to(int height_twips) {
    gate_.run([&] { return grid_.resize_rows(height_twips); });
    refresh();
}

// --- keys and mouse ---
bool GridView::may_type(int row, int column) const {
    return !horizontalHeader()->isSectionHidden(column) &&
           table_.flags(table_.index(row, column)).testFlag(Qt::ItemIsEditable);
}

bool GridView::row_takes_typing(int row) const {
    for (int column = 0; column < table_.columnCount(); ++column)
        if (may_type(row, column)) return true;
    return false;
}

// Where there is a cell to type in, the keys lead to such cells only.
bool GridView::may_stop_at(int row, int column) const {
    return row_takes_typing(row) ? may_type(row, column) : !horizontalHeader()->isSectionHidden(column);
}

void GridView::move_on(bool forward) {
    const QHeaderView& header = *horizontalHeader();
    const int step = forward ? 1 : -1;
    const int columns = table_.columnCount();
    int row = currentIndex().row();
    int place = header.visualIndex(currentIndex().column());
    for (int tries = 0; tries < 2 * columns; ++tries) {
        place += step;
        if (place < 0 || place >= columns) {
            place = forward ? 0 : columns - 1;
            row += step;
        }
        const int column = header.logicalIndex(place);
        if (row < 0 || row >= table_.rowCount()) break;
        if (!may_stop_at(row, column)) continue;
        setCurrentIndex(table_.index(row, column));
        return;
    }
    QTableView::focusNextPrevChild(forward);
}

bool GridView::focusNextPrevChild(bool next) {
    const QModelIndex here = currentIndex();
    const bool typing = here.isValid() && hasFocus() && row_takes_typing(here.row());
    if (state() == QAbstractItemView::EditingState || !typing) return QTableView::focusNextPrevChild(next);
    move_on(next);
    return true;
}

bool GridView::take_key(QKeyEvent* event) {
    const QModelIndex here = currentIndex();
    const bool may_type_here = here.isValid() && may_type(here.row(), here.column());
    const bool box = may_type_here && table_.is_check_cell(here);
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (!event->modifiers().testFlag(Qt::ControlModifier)) move_on(true);
            return true;
        case Qt::Key_Escape:
            if (grid_.selected_columns()) {
                select_columns(std::nullopt);
            } else {
                QTableView::focusNextPrevChild(true);
            }
            return true;
        case Qt::Key_Space:
        case Qt::Key_1:
        case Qt::Key_0:
            if (!box) return false;
            tick_cell(here, event->key() == Qt::Key_1 ||
                                (event->key() == Qt::Key_Space && !table_.is_ticked(here)));
            return true;
        case Qt::Key_Delete:
            if (may_type_here && !box) type_cell(here.row(), here.column(), {});
            return true;
        case Qt::Key_F4:
        case Qt::Key_Down: {
            const bool opens = event->key() == Qt::Key_F4 || event->modifiers().testFlag(Qt::AltModifier);
            if (!opens || !may_type_here || box) return false;
            edit(here);
            if (auto* const editor = dynamic_cast<CellEditor*>(indexWidget(here))) editor->open_list();
            return true;
        }
        default:
            return box && !event->text().isEmpty();
    }
}

void GridView::keyPressEvent(QKeyEvent* event) {
    if (!take_key(event)) QTableView::keyPressEvent(event);
}

void GridView::mouseDoubleClickEvent(QMouseEvent* event) {
    const QModelIndex at = indexAt(event->position().toPoint());
    QTableView::mouseDoubleClickEvent(event);
    if (at.isValid()) gate_.run([&] { return grid_.double_click(at.row()); });
    refresh();
}

void GridView::contextMenuEvent(QContextMenuEvent* event) {
    if (on_menu) on_menu(event->globalPos());
}

}  // namespace brimley::desktop
