// Carries out a script's acts on the live windows of the desktop: keys into fields and cells, clicks on boxes
// and headers, triggered actions. It looks at widgets only to find out why an act was refused.
#pragma once

#include "console/actor.h"
#include "desktop/desktop_desk.h"
#include "desktop/form_window.h"

namespace brimley::testing {

class WidgetActor : public console::Actor {
  public:
    explicit WidgetActor(desktop::DesktopDesk& desk) : desk_(desk) {}

    [[nodiscard]] Refusal type_and_leave(controls::Control& target, const std::string& text) override;
    [[nodiscard]] Refusal type_and_enter(controls::Control& target, const std::string& text) override;
    [[nodiscard]] Refusal click(controls::Control& box, bool ticked) override;
    [[nodiscard]] Refusal click_button(controls::PushButton& button) override;
    [[nodiscard]] Refusal type_range(controls::DateRange& range, const std::string& from,
                                     const std::string& to) override;
    [[nodiscard]] Refusal press(frame::Form& form, int command) override;
    [[nodiscard]] Refusal close_pane(controls::Frame& pane) override;
    [[nodiscard]] Refusal close_child(frame::Form& form) override;
    void show_font_bar(frame::Form& form, bool visible) override;
    [[nodiscard]] Refusal edit_cell(controls::Grid& grid, int row, int column,
                                    const std::string& text) override;
    [[nodiscard]] Refusal visit_cell(controls::Grid& grid, int row, int column) override;
    [[nodiscard]] Refusal double_click(controls::Grid& grid, int row) override;
    [[nodiscard]] Refusal select_columns(controls::Grid& grid,
                                         std::optional<controls::Grid::Range> range) override;
    [[nodiscard]] Refusal resize_column(controls::Grid& grid, int column, int width) override;
    [[nodiscard]] Refusal move_column(controls::Grid& grid, int column, int order) override;
    [[nodiscard]] Refusal resize_rows(controls::Grid& grid, int height) override;

  private:
    // What the act on the window came to; a failure of a handler is thrown on.
    template <class Act>
    Refusal in_window(desktop::FormWindow& window, const Act& act);
    // The act on the widget of the control, unless the user finds that it cannot be acted on.
    template <class Act>
    Refusal on_widget(controls::Control& control, const Act& act);
    template <class Act>
    Refusal on_grid(controls::Grid& grid, const Act& act);
    Refusal type(controls::Control& target, const std::string& text, Qt::Key last_key);
    [[nodiscard]] desktop::FormWindow* window_showing(const controls::Control& control) const;
    [[nodiscard]] desktop::FormWindow* window_with_pane(const controls::Frame& pane) const;

    desktop::DesktopDesk& desk_;
};

// Types a text into a line as a person would, over what stands there; what keys cannot bring about is pasted.
void type_text(QLineEdit& line, const QString& text);

}  // namespace brimley::testing
