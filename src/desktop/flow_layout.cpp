#include "desktop/flow_layout.h"

#include <algorithm>
#include <limits>

namespace brimley::desktop {

FlowLayout::~FlowLayout() { qDeleteAll(items_); }

void FlowLayout::add_layout(QLayout* layout) {
    addChildLayout(layout);
    addItem(layout);
}

QLayoutItem* FlowLayout::takeAt(int index) {
    return index >= 0 && index < items_.size() ? items_.takeAt(index) : nullptr;
}

std::vector<FlowLayout::Row> FlowLayout::rows_in(int width) const {
    std::vector<Row> rows;
    for (QLayoutItem* const item : items_) {
        if (item->isEmpty()) continue;
        const QSize size = item->sizeHint();
        const bool fits = !rows.empty() && rows.back().size.width() + spacing() + size.width() <= width;
        if (fits) {
            rows.back().size.rwidth() += spacing() + size.width();
            rows.back().size.setHeight(std::max(rows.back().size.height(), size.height()));
            rows.back().items.push_back(item);
        } else {
            rows.push_back({{item}, size});
        }
    }
    return rows;
}

int FlowLayout::heightForWidth(int width) const {
    int height = 0;
    for (const Row& row : rows_in(width))
        height += row.size.height() + (height > 0 ? spacing() : 0);
    return height;
}

QSize FlowLayout::sizeHint() const {
    const auto rows = rows_in(std::numeric_limits<int>::max());
    return rows.empty() ? QSize(0, 0) : rows.front().size;
}

QSize FlowLayout::minimumSize() const {
    QSize size(0, 0);
    for (const QLayoutItem* const item : items_)
        if (!item->isEmpty()) size = size.expandedTo(item->sizeHint());
    return size;
}

void FlowLayout::setGeometry(const QRect& place) {
    QLayout::setGeometry(place);
    int y = place.y();
    for (const Row& row : rows_in(place.width())) {
        int x = side_ == Qt::AlignRight ? place.right() + 1 - row.size.width() : place.x();
        for (QLayoutItem* const item : row.items) {
            const int width = item->sizeHint().width();
            item->setGeometry(QRect(x, y, width, row.size.height()));
            x += width + spacing();
        }
        y += row.size.height() + spacing();
    }
}

}  // namespace brimley::desktop
