// A form in a live window on a copy of the sample company: what people see and press, without a screen.
//
// Boxes are written down and answered from `answers` in order, OK where there is nothing to choose.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDockWidget>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <deque>

#include "desktop/desktop_desk.h"
#include "desktop/form_window.h"
#include "desktop/grid_view.h"
#include "desktop/list_popup.h"
#include "frame/form.h"
#include "host/apclass.h"
#include "support/sample_host.h"

namespace brimley::testing {

// The clock of these tests stands still.
class StoppedDesk : public desktop::DesktopDesk {
  public:
    [[nodiscard]] store::DateTime now() override {
        auto moment = store::DateTime::from_ymd(2026, 3, 16).value();
        moment.second_of_day = 9 * 3600 + 30 * 60;
        return moment;
    }
};

class LiveDesk : public ::testing::Test {
  protected:
    void SetUp() override {
        ap.dbe = company.open().workspace;
        ap.abcdb = company.open().database;
        ap.BASE_CURRENCY = "USD";
        ap.BRIMLEY_PATH = "/brimley";
        ap.BRIMLEY_USER = "anna";
        ap.BRIMLEY_DATE_FORMAT = "dd/mm/yyyy";
        ap.BRIMLEY_NO_PERIODS = "12";
        ap.NotifyClients = [this](const std::string& formx, const std::string& docnox,
                                  const std::string& arg2) {
            requests.push_back(formx + " | " + docnox + " | " + arg2);
        };
        desk.on_box = [this](QMessageBox& box) { answer(box); };
    }

    desktop::FormWindow& show_invoice() {
        ap.showform_APform_invoice();
        QApplication::setActiveWindow(desk.windows().back());
        return *desk.windows().back();
    }
    QWidget& field(const char* name) {
        auto* const found = window().findChild<QWidget*>(name);
        if (found == nullptr) throw std::logic_error(std::string("no widget ") + name);
        return *found;
    }
    QLineEdit& line(const char* name) { return dynamic_cast<QLineEdit&>(field(name)); }
    desktop::GridView& lines() { return dynamic_cast<desktop::GridView&>(field("dbgrid1")); }
    desktop::FormWindow& window() { return *desk.windows().back(); }
    // The list that stands open; null when none does.
    desktop::ListPopup* open_list() {
        for (QFrame* const frame : window().findChildren<QFrame*>())
            if (auto* const list = dynamic_cast<desktop::ListPopup*>(frame)) return list;
        return nullptr;
    }
    void trigger(int command) {
        window().settle();
        window().actions().find(command)->trigger();
        if (!desk.windows().empty()) window().settle();
    }
    // Opens a menu by Alt and its letter, and picks an entry by its own.
    void pick_from_menu(Qt::Key menu, Qt::Key entry) {
        QTest::keyClick(QApplication::focusWidget(), menu, Qt::AltModifier);
        QWidget* const open = QApplication::activePopupWidget();
        ASSERT_NE(open, nullptr);
        QTest::keyClick(open, entry);
        window().settle();
    }
    static std::string focus() {
        const QWidget* const at = QApplication::focusWidget();
        return at == nullptr ? "" : at->objectName().toStdString();
    }
    // As the button of the pane's title does.
    void close_pane(const char* frame) {
        auto* const dock = window().findChild<QDockWidget*>(frame);
        dock->findChild<QAbstractButton*>("qt_dockwidget_closebutton")->click();
        window().settle();
    }
    // Types into whatever has the focus, which the first letter may move into a cell's editor.
    static void keys(const QString& text) {
        for (const QChar letter : text)
            QTest::keyClicks(QApplication::focusWidget(), QString(letter));
    }
    static void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    void go_to(const char* name) {
        QApplication::setActiveWindow(&window());  // a box that was closed may have taken it away
        field(name).setFocus(Qt::TabFocusReason);
    }
    void go_to_cell(int row, const char* caption) {
        window().settle();
        QApplication::setActiveWindow(&window());
        lines().setFocus(Qt::OtherFocusReason);
        lines().setCurrentIndex(lines().model()->index(row, lines().grid().get_column(caption)));
    }
    // Types into the cell and moves on with Enter.
    void type_cell(int row, const char* caption, const QString& text) {
        go_to_cell(row, caption);
        key(Qt::Key_F2);
        keys(text);
        key(Qt::Key_Return);
        window().settle();
    }
    // An invoice of one line, not saved yet.
    void enter_invoice() {
        trigger(105);
        go_to("cmbdoctype");
        keys("Invoice");
        key(Qt::Key_Tab);
        keys("V1001");
        key(Qt::Key_Tab);
        go_to("cmbterm");
        keys("2% 10 days, net 30");
        key(Qt::Key_Tab);
        type_cell(0, "purchase account", "5000");
        type_cell(0, "gross amount", "100.00");
    }
    CompanyCopy company{sample_original()};
    StoppedDesk desk;
    host::APclass ap{desk};
    std::vector<std::string> requests;
    std::vector<std::string> boxes;
    std::deque<bool> answers;
    std::string default_button;  // of the box that was answered last

  private:
    void answer(QMessageBox& box) {
        const QString title = box.windowTitle().trimmed();
        boxes.push_back((title + (title.isEmpty() ? "" : ": ") + box.text()).toStdString());
        default_button = box.defaultButton() == nullptr ? "" : box.defaultButton()->text().toStdString();
        if (box.standardButtons().testFlag(QMessageBox::Ok)) {
            box.button(QMessageBox::Ok)->click();
            return;
        }
        const bool yes = !answers.empty() && answers.front();
        if (!answers.empty()) answers.pop_front();
        box.button(yes ? QMessageBox::Yes : QMessageBox::No)->click();
    }
};

}  // namespace brimley::testing
