// The world outside as the desktop gives it to the forms: boxes, clock, fonts, and a window for each form.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "entries/replay.h"
#include "frame/desk.h"

class QMessageBox;
class QWidget;

namespace brimley::desktop {

class FormWindow;

class DesktopDesk : public frame::Desk {
  public:
    DesktopDesk();
    ~DesktopDesk() override;

    void message(const std::string& text) override;
    void failure(const std::string& text, const std::vector<kernel::Reason>& why) override;
    [[nodiscard]] bool question(const std::string& text, const std::string& title) override;
    [[nodiscard]] store::DateTime now() override;
    void wait(std::chrono::milliseconds duration) override;
    void pump() override;
    [[nodiscard]] std::string computer_name() override;
    [[nodiscard]] std::vector<std::string> font_families() override;
    void form_shown(std::shared_ptr<frame::Form> form) override;
    void child_shown(frame::Form& owner, std::shared_ptr<frame::Form> child) override;
    void form_raised(frame::Form& form) override;
    void form_closed(frame::Form& form) override;
    [[nodiscard]] bool folder_exists(const std::string& path) override;
    bool make_folder(const std::string& path) override;

    // The window of an open form; null when it has none.
    [[nodiscard]] FormWindow* window_of(const frame::Form& form) const;
    // Oldest first, those in a pane of another too.
    [[nodiscard]] const std::vector<FormWindow*>& windows() const { return windows_; }

    // Where a new window goes and how it comes to the front; by itself it is a window of the desktop.
    std::function<void(FormWindow&)> place;
    std::function<void(FormWindow&)> raise;
    // The window is about to go; it deletes itself.
    std::function<void(FormWindow&)> take_away;
    // The user's clock; the machine's, unless somebody else gives one.
    std::function<store::DateTime()> clock;
    // Called while a box is open, once, in place of the person who would answer it.
    std::function<void(QMessageBox&)> on_box;
    // Called with the last reason why an act was not stored, before the box opens; empty, before any other
    // message: it is over.
    std::function<void(const QString& reason)> on_failure;
    // Called with each answer of the user, or of who stands in: an entry that is taken up is kept once more.
    std::function<void(bool yes)> on_answer;
    // Answers in place of the user from now on, who sees no messages then, and gives the time; null: the user
    // again.
    void stand_in(entries::StandIn* stand_in) { stand_in_ = stand_in; }
    // Opens a box of the host's own; returns when it was closed.
    int show_box(QMessageBox& box);
    // The clock and the desk that the windows' fields ask, when a script stands between forms and windows.
    void act_for(frame::Desk& desk) { asked_ = &desk; }

  private:
    [[nodiscard]] bool user_says_yes(const std::string& text, const std::string& title);
    // Lets the window whose act this is know what a box says.
    void tell_window(const std::string& text) const;

    std::vector<FormWindow*> windows_;
    frame::Desk* asked_ = this;
    entries::StandIn* stand_in_ = nullptr;
};

}  // namespace brimley::desktop
