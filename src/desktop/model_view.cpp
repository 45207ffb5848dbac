#include "desktop/model_view.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPalette>
#include <cmath>

namespace brimley::desktop {

using controls::Colour;
using controls::Refusal;

namespace {

constexpr int kTwipsPerInch = 1440;
constexpr Colour kSystemColours = 0x80000000;
constexpr double kDarkBelow = 0.45;  // of full light

QColor plain(Colour colour) {
    return {static_cast<int>(colour & 0xff), static_cast<int>(colour >> 8 & 0xff),
            static_cast<int>(colour >> 16 & 0xff)};
}

double lightness(const QColor& colour) {
    return 0.299 * colour.redF() + 0.587 * colour.greenF() + 0.114 * colour.blueF();
}

QColor mixed(const QColor& one, const QColor& other, double share_of_one) {
    const auto part = [&](double a, double b) {
        return static_cast<float>(a * share_of_one + b * (1 - share_of_one));
    };
    return QColor::fromRgbF(part(one.redF(), other.redF()), part(one.greenF(), other.greenF()),
                            part(one.blueF(), other.blueF()));
}

}  // namespace

int pixels(const QWidget& widget, int twips) {
    return static_cast<int>(std::lround(twips * widget.logicalDpiX() / double{kTwipsPerInch}));
}

int twips(const QWidget& widget, int pixels) {
    return static_cast<int>(std::lround(pixels * double{kTwipsPerInch} / widget.logicalDpiX()));
}

QColor mark_colour(const QPalette& palette) {
    return is_dark(palette) ? QColor(255, 120, 110) : QColor(200, 30, 30);
}

QColor mark_back_colour(const QPalette& palette) {
    return mixed(mark_colour(palette), palette.color(QPalette::Base), 0.3);
}

bool is_dark(const QPalette& palette) { return lightness(palette.color(QPalette::Window)) < kDarkBelow; }

QColor readable_on(const QColor& back) {
    return lightness(back) < kDarkBelow ? QColor(Qt::white) : QColor(Qt::black);
}

QColor back_colour(Colour colour, const QPalette& palette) {
    if (colour == controls::kWhite) return palette.color(QPalette::Base);
    // What may not be typed in lies between the paper and the window around it.
    if (colour >= kSystemColours)
        return mixed(palette.color(QPalette::Window), palette.color(QPalette::Base), 0.8);
    if (is_dark(palette) && lightness(plain(colour)) > 1 - kDarkBelow)
        return mixed(plain(colour), palette.color(QPalette::Base), 0.2);
    return plain(colour);
}

QColor text_colour(Colour colour, const QPalette& palette) {
    if (colour == 0 || colour >= kSystemColours) return palette.color(QPalette::Text);
    if (is_dark(palette) && lightness(plain(colour)) < kDarkBelow)
        return mixed(plain(colour), QColor(Qt::white), 0.5);
    return plain(colour);
}

void show_state(QWidget& widget, const controls::Control& control) {
    widget.setVisible(control.visible());
    widget.setEnabled(control.enabled());
}

void show_face(QWidget& field, const controls::Control& control) {
    const QPalette ours = QApplication::palette(&field);
    const bool plain_locked = control.locked() && control.back_colour() == controls::kWhite;
    const QColor back = back_colour(plain_locked ? controls::kReadOnlyBack : control.back_colour(), ours);
    QPalette wanted = ours;
    wanted.setColor(QPalette::Base, back);
    const bool as_around =
        control.back_colour() == controls::kWhite || control.back_colour() >= kSystemColours;
    wanted.setColor(QPalette::Text, as_around ? ours.color(QPalette::Text) : readable_on(back));
    if (field.palette() != wanted) field.setPalette(wanted);
    if (!control.font_name().empty() && field.font().family() != shown(control.font_name())) {
        QFont font = field.font();
        font.setFamily(shown(control.font_name()));
        field.setFont(font);
    }
}

bool looks_open(const QWidget& widget) { return widget.focusPolicy() == Qt::StrongFocus; }

void show_whether_open(QWidget& widget, bool open) {
    widget.setFocusPolicy(open ? Qt::StrongFocus : Qt::ClickFocus);
}

bool is_enter(const QKeyEvent& event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

Refusal state_found(const QWidget& widget) {
    if (!widget.isVisible()) return Refusal::hidden;
    return widget.isEnabled() ? Refusal::none : Refusal::disabled;
}

}  // namespace brimley::desktop
