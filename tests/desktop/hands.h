// The hands of a person at the program's window: keys to whatever has the focus, clicks on what can be seen.
//
// Nothing here reaches past the screen: a thing that is hidden, or that another lies over, is not clicked.
// What cannot be done throws std::runtime_error.
#pragma once

#include <QKeySequence>
#include <QMessageBox>

#include "desktop/form_window.h"
#include "desktop/list_popup.h"
#include "desktop/main_window.h"

namespace brimley::testing {

class Hands {
  public:
    explicit Hands(desktop::MainWindow& window) : window_(window) {}

    // --- the keyboard ---
    static void press_key(const QKeySequence& key);
    static void type(const QString& text);

    // --- the mouse ---
    // A menu of the one bar, then its entry.
    void choose(const QString& menu, const QString& entry);
    // A command on the toolbar, by its text.
    void click_tool(const QString& text);
    // Into a field, on a box or a button, by the control's name.
    void click_control(const QString& name);
    // On the arrow, or the calendar, at the end of a field.
    void open_list_of(const QString& name);
    // On a row of the list that is open: the one that has this text in some column.
    void click_row(const QString& text);
    void click_cell(const QString& grid, int row, const QString& caption, bool twice);
    // A button by its text, on whatever lies in front: a box, a window beside the forms, the first page.
    void click_button(const QString& text);
    // The button that closes the window in front, beside its title or at the end of the menu bar.
    void close_window_in_front();

    // --- the eyes ---
    // The box that is open; null when none is.
    [[nodiscard]] static QMessageBox* box();
    // The form that is worked in.
    [[nodiscard]] desktop::FormWindow& form() const;
    [[nodiscard]] std::string text_of(const QString& control) const;
    [[nodiscard]] static std::string name_of_focus();
    // The whole screen: the window, and what is open over it.
    [[nodiscard]] QPixmap picture() const;

  private:
    [[nodiscard]] QWidget& widget_of(const QString& control) const;
    // In the middle, or `from_right` pixels from its right edge.
    static void click(QWidget& widget, const QPoint& at, bool twice = false);

    desktop::MainWindow& window_;
};

}  // namespace brimley::testing
