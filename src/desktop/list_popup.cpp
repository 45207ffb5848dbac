#include "desktop/list_popup.h"

#include <QAbstractTableModel>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QScreen>
#include <QScrollBar>
#include <QTreeView>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/model_view.h"
#include "desktop/picker_painting.h"

namespace brimley::desktop {

namespace {

constexpr int kRowsShownMax = 14;
constexpr int kRowsMeasured = 200;  // of a long list, to find how wide its texts are

class RowsModel : public QAbstractTableModel {
  public:
    RowsModel(QObject* parent, ListContent content)
        : QAbstractTableModel(parent), content_(std::move(content)) {}

    [[nodiscard]] int rowCount(const QModelIndex& parent) const override {
        return parent.isValid() ? 0 : static_cast<int>(content_.rows.size());
    }
    [[nodiscard]] int columnCount(const QModelIndex& /*parent*/) const override {
        return static_cast<int>(content_.columns.size());
    }
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override {
        if (role == Qt::TextAlignmentRole)
            return QVariant(content_.columns.at(static_cast<std::size_t>(index.column())).alignment |
                            Qt::AlignVCenter);
        if (role != Qt::DisplayRole) return {};
        const auto& row = content_.rows.at(static_cast<std::size_t>(index.row()));
        const auto column = static_cast<std::size_t>(index.column());
        return column < row.size() ? shown(row[column]) : QString();
    }
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (orientation != Qt::Horizontal) return {};
        const ListColumn& column = content_.columns.at(static_cast<std::size_t>(section));
        if (role == Qt::TextAlignmentRole) return QVariant(column.alignment | Qt::AlignVCenter);
        return role == Qt::DisplayRole ? column.caption : QVariant();
    }

  private:
    ListContent content_;
};

}  // namespace

ListPopup* ListPopup::open(QWidget& anchor, ListContent content, int chosen,
                           std::function<void(int row)> on_pick) {
    auto* const popup = new ListPopup(anchor, std::move(content), std::move(on_pick));
    popup->place_below(anchor);
    popup->show();
    QTreeView& list = popup->list();
    if (chosen >= 0) {
        list.setCurrentIndex(list.model()->index(chosen, 0));
        list.scrollTo(list.currentIndex(), QAbstractItemView::PositionAtCenter);
    }
    list.setFocus();
    return popup;
}

ListPopup::ListPopup(QWidget& anchor, ListContent content, std::function<void(int row)> on_pick)
    : QFrame(&anchor, Qt::Popup), list_(new QTreeView(this)), on_pick_(std::move(on_pick)) {
    setAttribute(Qt::WA_DeleteOnClose);
    setFrameShape(QFrame::StyledPanel);
    const std::vector<ListColumn> columns = content.columns;
    list_->setItemDelegate(new PickerPainter(list_, content.look));
    list_->setModel(new RowsModel(list_, std::move(content)));
    list_->setFrameShape(QFrame::NoFrame);
    list_->setRootIsDecorated(false);
    list_->setUniformRowHeights(true);
    list_->setAllColumnsShowFocus(true);
    list_->setFont(anchor.font());
    list_->setHeaderHidden(std::all_of(columns.begin(), columns.end(),
                                       [](const ListColumn& column) { return column.caption.isEmpty(); }));
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(list_);
    lay_out_columns(columns);
    connect(list_, &QTreeView::clicked, this, [this](const QModelIndex& index) { pick(index.row()); });
    list_->installEventFilter(this);
}

void ListPopup::lay_out_columns(const std::vector<ListColumn>& columns) {
    list_->header()->setResizeContentsPrecision(kRowsMeasured);
    for (int column = 0; column < static_cast<int>(columns.size()); ++column) {
        list_->resizeColumnToContents(column);
        const ListColumn& wanted = columns[static_cast<std::size_t>(column)];
        const bool exact = wanted.exact && wanted.width > 0;
        list_->setColumnWidth(column,
                              exact ? wanted.width : std::max(wanted.width, list_->columnWidth(column)));
    }
}

