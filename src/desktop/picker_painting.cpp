#include "desktop/picker_painting.h"

#include <QApplication>
#include <QPainter>

#include "desktop/model_view.h"
#include "presentation/colours.h"

namespace brimley::desktop {

using controls::ItemLook;

namespace {

constexpr const char* kFallBackFace = "Arial";
constexpr const char* kSample = "AbCdEfGhIj";
constexpr int kSwatchWidth = 36;
constexpr int kGap = 6;

QColor colour_of_code(const QString& code) {
    const controls::Colour colour = presentation::HTMLToRGB(typed(code));
    return {static_cast<int>(colour & 0xff), static_cast<int>(colour >> 8 & 0xff),
            static_cast<int>(colour >> 16 & 0xff)};
}

void draw_swatch(QPainter& painter, const QRect& place, const QString& code) {
    painter.setPen(QColor(128, 128, 128));
    painter.setBrush(colour_of_code(code));
    painter.drawRect(place);
}

// A face that cannot be drawn is drawn in the one that stands in for it.
QFont face_of(const QString& name, const QFont& like) {
    QFont face(like);
    face.setFamilies({name, kFallBackFace});
    return face;
}

QColor text_colour_of(const QStyleOptionViewItem& option) {
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    return option.palette.color(selected ? QPalette::HighlightedText : QPalette::Text);
}

void draw_background(QPainter& painter, const QStyleOptionViewItem& option) {
    const QWidget* const widget = option.widget;
    const QStyle* const style = widget != nullptr ? widget->style() : QApplication::style();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &option, &painter, widget);
}

}  // namespace

QIcon swatch(const QString& code) {
    if (code.isEmpty()) return {};
    QPixmap picture(32, 32);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    draw_swatch(painter, QRect(2, 4, 27, 23), code);
    return picture;
}

void PickerPainter::paint_colour(QPainter& painter, const QStyleOptionViewItem& option,
                                 const QString& code) const {
    const QRect place(option.rect.left() + kGap, option.rect.top() + 2, kSwatchWidth,
                      option.rect.height() - 5);
    draw_swatch(painter, place, code);
    painter.setPen(text_colour_of(option));
    painter.setFont(option.font);
    painter.drawText(option.rect.adjusted(kSwatchWidth + 2 * kGap, 0, 0, 0), Qt::AlignVCenter, code);
}

void PickerPainter::paint_font(QPainter& painter, const QStyleOptionViewItem& option,
                               const QString& name) const {
    painter.setPen(text_colour_of(option));
    painter.setFont(option.font);
    const QRect text = option.rect.adjusted(kGap, 0, -kGap, 0);
    const QString before = name + " ";
    painter.drawText(text, Qt::AlignVCenter, before);
    painter.setFont(face_of(name, option.font));
    const int behind = QFontMetrics(option.font).horizontalAdvance(before) + kGap;
    painter.drawText(text.adjusted(behind, 0, 0, 0), Qt::AlignVCenter, kSample);
}

void PickerPainter::paint(QPainter* painter, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const {
    if (!index.isValid()) return;
    if (look_ == ItemLook::text || index.column() != 0) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    painter->save();
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    draw_background(*painter, item);
    if (look_ == ItemLook::colour) {
        paint_colour(*painter, item, index.data().toString());
    } else {
        paint_font(*painter, item, index.data().toString());
    }
    painter->restore();
}

QSize PickerPainter::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    if (look_ == ItemLook::colour && index.column() == 0) size.rwidth() += kSwatchWidth + 2 * kGap;
    if (look_ == ItemLook::font)
        size.rwidth() += QFontMetrics(option.font).horizontalAdvance(kSample) + 3 * kGap;
    if (look_ != ItemLook::text) size.rheight() += 4;
    return size;
}

}  // namespace brimley::desktop
