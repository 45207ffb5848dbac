// The world outside as the console gives it to the forms: messages and questions are printed and kept,
// answers come from a queue, the clock can be stopped.
#pragma once

#include <deque>
#include <functional>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "frame/desk.h"

namespace brimley::console {

// What has happened and was not yet expected, each kind oldest first.
struct Happenings {
    std::deque<std::string> messages;
    std::deque<std::string> questions;
    std::deque<std::string> refusals;  // names of controls, grids, commands
    std::deque<std::string> closed;    // class names
    struct Notification {
        std::string formx, docnox, arg2;
        [[nodiscard]] std::string line() const { return formx + " | " + docnox + " | " + arg2; }
    };
    std::deque<Notification> notifications;

    [[nodiscard]] bool empty() const {
        return messages.empty() && questions.empty() && refusals.empty() && closed.empty() &&
               notifications.empty();
    }
    void clear() { *this = Happenings{}; }
};

class ConsoleDesk : public frame::Desk {
  public:
    explicit ConsoleDesk(std::ostream& out) : out_(out) {}

    void message(const std::string& text) override;
    void failure(const std::string& text, const std::vector<kernel::Reason>& why) override;
    // Throws ScriptFault when no answer is queued and nobody is there to ask.
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

    void notified(const std::string& formx, const std::string& docnox, const std::string& arg2);
    void refused(const std::string& name, const char* why);
    [[nodiscard]] Happenings& happenings() { return happenings_; }
    // Why the last act that failed was not stored.
    [[nodiscard]] const std::vector<kernel::Reason>& why_failed() const { return why_failed_; }

    std::deque<bool> answers;
    std::optional<store::DateTime> stopped_clock;
    std::optional<std::string> computer;
    // Asked for the answer to a question when none is queued; empty: nobody is there.
    std::function<bool(const std::string& question)> ask_person;
    // Called at each wait for a row that another user holds.
    std::function<void()> on_wait;

    // Boxes and forms also appear on this screen; it is asked each question, and given the answer of the
    // script before, so that it can answer in the script's place.
    void show_on(frame::Desk& screen) { screen_ = &screen; }
    // The answer that the script has for the question that the screen is about to ask.
    [[nodiscard]] bool answer_at_hand() const { return answer_at_hand_; }

    // The form that acts go to; null when there is none.
    [[nodiscard]] frame::Form* current_form() const { return current_.get(); }
    // Makes the newest open form of this class the current one.
    [[nodiscard]] bool make_current(const std::string& class_name);
    // Oldest first.
    [[nodiscard]] const std::vector<std::shared_ptr<frame::Form>>& open_forms() const { return open_forms_; }

  private:
    void tell(const std::string& text);
    [[nodiscard]] bool answer_to(const std::string& shown, const std::string& text);

    std::ostream& out_;
    frame::Desk* screen_ = nullptr;
    bool answer_at_hand_ = false;
    Happenings happenings_;
    std::vector<kernel::Reason> why_failed_;
    std::vector<std::shared_ptr<frame::Form>> open_forms_;  // oldest first
    std::shared_ptr<frame::Form> current_;
};

}  // namespace brimley::console
