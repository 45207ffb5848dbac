#include "desktop/grid_header.h"

#include <QPainter>
#include <algorithm>

#include "desktop/model_view.h"

namespace brimley::desktop {

namespace {

constexpr int kMargin = 3;       // pixels to each side of a caption
constexpr int kLinesMax = 3;     // a column that is drawn narrow does not push the rows away
constexpr int kLineAlpha = 110;  // of 255: a divider is fainter than the captions
constexpr int kFlags = Qt::AlignCenter | Qt::TextWordWrap;

}  // namespace

GridHeader::GridHeader(QWidget* parent, const controls::Grid& grid)
    : QHeaderView(Qt::Horizontal, parent), grid_(grid) {
    setSectionsClickable(true);
    setSectionsMovable(true);
    setHighlightSections(false);
    setMinimumSectionSize(8);
}

QString GridHeader::caption_shown(int column, int width) const {
    const QString caption = shown(grid_.columns[static_cast<std::size_t>(column)].caption);
    for (const QString& word : caption.split(' '))
        if (fontMetrics().horizontalAdvance(word) > width)
            return fontMetrics().elidedText(caption, Qt::ElideRight, width);
    return caption;
}

QSize GridHeader::sizeHint() const {
    const int line = fontMetrics().lineSpacing();
    int height = line;
    for (int column = 0; column < static_cast<int>(grid_.columns.size()) && column < count(); ++column) {
        if (isSectionHidden(column)) continue;
        const int width = std::max(1, sectionSize(column) - 2 * kMargin);
        const QRect room(0, 0, width, kLinesMax * line);
        height =
            std::max(height, fontMetrics().boundingRect(room, kFlags, caption_shown(column, width)).height());
    }
    return {QHeaderView::sizeHint().width(), std::min(height, kLinesMax * line) + 2 * kMargin};
}

void GridHeader::paintSection(QPainter* painter, const QRect& place, int column) const {
    if (!place.isValid() || column >= static_cast<int>(grid_.columns.size())) return;
    const QColor back = palette().color(QPalette::Button);
    painter->fillRect(place, back);
    const QRect text = place.adjusted(kMargin, 0, -kMargin, 0);
    painter->setFont(font());
    painter->setPen(palette().color(QPalette::ButtonText));
    painter->drawText(text, kFlags, caption_shown(column, text.width()));
    if (!grid_.columns[static_cast<std::size_t>(column)].header_divider) return;
    QColor line = palette().color(QPalette::ButtonText);
    line.setAlpha(kLineAlpha);
    painter->setPen(line);
    painter->drawLine(place.topRight(), place.bottomRight());
}

}  // namespace brimley::desktop
