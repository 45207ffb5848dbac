#include "desktop/widget_actor.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDockWidget>
#include <QHeaderView>
#include <QMenu>
#include <QTabBar>
#include <QTest>

#include "console/script_line.h"
#include "desktop/field_views.h"
#include "desktop/grid_view.h"
#include "desktop/range_view.h"
#include "desktop/tabs_view.h"
#include "frame/form.h"

namespace brimley::testing {

using controls::Grid;
using controls::Refusal;
using desktop::FormWindow;
using desktop::GridView;
using desktop::shown;

void type_text(QLineEdit& line, const QString& text) {
    line.selectAll();
    QTest::keyClick(&line, Qt::Key_Delete);
    for (const QChar letter : text)
        QTest::sendKeyEvent(QTest::Click, &line, Qt::Key_unknown, QString(letter), Qt::NoModifier);
    if (line.hasSelectedText() && line.selectedText() != line.text()) QTest::keyClick(&line, Qt::Key_Delete);
    if (line.text() == text) {
        line.setModified(true);
        return;
    }
    line.selectAll();
    line.insert(text);
    line.setModified(true);
}

FormWindow* WidgetActor::window_showing(const controls::Control& control) const {
    for (FormWindow* const window : desk_.windows())
        if (window->view(control) != nullptr) return window;
    return nullptr;
}

namespace {

void click_close_button(QDockWidget& dock) {
    dock.findChild<QAbstractButton*>("qt_dockwidget_closebutton")->click();
}

}  // namespace

template <class Act>
Refusal WidgetActor::in_window(FormWindow& window, const Act& act) {
    const auto form = window.form().shared_from_this();
    QApplication::setActiveWindow(window.window());  // the person looks at the window of the act
    window.settle();
    window.gate().reset();
    act();
    if (desk_.window_of(*form) != &window) return Refusal::none;  // the act has closed it
    const auto failure = window.gate().failure();
    const Refusal refusal = window.gate().refusal();
    window.settle();
    if (failure) std::rethrow_exception(failure);
    return refusal;
}

template <class Act>
Refusal WidgetActor::on_widget(controls::Control& control, const Act& act) {
    FormWindow* const window = window_showing(control);
    if (window == nullptr) return Refusal::hidden;
    window->settle();
    if (const Refusal found = window->view(control)->found_by_user(); found != Refusal::none) return found;
    return in_window(*window, [&] { act(*window->widget(control)); });
}

// --- fields ---
Refusal WidgetActor::type(controls::Control& target, const std::string& text, Qt::Key last_key) {
    return on_widget(target, [&](QWidget& widget) {
        widget.setFocus(Qt::TabFocusReason);
        if (auto* const line = qobject_cast<QLineEdit*>(&widget)) {
            type_text(*line, shown(text));
        } else if (auto* const note = qobject_cast<QPlainTextEdit*>(&widget)) {
            note->selectAll();
            note->insertPlainText(shown(text));
        }
        QTest::keyClick(&widget, last_key);
    });
}

Refusal WidgetActor::type_and_leave(controls::Control& target, const std::string& text) {
    return type(target, text, Qt::Key_Tab);
}

Refusal WidgetActor::type_and_enter(controls::Control& target, const std::string& text) {
    return type(target, text, Qt::Key_Return);
}

Refusal WidgetActor::type_range(controls::DateRange& range, const std::string& from, const std::string& to) {
    return on_widget(range, [&](QWidget& widget) {
        auto& pair = dynamic_cast<desktop::RangeView&>(widget);
        pair.from().setFocus(Qt::TabFocusReason);
        type_text(pair.from(), shown(from));
        QTest::keyClick(&pair.from(), Qt::Key_Tab);
        type_text(pair.to(), shown(to));
        QTest::keyClick(&pair.to(), Qt::Key_Tab);
    });
}

Refusal WidgetActor::click(controls::Control& box, bool ticked) {
    return on_widget(box, [&](QWidget& widget) {
        const bool is_ticked = dynamic_cast<QAbstractButton&>(widget).isChecked() && box.shown() == "1";
        if (is_ticked != ticked) QTest::keyClick(&widget, Qt::Key_Space);
    });
}

Refusal WidgetActor::click_button(controls::PushButton& button) {
    return on_widget(button, [](QWidget& widget) {
        QTest::mouseClick(&widget, Qt::LeftButton, {}, widget.rect().center());
    });
}

Refusal WidgetActor::press(frame::Form& form, int command) {
    FormWindow* const window = desk_.window_of(form);
    if (window == nullptr) return Refusal::disabled;
    window->settle();
    QAction* const action = window->actions().find(command);
    if (action == nullptr || !form.CommandBars1().find(command)->enabled) return Refusal::disabled;
    if (!action->isEnabled()) return Refusal::none;  // grey, since it would do nothing
    return in_window(*window, [&] { action->trigger(); });
}

FormWindow* WidgetActor::window_with_pane(const controls::Frame& pane) const {
    for (FormWindow* const window : desk_.windows())
        if (window->pane(pane) != nullptr) return window;
    return nullptr;
}

Refusal WidgetActor::close_pane(controls::Frame& pane) {
    FormWindow* const window = window_with_pane(pane);
    if (window == nullptr) return Refusal::hidden;
    window->settle();
    QDockWidget* const dock = window->pane(pane);
    if (!dock->isVisible()) return Refusal::hidden;
    return in_window(*window, [&] { click_close_button(*dock); });
}

Refusal WidgetActor::close_child(frame::Form& form) {
    FormWindow* const window = form.child() == nullptr ? nullptr : desk_.window_of(*form.child());
    if (window == nullptr || !window->isVisible()) return Refusal::hidden;
    return in_window(*window, [&] { click_close_button(*window->pane_of_this()); });
}

void WidgetActor::show_font_bar(frame::Form& form, bool visible) {
    FormWindow* const window = desk_.window_of(form);
    if (window == nullptr) return;
    const std::unique_ptr<QMenu> menu(window->createPopupMenu());
    QAction* const bar = menu->actions().front();
    if (bar->isChecked() != visible) bar->trigger();
}

// --- grids ---
namespace {

// A grid on a page is brought to the front first, as a person does who wants to see it.
void bring_to_front(QWidget& widget) {
    for (QWidget* at = &widget; at != nullptr; at = at->parentWidget()) {
        auto* const tabs = dynamic_cast<desktop::TabsView*>(at);
        if (tabs == nullptr || !tabs->isVisible()) continue;
        for (int page = 0; page < tabs->count(); ++page)
            if (tabs->widget(page)->isAncestorOf(&widget))
                QTest::mouseClick(tabs->tabBar(), Qt::LeftButton, {}, tabs->tabBar()->tabRect(page).center());
    }
}

}  // namespace

template <class Act>
Refusal WidgetActor::on_grid(Grid& grid, const Act& act) {
    FormWindow* const window = window_showing(grid);
    if (window == nullptr) return Refusal::hidden;
    window->settle();
    auto& view = dynamic_cast<GridView&>(*window->view(grid));
    bring_to_front(view);
    if (const Refusal found = view.found_by_user(); found != Refusal::none) return found;
    Refusal found = Refusal::none;
    const Refusal refused = in_window(*window, [&] { found = act(view); });
    return found != Refusal::none ? found : refused;
}

Refusal WidgetActor::visit_cell(Grid& grid, int row, int column) {
    return on_grid(grid, [&](GridView& view) {
        if (view.isColumnHidden(column)) return Refusal::hidden;
        const QModelIndex index = view.model()->index(row, column);
        if (!index.isValid()) throw console::ScriptFault("nobody can reach that cell");
        view.setCurrentIndex(index);
        return Refusal::none;
    });
}

Refusal WidgetActor::edit_cell(Grid& grid, int row, int column, const std::string& text) {
    return on_grid(grid, [&](GridView& view) {
        const QModelIndex index = view.model()->index(row, column);
        const QModelIndex any = index.isValid() ? index : view.model()->index(0, column);
        if (view.isColumnHidden(column)) return Refusal::hidden;
        if (!any.flags().testFlag(Qt::ItemIsEditable)) return Refusal::locked;
        if (!index.isValid()) throw console::ScriptFault("nobody can reach that cell");
        view.setFocus(Qt::OtherFocusReason);
        view.setCurrentIndex(index);
        if (view.table().is_check_cell(index)) {
            QTest::keyClick(&view, text == "True" ? Qt::Key_1 : Qt::Key_0);
            return Refusal::none;
        }
        QTest::keyClick(&view, Qt::Key_F2);
        auto* const editor = qobject_cast<QLineEdit*>(view.indexWidget(index));
        if (editor == nullptr) return Refusal::none;  // the form kept the editor closed
        type_text(*editor, shown(text));
        QTest::keyClick(editor, Qt::Key_Return, Qt::ControlModifier);
        return Refusal::none;
    });
}

Refusal WidgetActor::double_click(Grid& grid, int row) {
    return on_grid(grid, [&](GridView& view) {
        const QModelIndex index = view.model()->index(row, grid.column());
        if (!index.isValid()) throw console::ScriptFault("nobody can reach that row");
        view.scrollTo(index);
        QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(index).center());
        return Refusal::none;
    });
}

Refusal WidgetActor::select_columns(Grid& grid, std::optional<Grid::Range> range) {
    return on_grid(grid, [&](GridView& view) {
        view.select_columns(range);
        return Refusal::none;
    });
}

Refusal WidgetActor::resize_column(Grid& grid, int column, int width) {
    return on_grid(grid, [&](GridView& view) {
        view.resize_column_to(column, width);
        return Refusal::none;
    });
}

Refusal WidgetActor::move_column(Grid& grid, int column, int order) {
    return on_grid(grid, [&](GridView& view) {
        QHeaderView* const header = view.horizontalHeader();
        const int last = header->count() - 1;
        header->moveSection(header->visualIndex(column), std::min(order, last));
        return Refusal::none;
    });
}

Refusal WidgetActor::resize_rows(Grid& grid, int height) {
    return on_grid(grid, [&](GridView& view) {
        view.resize_rows_to(height);
        return Refusal::none;
    });
}

}  // namespace brimley::testing
