// How the items of the colour and the font picker are drawn: a swatch, and a sample of the face.
#pragma once

#include <QStyledItemDelegate>

#include "controls/combo_box.h"

namespace brimley::desktop {

class PickerPainter : public QStyledItemDelegate {
  public:
    PickerPainter(QObject* parent, controls::ItemLook look) : QStyledItemDelegate(parent), look_(look) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

  private:
    void paint_colour(QPainter& painter, const QStyleOptionViewItem& option, const QString& code) const;
    void paint_font(QPainter& painter, const QStyleOptionViewItem& option, const QString& name) const;

    controls::ItemLook look_;
};

// The swatch of a colour code; nothing for an empty one.
[[nodiscard]] QIcon swatch(const QString& code);

}  // namespace brimley::desktop
