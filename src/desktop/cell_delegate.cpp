#include "desktop/cell_delegate.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "desktop/grid_table.h"
#include "desktop/grid_view.h"
#include "desktop/list_popup.h"

namespace brimley::desktop {

using controls::Refusal;

// --- the editor ---
// A list that completes what is typed is fetched before the first key, so that no key waits for it.
CellEditor::CellEditor(QWidget* parent, GridView& view, const controls::GridColumn& column)
    : QLineEdit(parent), view_(view), drop_down_(column.drop_down) {
    setFrame(false);
    setTextMargins(2, 0, 2, 0);
    if (drop_down_ == nullptr || !column.auto_completion || !look_at_list()) return;
    connect(this, &QLineEdit::textEdited, this, [this] { complete(); });
}

bool CellEditor::look_at_list() {
    return view_.gate().run([&] {
        static_cast<void>(drop_down_->rows());
        return Refusal::none;
    });
}

void CellEditor::complete() {
    if (complete_inline(*this, drop_down_->rows(), drop_down_->taken)) setModified(true);
}

void CellEditor::open_list() {
    if (drop_down_ == nullptr || !look_at_list()) return;
    ListContent list;
    list.rows = drop_down_->rows();
    for (std::size_t i = 0; i < drop_down_->captions.size(); ++i) {
        const int width = i < drop_down_->widths.size() ? pixels(*this, drop_down_->widths[i]) : 0;
        list.columns.push_back({shown(drop_down_->captions[i]), width, true, Qt::AlignLeft});
    }
    const int chosen = row_for_text(list.rows, text(), drop_down_->taken);
    ListPopup::open(*this, std::move(list), chosen, [this](int row) {
        setText(shown(drop_down_->rows()[static_cast<std::size_t>(row)].at(drop_down_->taken)));
        setModified(true);
        view_.finish_edit(GridView::Then::stay);
    });
}

// Tab and Shift+Tab.
bool CellEditor::focusNextPrevChild(bool next) {
    view_.finish_edit(next ? GridView::Then::move_on : GridView::Then::move_back);
    return true;
}

void CellEditor::keyPressEvent(QKeyEvent* event) {
    const bool alt = event->modifiers().testFlag(Qt::AltModifier);
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            view_.finish_edit(event->modifiers().testFlag(Qt::ControlModifier) ? GridView::Then::stay
                                                                               : GridView::Then::move_on);
            return;
        case Qt::Key_Escape:
            setModified(false);
            view_.finish_edit(GridView::Then::stay);
            return;
        case Qt::Key_F4:
            open_list();
            return;
        case Qt::Key_Down:
            if (alt) {
                open_list();
                return;
            }
            break;
        default:
            break;
    }
    const bool takes_away = event->key() == Qt::Key_Backspace || event->key() == Qt::Key_Delete;
    const QSignalBlocker no_completion(takes_away ? static_cast<QObject*>(this) : nullptr);
    QLineEdit::keyPressEvent(event);
}

// --- the delegate ---
CellDelegate::CellDelegate(GridView& view) : QStyledItemDelegate(&view), view_(view) {}

QRect CellDelegate::box_of(const QStyleOptionViewItem& option) const {
    const int side = view_.style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, &view_);
    QRect box(0, 0, side, side);
    box.moveCenter(option.rect.center());
    return box;
}

// The current cell stands out only while the grid has the focus.
void CellDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    if (!view_.hasFocus()) option->state &= ~QStyle::State_Active;
}

void CellDelegate::paint_lines(QPainter& painter, const QStyleOptionViewItem& option, int column) const {
    const int colour = view_.style()->styleHint(QStyle::SH_Table_GridLineColor, &option, &view_);
    const QRect& cell = option.rect;
    painter.setPen(QColor::fromRgba(static_cast<QRgb>(colour)));
    painter.drawLine(cell.bottomLeft(), cell.bottomRight());
    if (view_.table().column(column).divider) painter.drawLine(cell.topRight(), cell.bottomRight());
}

void CellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
    QStyledItemDelegate::paint(painter, option, index);
    paint_lines(*painter, option, index.column());
    const GridTable& table = view_.table();
    if (!table.is_check_cell(index) || index.row() >= view_.grid().array.used_rows()) return;
    QStyleOptionViewItem box = option;
    box.rect = box_of(option);
    box.state &= ~QStyle::State_HasFocus;
    box.state |= table.is_ticked(index) ? QStyle::State_On : QStyle::State_Off;
    view_.style()->drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &box, painter, &view_);
}

QWidget* CellDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& /*option*/,
                                    const QModelIndex& index) const {
    const GridTable& table = view_.table();
    if (table.is_check_cell(index) || !view_.open_cell(index.row(), index.column())) return nullptr;
    auto* const editor = new CellEditor(parent, view_, table.column(index.column()));
    editor->setFont(index.data(Qt::FontRole).value<QFont>());
    editor->setAlignment(index.data(Qt::TextAlignmentRole).value<Qt::Alignment>());
    if (table.column(index.column()).drop_down != nullptr) {
        QAction* const open = editor->addAction(arrow_icon(view_.palette()), QLineEdit::TrailingPosition);
        connect(open, &QAction::triggered, editor, [editor] { editor->open_list(); });
    }
    if (view_.on_editor) view_.on_editor(*editor);
    return editor;
}

void CellDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
    auto& line = static_cast<CellEditor&>(*editor);
    if (!line.isModified()) line.setText(index.data(Qt::EditRole).toString());
}

// A box that opens while the text is handed over takes the focus from the editor, which must not hand it over
// again.
void CellDelegate::setModelData(QWidget* editor, QAbstractItemModel* /*model*/,
                                const QModelIndex& index) const {
    auto& line = static_cast<CellEditor&>(*editor);
    if (!line.isModified()) return;
    line.setModified(false);
    view_.type_cell(index.row(), index.column(), line.text());
}

void CellDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                        const QModelIndex& /*index*/) const {
    editor->setGeometry(option.rect);
}

// Keys are the editor's own; without this the toolkit would take Return and Tab before it.
bool CellDelegate::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride) return false;
    return QStyledItemDelegate::eventFilter(watched, event);
}

bool CellDelegate::editorEvent(QEvent* event, QAbstractItemModel* /*model*/,
                               const QStyleOptionViewItem& option, const QModelIndex& index) {
    const GridTable& table = view_.table();
    if (!table.is_check_cell(index) || event->type() != QEvent::MouseButtonRelease) return false;
    const auto& mouse = static_cast<QMouseEvent&>(*event);
    if (mouse.button() != Qt::LeftButton || !box_of(option).contains(mouse.position().toPoint()))
        return false;
    view_.tick_cell(index, !table.is_ticked(index));
    return true;
}

}  // namespace brimley::desktop
