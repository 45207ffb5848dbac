#include "desktop/desktop_desk.h"

#include <QApplication>
#include <QDateTime>
#include <QFontDatabase>
#include <QMessageBox>
#include <QSysInfo>
#include <QThread>
#include <QTimer>
#include <algorithm>

#include "desktop/form_window.h"

namespace brimley::desktop {

namespace {

constexpr int kComputerNameMax = 512;

}  // namespace

DesktopDesk::DesktopDesk() = default;

DesktopDesk::~DesktopDesk() {
    for (FormWindow* window : windows_)
        delete window;
}

int DesktopDesk::show_box(QMessageBox& box) {
    if (on_box) QTimer::singleShot(0, &box, [&] { on_box(box); });
    return box.exec();
}

void DesktopDesk::message(const std::string& text) {
    QMessageBox box(QMessageBox::NoIcon, {}, shown(text), QMessageBox::Ok, QApplication::activeWindow());
    box.setTextFormat(Qt::PlainText);
    show_box(box);
}

bool DesktopDesk::question(const std::string& text, const std::string& title) {
    QMessageBox box(QMessageBox::Question, shown(title), shown(text), QMessageBox::Yes | QMessageBox::No,
                    QApplication::activeWindow());
    box.setTextFormat(Qt::PlainText);
    return show_box(box) == QMessageBox::Yes;
}

store::DateTime DesktopDesk::now() {
    const QDateTime local = QDateTime::currentDateTime();
    auto moment =
        store::DateTime::from_ymd(local.date().year(), local.date().month(), local.date().day()).value();
    moment.second_of_day = local.time().msecsSinceStartOfDay() / 1000;
    return moment;
}

void DesktopDesk::wait(std::chrono::milliseconds duration) {
    QThread::msleep(static_cast<unsigned long>(duration.count()));
}

// Not the user's keys and clicks: a form in the middle of a command is not to be commanded again.
void DesktopDesk::pump() { QApplication::processEvents(QEventLoop::ExcludeUserInputEvents); }

std::string DesktopDesk::computer_name() {
    return typed(QSysInfo::machineHostName()).substr(0, kComputerNameMax);
}

std::vector<std::string> DesktopDesk::font_families() {
    std::vector<std::string> families;
    for (const QString& family : QFontDatabase::families())
        if (!QFontDatabase::isPrivateFamily(family)) families.push_back(typed(family));
    return families;
}

void DesktopDesk::form_shown(std::shared_ptr<frame::Form> form) {
    auto* const window = new FormWindow(std::move(form), *asked_);
    windows_.push_back(window);
    if (place) {
        place(*window);
    } else {
        window->resize(1180, 640);
        window->show();
    }
    window->focus_first_field();
}

void DesktopDesk::form_raised(frame::Form& form) {
    FormWindow* const window = window_of(form);
    if (window == nullptr) return;
    if (raise) {
        raise(*window);
    } else {
        window->raise();
        window->activateWindow();
    }
}

void DesktopDesk::form_closed(frame::Form& form) {
    FormWindow* const window = window_of(form);
    if (window == nullptr) return;
    std::erase(windows_, window);
    if (take_away) take_away(*window);
    window->form_has_closed();
}

FormWindow* DesktopDesk::window_of(const frame::Form& form) const {
    const auto found = std::find_if(windows_.begin(), windows_.end(),
                                    [&](FormWindow* window) { return &window->form() == &form; });
    return found == windows_.end() ? nullptr : *found;
}

}  // namespace brimley::desktop
