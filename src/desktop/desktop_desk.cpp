#include "desktop/desktop_desk.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QFontDatabase>
#include <QMessageBox>
#include <QThread>
#include <QTimer>
#include <algorithm>

#include "company/signature.h"
#include "desktop/form_window.h"
#include "frame/form.h"
#include "opening/this_machine.h"

namespace brimley::desktop {

namespace {

constexpr qint64 kSlice = 20;  // milliseconds between two looks at what there is to paint

}  // namespace

DesktopDesk::DesktopDesk() : clock(company::local_now) {}

DesktopDesk::~DesktopDesk() {
    // A child, which came later than its owner, goes before it.
    while (!windows_.empty()) {
        FormWindow* const newest = windows_.back();
        windows_.pop_back();
        delete newest;
    }
}

int DesktopDesk::show_box(QMessageBox& box) {
    box.setTextFormat(Qt::PlainText);
    box.setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                       Qt::WindowCloseButtonHint);
    // An empty title would be filled with the program's name.
    if (box.windowTitle().isEmpty()) box.setWindowTitle(" ");
    if (on_box) QTimer::singleShot(0, &box, [&] { on_box(box); });
    return box.exec();
}

void DesktopDesk::tell_window(const std::string& text) const {
    FormWindow* acting = nullptr;
    for (FormWindow* const window : windows_)
        if (window->gate().is_running() &&
            (acting == nullptr || window->gate().order_of_begin() > acting->gate().order_of_begin()))
            acting = window;
    if (acting != nullptr) acting->note_message(text);
}

void DesktopDesk::message(const std::string& text) {
    if (stand_in_ != nullptr) return;
    if (on_failure) on_failure({});
    tell_window(text);
    QMessageBox box(QMessageBox::NoIcon, {}, shown(text), QMessageBox::Ok, QApplication::activeWindow());
    show_box(box);
}

// The reasons stand behind the button of the details: they are for whoever wants to know more.
void DesktopDesk::failure(const std::string& text, const std::vector<kernel::Reason>& why) {
    if (stand_in_ != nullptr) return;
    if (!why.empty() && on_failure) on_failure(shown(why.back().said));
    if (text.empty()) return;
    QMessageBox box(QMessageBox::NoIcon, {}, shown(text), QMessageBox::Ok, QApplication::activeWindow());
    QStringList details;
    for (const kernel::Reason& reason : why)
        details << shown(kernel::told(reason));
    box.setDetailedText(details.join('\n'));
    show_box(box);
}

bool DesktopDesk::question(const std::string& text, const std::string& title) {
    const bool yes = stand_in_ != nullptr ? stand_in_->answer() : user_says_yes(text, title);
    if (on_answer) on_answer(yes);
    return yes;
}

bool DesktopDesk::user_says_yes(const std::string& text, const std::string& title) {
    QMessageBox box(QMessageBox::Question, shown(title), shown(text), QMessageBox::Yes | QMessageBox::No,
                    QApplication::activeWindow());
    // What cannot be undone is not done by a hasty Enter.
    const bool is_grave = text.starts_with("Are you sure");
    box.setDefaultButton(is_grave ? QMessageBox::No : QMessageBox::Yes);
    return show_box(box) == QMessageBox::Yes;
}

store::DateTime DesktopDesk::now() { return stand_in_ != nullptr ? stand_in_->now() : clock(); }

// The windows go on being painted, and the pointer shows that the program waits.
void DesktopDesk::wait(std::chrono::milliseconds duration) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
    QDeadlineTimer deadline(duration);
    do {
        pump();
        QThread::msleep(static_cast<unsigned long>(std::clamp<qint64>(deadline.remainingTime(), 0, kSlice)));
    } while (!deadline.hasExpired());
    QApplication::restoreOverrideCursor();
}

// Not the user's keys and clicks: a form in the middle of a command must not get another one.
void DesktopDesk::pump() { QApplication::processEvents(QEventLoop::ExcludeUserInputEvents); }

std::string DesktopDesk::computer_name() { return company::machine_name(); }

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

void DesktopDesk::child_shown(frame::Form& owner, std::shared_ptr<frame::Form> child) {
    FormWindow* const window_of_owner = window_of(owner);
    if (window_of_owner == nullptr) return;
    auto* const window = new FormWindow(std::move(child), *asked_);
    windows_.push_back(window);
    window_of_owner->add_child(*window);
    window->focus_first_field();
}

bool DesktopDesk::folder_exists(const std::string& path) { return opening::folder_exists(path); }

bool DesktopDesk::make_folder(const std::string& path) { return opening::make_folder(path); }

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