void ListPopup::place_below(const QWidget& anchor) {
    const int rows = std::clamp(list_->model()->rowCount(), 1, kRowsShownMax);
    const int row_height = std::max(list_->sizeHintForRow(0), list_->fontMetrics().height() + 4);
    const int header = list_->isHeaderHidden() ? 0 : list_->header()->sizeHint().height();
    const int frame = 2 * frameWidth();
    const QRect screen = anchor.screen()->availableGeometry();
    const int top = anchor.mapToGlobal(QPoint(0, 0)).y();
    const int above = top - screen.top();
    const int below = screen.bottom() - top - anchor.height();
    const int wanted_height = rows * row_height + header + frame;
    // Where it has no room on either side it is shorter.
    const bool opens_up = wanted_height > below && above > below;
    const int height = std::min(wanted_height, opens_up ? above : below);
    const bool scrolls = list_->model()->rowCount() > kRowsShownMax || height < wanted_height;
    list_->setVerticalScrollBarPolicy(scrolls ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
    const int scroll_bar = scrolls ? list_->verticalScrollBar()->sizeHint().width() : 0;
    const int width =
        std::min(std::max(anchor.width(), list_->header()->length() + scroll_bar + frame), screen.width());
    const int left = anchor.mapToGlobal(QPoint(0, 0)).x();
    setGeometry(std::clamp(left, screen.left(), screen.right() + 1 - width),
                opens_up ? top - height : top + anchor.height(), width, height);
}

void ListPopup::pick(int row) {
    const auto on_pick = on_pick_;
    close();
    if (row >= 0) on_pick(row);
}

bool ListPopup::eventFilter(QObject* watched, QEvent* event) {
    if (watched == list_ && event->type() == QEvent::KeyPress) {
        // The toolkit goes to the first row by itself, without choosing it.
        const bool chosen = list_->selectionModel()->isSelected(list_->currentIndex());
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (!chosen && (key == Qt::Key_Down || key == Qt::Key_Up)) {
            list_->setCurrentIndex(list_->model()->index(0, 0));
            return true;
        }
        if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Tab) {
            pick(chosen ? list_->currentIndex().row() : -1);
            return true;
        }
        if (key == Qt::Key_Escape || key == Qt::Key_F4) {
            close();
            return true;
        }
    }
    return QFrame::eventFilter(watched, event);
}

QIcon arrow_icon(const QPalette& palette) {
    QPixmap picture(32, 32);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette.color(QPalette::Text), 3));
    painter.drawPolyline(QPolygon({QPoint(9, 13), QPoint(16, 20), QPoint(23, 13)}));
    return picture;
}

int row_for_text(const std::vector<std::vector<std::string>>& rows, const QString& text, std::size_t column) {
    if (text.isEmpty()) return -1;
    int beginning = -1;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].size() <= column) continue;
        const QString whole = shown(rows[i][column]);
        if (whole == text) return static_cast<int>(i);
        if (beginning < 0 && whole.startsWith(text, Qt::CaseInsensitive)) beginning = static_cast<int>(i);
    }
    return beginning;
}

bool complete_inline(QLineEdit& line, const std::vector<std::vector<std::string>>& rows, std::size_t column) {
    const QString so_far = line.text();
    if (so_far.isEmpty() || line.cursorPosition() != so_far.size()) return false;
    QString rest;
    for (const auto& row : rows) {
        if (row.size() <= column || !shown(row[column]).startsWith(so_far, Qt::CaseInsensitive)) continue;
        if (row[column].size() == typed(so_far).size()) return false;
        if (rest.isEmpty()) rest = shown(row[column]).mid(so_far.size());
    }
    if (rest.isEmpty()) return false;
    line.setText(so_far + rest);
    line.setSelection(static_cast<int>(so_far.size() + rest.size()), -static_cast<int>(rest.size()));
    return true;
}

}  // namespace brimley::desktop
