// What every widget that shows a model has in common.
//
// A widget follows its model: `refresh` makes it show what the model holds now, whatever the user had typed.
// It never changes the model except by a user act.
#pragma once

#include <QColor>
#include <QString>
#include <QWidget>
#include <string>

#include "controls/control.h"
#include "desktop/act_gate.h"

class QKeyEvent;

namespace brimley::desktop {

class ModelView {
  public:
    ModelView() = default;
    virtual ~ModelView() = default;
    ModelView(const ModelView&) = delete;
    ModelView& operator=(const ModelView&) = delete;

    virtual void refresh() = 0;
    // Hands what was typed and not yet handed over to the model, as before a command. False when the form has
    // cancelled it and the user stays where it was typed.
    virtual bool commit() { return true; }
    // What is said beside what was entered here; empty takes it away.
    virtual void show_mark(const QString& /*text*/) {}
    // What stops a user who wants to act here, read from the widget and not from the model.
    [[nodiscard]] virtual controls::Refusal found_by_user() const = 0;
};

[[nodiscard]] inline QString shown(const std::string& text) { return QString::fromStdString(text); }
[[nodiscard]] inline QString shown(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
[[nodiscard]] inline std::string typed(const QString& text) { return text.toStdString(); }

// What is marked stands out from what is not.
[[nodiscard]] QColor mark_colour(const QPalette& palette);
// The same behind a text, which can be read on it.
[[nodiscard]] QColor mark_back_colour(const QPalette& palette);

// Twentieths of a point, as the models measure, in the pixels of this widget's screen, and back.
[[nodiscard]] int pixels(const QWidget& widget, int twips);
[[nodiscard]] int twips(const QWidget& widget, int pixels);

// The colour of a model on the palette at hand: the system's colours and plain white and black follow light
// and dark, any other colour is itself.
[[nodiscard]] QColor back_colour(controls::Colour colour, const QPalette& palette);
[[nodiscard]] QColor text_colour(controls::Colour colour, const QPalette& palette);
// Black or white, whichever can be read on the background.
[[nodiscard]] QColor readable_on(const QColor& back);
[[nodiscard]] bool is_dark(const QPalette& palette);

// Whether it can be reached and used, and the colours and face of a field. `field` is what the colours are
// for.
void show_state(QWidget& widget, const controls::Control& control);
void show_face(QWidget& field, const controls::Control& control);
// Tab and Enter skip what cannot be typed in or clicked; a click still reaches it, to copy from.
void show_whether_open(QWidget& widget, bool open);
[[nodiscard]] bool looks_open(const QWidget& widget);
// Enter of either keypad.
[[nodiscard]] bool is_enter(const QKeyEvent& event);
// Hidden or disabled as the window shows it; whether it is locked only the widget knows.
[[nodiscard]] controls::Refusal state_found(const QWidget& widget);

}  // namespace brimley::desktop
