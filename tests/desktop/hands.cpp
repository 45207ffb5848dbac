#include "desktop/hands.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDeadlineTimer>
#include <QHeaderView>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QPdfView>
#include <QTest>
#include <QToolBar>
#include <QTreeView>
#include <stdexcept>

#include "controls/grid.h"
#include "desktop/grid_view.h"
#include "desktop/model_view.h"
#include "frame/form.h"

namespace brimley::testing {

namespace {

[[noreturn]] void cannot(const QString& what) { throw std::runtime_error(what.toStdString()); }

// What keys and clicks go to first: a menu or list that is open, else the box, else the window.
QWidget& in_front(QWidget& otherwise) {
    if (QWidget* const popup = QApplication::activePopupWidget()) return *popup;
    if (QWidget* const box = QApplication::activeModalWidget()) return *box;
    return otherwise;
}

QAction& action_of(const QList<QAction*>& actions, const QString& text) {
    for (QAction* const action : actions)
        if (action->isVisible() && action->text().section('\t', 0, 0).remove('&') == text) return *action;
    cannot("there is no " + text);
}

}  // namespace

// --- the keyboard ---
void Hands::press_key(const QKeySequence& key) {
    const QKeyCombination pressed = key[0];
    QWidget* to = QApplication::activePopupWidget();
    if (to == nullptr) to = QApplication::focusWidget();
    // What lies behind a box gets no key.
    QWidget* const modal = QApplication::activeModalWidget();
    if (modal != nullptr && (to == nullptr || (to != modal && !modal->isAncestorOf(to)))) to = modal;
    if (to == nullptr) to = QApplication::activeWindow();
    if (to == nullptr) cannot("nothing takes keys");
    QTest::keyClick(to, pressed.key(), pressed.keyboardModifiers());
}

void Hands::type(const QString& text) {
    for (const QChar letter : text) {
        QWidget* const to = QApplication::focusWidget();
        if (to == nullptr) cannot("nothing takes letters");
        QTest::keyClicks(to, QString(letter));
    }
}

// --- the mouse ---
void Hands::click(QWidget& widget, const QPoint& at, bool twice) {
    if (!widget.isVisible() || !widget.visibleRegion().contains(at))
        cannot(widget.objectName() + " cannot be seen");
    QWidget* const modal = QApplication::activeModalWidget();
    if (modal != nullptr && modal != &widget && !modal->isAncestorOf(&widget))
        cannot("a box stands before " + widget.objectName());
    QTest::mouseMove(&widget, at);
    if (twice) {
        // As a pointer does: two clicks, the second of which is the double one.
        QTest::mouseClick(&widget, Qt::LeftButton, {}, at);
        QTest::mouseDClick(&widget, Qt::LeftButton, {}, at);
    } else {
        QTest::mouseClick(&widget, Qt::LeftButton, {}, at);
    }
}

void Hands::choose(const QString& menu, const QString& entry) {
    QMenuBar& bar = *window_.menuBar();
    QAction& title = action_of(bar.actions(), menu);
    click(bar, bar.actionGeometry(&title).center());
    auto* const open = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (open == nullptr) cannot(menu + " does not open");
    QAction& wanted = action_of(open->actions(), entry);
    if (!wanted.isEnabled()) cannot(entry + " is grey");
    click(*open, open->actionGeometry(&wanted).center());
}

void Hands::click_tool(const QString& text) {
    for (const QToolBar* const bar : form().findChildren<QToolBar*>())
        for (QAction* const action : bar->actions())
            if (action->iconText() == text) {
                QWidget* const button = bar->widgetForAction(action);
                if (!button->isEnabled()) cannot(text + " is grey");
                return click(*button, button->rect().center());
            }
    cannot("no tool " + text);
}

QWidget& Hands::widget_of(const QString& control) const {
    auto* const found = form().findChild<QWidget*>(control);
    if (found == nullptr) cannot("no field " + control);
    return *found;
}

void Hands::click_control(const QString& name) {
    QWidget& widget = widget_of(name);
    click(widget, QPoint(8, widget.height() / 2));
}

void Hands::open_list_of(const QString& name) {
    QWidget& field = widget_of(name);
    for (QWidget* const button : field.findChildren<QWidget*>())
        if (button->inherits("QToolButton") && button->isVisible())
            return click(*button, button->rect().center());
    cannot(name + " has no list");
}

void Hands::click_row(const QString& text) {
    for (QWidget* const top : QApplication::allWidgets()) {
        auto* const popup = dynamic_cast<desktop::ListPopup*>(top);
        if (popup == nullptr || !popup->isVisible()) continue;
        QTreeView& list = popup->list();
        for (int row = 0; row < list.model()->rowCount(); ++row)
            for (int column = 0; column < list.model()->columnCount(); ++column) {
                const QModelIndex index = list.model()->index(row, column);
                if (index.data().toString() != text) continue;
                list.scrollTo(index);
                return click(*list.viewport(), list.visualRect(index).center());
            }
    }
    cannot("no row " + text);
}

void Hands::click_cell(const QString& grid, int row, const QString& caption, bool twice) {
    auto& view = dynamic_cast<desktop::GridView&>(widget_of(grid));
    const int column = view.grid().get_column(caption.toStdString());
    if (column < 0) cannot("no column " + caption);
    const QModelIndex index = view.table().index(row, column);
    view.scrollTo(index);
    click(*view.viewport(), view.visualRect(index).center(), twice);
}

void Hands::click_button(const QString& text) {
    for (QAbstractButton* const button : in_front(window_).findChildren<QAbstractButton*>())
        if (button->isVisible() && button->text().remove('&') == text)
            return click(*button, button->rect().center());
    cannot("no button " + text);
}

void Hands::close_window_in_front() {
    QMdiSubWindow* const at = window_.area().currentSubWindow();
    if (at == nullptr) cannot("no window is open");
    if (at->isMaximized()) cannot("its button stands in the menu bar");
    const QRect title(0, 0, at->width(), at->style()->pixelMetric(QStyle::PM_TitleBarHeight));
    click(*at, QPoint(title.right() - 16, title.center().y() + 2));
}

// --- the eyes ---
QMessageBox* Hands::box() { return qobject_cast<QMessageBox*>(QApplication::activeModalWidget()); }

desktop::FormWindow& Hands::form() const {
    const QMdiSubWindow* const at = window_.area().currentSubWindow();
    auto* const form = at == nullptr ? nullptr : dynamic_cast<desktop::FormWindow*>(at->widget());
    if (form == nullptr) cannot("no form is in front");
    return *form;
}

std::string Hands::text_of(const QString& control) const {
    const controls::Control* const found = form().form().controls().find(control.toStdString());
    if (found == nullptr) cannot("no field " + control);
    return found->shown();
}

std::string Hands::name_of_focus() {
    for (const QWidget* at = QApplication::focusWidget(); at != nullptr; at = at->parentWidget())
        if (!at->objectName().isEmpty() && !at->objectName().startsWith("qt_"))
            return at->objectName().toStdString();
    return {};
}

QPixmap Hands::picture() const {
    QPixmap picture = window_.grab();
    QPainter painter(&picture);
    for (QWidget* const top : QApplication::topLevelWidgets())
        if (top->isVisible() && top != &window_ && (top->isModal() || top->inherits("QMenu"))) {
            const QRect place(window_.mapFromGlobal(top->mapToGlobal(QPoint(0, 0))), top->size());
            painter.drawPixmap(place.topLeft(), top->grab());
            painter.drawRect(place.adjusted(-1, -1, 0, 0));  // the frame that a screen gives it
        }
    for (QWidget* const inside : window_.findChildren<QWidget*>()) {
        auto* const popup = dynamic_cast<desktop::ListPopup*>(inside);
        if (popup != nullptr && popup->isVisible())
            painter.drawPixmap(window_.mapFromGlobal(popup->mapToGlobal(QPoint(0, 0))), popup->grab());
    }
    return picture;
}

}  // namespace brimley::testing
