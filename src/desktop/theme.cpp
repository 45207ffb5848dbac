#include "desktop/theme.h"

#include <QApplication>
#include <QPalette>

#include "desktop/theme_style.h"

namespace brimley::desktop {

namespace {

constexpr double kPointSize = 9;

// Of what cannot be used now.
void set_faint(QPalette& palette, const QColor& colour) {
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, colour);
}

QPalette light_palette() {
    QPalette palette(QColor(238, 240, 243));
    palette.setColor(QPalette::Window, QColor(240, 242, 245));
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::AlternateBase, QColor(245, 247, 250));
    palette.setColor(QPalette::Text, QColor(20, 22, 26));
    palette.setColor(QPalette::WindowText, QColor(30, 34, 40));
    palette.setColor(QPalette::Button, QColor(232, 235, 239));
    palette.setColor(QPalette::ButtonText, QColor(30, 34, 40));
    palette.setColor(QPalette::Highlight, QColor(38, 103, 173));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::PlaceholderText, QColor(130, 136, 145));
    palette.setColor(QPalette::Inactive, QPalette::Highlight, QColor(200, 212, 226));
    palette.setColor(QPalette::Inactive, QPalette::HighlightedText, QColor(20, 22, 26));
    set_faint(palette, QColor(152, 158, 166));
    return palette;
}

QPalette dark_palette() {
    QPalette palette(QColor(58, 63, 70));
    palette.setColor(QPalette::Window, QColor(50, 54, 60));
    palette.setColor(QPalette::Base, QColor(28, 30, 34));
    palette.setColor(QPalette::AlternateBase, QColor(34, 37, 41));
    palette.setColor(QPalette::Text, QColor(226, 229, 233));
    palette.setColor(QPalette::WindowText, QColor(214, 218, 223));
    palette.setColor(QPalette::Button, QColor(66, 71, 79));
    palette.setColor(QPalette::ButtonText, QColor(214, 218, 223));
    palette.setColor(QPalette::Highlight, QColor(58, 118, 184));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::PlaceholderText, QColor(140, 146, 154));
    palette.setColor(QPalette::ToolTipBase, QColor(52, 56, 62));
    palette.setColor(QPalette::ToolTipText, QColor(226, 229, 233));
    palette.setColor(QPalette::Mid, QColor(104, 111, 121));
    palette.setColor(QPalette::Inactive, QPalette::Highlight, QColor(62, 74, 90));
    palette.setColor(QPalette::Inactive, QPalette::HighlightedText, QColor(226, 229, 233));
    set_faint(palette, QColor(120, 126, 134));
    return palette;
}

}  // namespace

void use_theme(Theme theme) {
    if (theme == Theme::light) QApplication::setPalette(light_palette());
    if (theme == Theme::dark) QApplication::setPalette(dark_palette());
    if (theme == Theme::as_system) QApplication::setPalette(QPalette());
    // One style everywhere, so that a form looks the same on every machine; made again, since it keeps
    // pictures.
    QApplication::setStyle(new ThemeStyle);
}

void use_fonts() {
    QFont face("Arial");
    face.setPointSizeF(kPointSize);
    QApplication::setFont(face);
}

}  // namespace brimley::desktop
