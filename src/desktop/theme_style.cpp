#include "desktop/theme_style.h"

#include <QApplication>
#include <QPainter>
#include <QStyleOption>

#include "desktop/command_icons.h"
#include "desktop/model_view.h"

namespace brimley::desktop {

namespace {

constexpr int kButtonSide = 16;

bool has_edge(QStyle::PrimitiveElement element) {
    return element == QStyle::PE_FrameLineEdit || element == QStyle::PE_PanelLineEdit ||
           element == QStyle::PE_IndicatorCheckBox || element == QStyle::PE_IndicatorItemViewItemCheck;
}

// The strokes of a button, as looks/icons.txt has them; empty: the toolkit's own picture stays.
QString strokes_of(QStyle::StandardPixmap which) {
    switch (which) {
        case QStyle::SP_TitleBarCloseButton:
        case QStyle::SP_DockWidgetCloseButton:
            return "M 6 6 L 18 18 M 18 6 L 6 18";
        case QStyle::SP_TitleBarMinButton:
            return "M 6 17 L 18 17";
        case QStyle::SP_TitleBarMaxButton:
            return "M 5 6 L 19 6 L 19 18 L 5 18 L 5 6 M 5 8 L 19 8";
        case QStyle::SP_TitleBarNormalButton:
            return "M 9 9 L 9 5 L 19 5 L 19 14 L 15 14 M 5 9 L 15 9 L 15 19 L 5 19 L 5 9";
        case QStyle::SP_ToolBarHorizontalExtensionButton:
            return "M 6 6 L 12 12 L 6 18 M 12 6 L 18 12 L 12 18";
        case QStyle::SP_ToolBarVerticalExtensionButton:
            return "M 6 6 L 12 12 L 18 6 M 6 12 L 12 18 L 18 12";
        default:
            return {};
    }
}

}  // namespace

ThemeStyle::ThemeStyle() : QProxyStyle("fusion") {}

void ThemeStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    const bool in_cell = element == PE_PanelLineEdit && qstyleoption_cast<const QStyleOptionFrame*>(option) &&
                         qstyleoption_cast<const QStyleOptionFrame*>(option)->lineWidth == 0;
    if (!has_edge(element) || in_cell || !is_dark(option->palette) || option->state.testFlag(State_HasFocus))
        return;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setBrush(Qt::NoBrush);
    painter->setPen(option->palette.color(QPalette::Mid));
    painter->drawRoundedRect(QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5), 2, 2);
    painter->restore();
}

QIcon ThemeStyle::standardIcon(StandardPixmap which, const QStyleOption* option,
                               const QWidget* widget) const {
    const QString strokes = strokes_of(which);
    return strokes.isEmpty() ? QProxyStyle::standardIcon(which, option, widget) : stroked_icon(strokes);
}

QPixmap ThemeStyle::standardPixmap(StandardPixmap which, const QStyleOption* option,
                                   const QWidget* widget) const {
    if (strokes_of(which).isEmpty()) return QProxyStyle::standardPixmap(which, option, widget);
    return standardIcon(which, option, widget).pixmap(kButtonSide);
}

}  // namespace brimley::desktop
