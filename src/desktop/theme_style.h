// The style of the windows: the toolkit's own, with what it draws too dark on dark drawn so that it is seen.
#pragma once

#include <QProxyStyle>

namespace brimley::desktop {

class ThemeStyle : public QProxyStyle {
  public:
    ThemeStyle();

    // On dark the edges of fields and boxes, which would be as dark as what is around them.
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    // The buttons of panes and of windows within the window, in the colour of the text around them.
    [[nodiscard]] QIcon standardIcon(StandardPixmap which, const QStyleOption* option,
                                     const QWidget* widget) const override;
    [[nodiscard]] QPixmap standardPixmap(StandardPixmap which, const QStyleOption* option,
                                         const QWidget* widget) const override;
};

}  // namespace brimley::desktop
