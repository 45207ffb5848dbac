#include "console/console_desk.h"

#include <algorithm>
#include <ostream>
#include <thread>

#include "company/signature.h"
#include "console/script_line.h"
#include "frame/form.h"
#include "kernel/visible_text.h"
#include "opening/this_machine.h"

namespace brimley::console {

using kernel::visible_text;

void ConsoleDesk::tell(const std::string& text) {
    out_ << "message: " << visible_text(text) << '\n';
    happenings_.messages.push_back(text);
}

void ConsoleDesk::message(const std::string& text) {
    tell(text);
    if (screen_ != nullptr) screen_->message(text);
}

void ConsoleDesk::failure(const std::string& text, const std::vector<kernel::Reason>& why) {
    if (!text.empty()) tell(text);
    why_failed_ = why;
    if (screen_ != nullptr) screen_->failure(text, why);
}

bool ConsoleDesk::answer_to(const std::string& shown, const std::string& text) {
    if (!answers.empty()) {
        const bool answer = answers.front();
        answers.pop_front();
        return answer;
    }
    if (ask_person) return ask_person(shown);
    throw ScriptFault("a question without an answer: " + visible_text(text));
}

bool ConsoleDesk::question(const std::string& text, const std::string& title) {
    const std::string shown =
        visible_text((title.empty() ? "question: " : "question [" + title + "]: ") + text);
    bool answer = answer_to(shown, text);
    if (screen_ != nullptr) {
        answer_at_hand_ = answer;
        answer = screen_->question(text, title);
    }
    out_ << shown << " -> " << (answer ? "yes" : "no") << '\n';
    happenings_.questions.push_back(text);
    return answer;
}

store::DateTime ConsoleDesk::now() {
    if (stopped_clock) return *stopped_clock;
    return company::local_now();
}

void ConsoleDesk::wait(std::chrono::milliseconds duration) {
    if (on_wait) on_wait();
    if (!stopped_clock) std::this_thread::sleep_for(duration);
}

void ConsoleDesk::pump() {
    if (screen_ != nullptr) screen_->pump();
}

std::string ConsoleDesk::computer_name() { return computer ? *computer : company::machine_name(); }

// The same everywhere, so that a script can name one on any machine.
std::vector<std::string> ConsoleDesk::font_families() { return {"Arial", "Courier New", "Times New Roman"}; }

void ConsoleDesk::form_shown(std::shared_ptr<frame::Form> form) {
    open_forms_.push_back(form);
    current_ = form;
    if (screen_ != nullptr) screen_->form_shown(std::move(form));
}

// The form that it belongs to stays the current one.
void ConsoleDesk::child_shown(frame::Form& owner, std::shared_ptr<frame::Form> child) {
    open_forms_.push_back(child);
    if (screen_ != nullptr) screen_->child_shown(owner, std::move(child));
}

bool ConsoleDesk::folder_exists(const std::string& path) { return opening::folder_exists(path); }

bool ConsoleDesk::make_folder(const std::string& path) { return opening::make_folder(path); }

void ConsoleDesk::form_raised(frame::Form& form) {
    current_ = form.shared_from_this();
    if (screen_ != nullptr) screen_->form_raised(form);
}

void ConsoleDesk::form_closed(frame::Form& form) {
    out_ << "form closed: " << form.identity().class_name << '\n';
    happenings_.closed.emplace_back(form.identity().class_name);
    if (screen_ != nullptr) screen_->form_closed(form);
    if (current_.get() == &form) current_.reset();
    std::erase_if(open_forms_, [&](const auto& open) { return open.get() == &form; });
}

bool ConsoleDesk::make_current(const std::string& class_name) {
    const auto newest = std::find_if(open_forms_.rbegin(), open_forms_.rend(), [&](const auto& form) {
        return form->identity().class_name == class_name;
    });
    if (newest == open_forms_.rend()) return false;
    current_ = *newest;
    return true;
}

void ConsoleDesk::notified(const std::string& formx, const std::string& docnox, const std::string& arg2) {
    const Happenings::Notification notification{formx, docnox, arg2};
    out_ << "notify: " << visible_text(notification.line()) << '\n';
    happenings_.notifications.push_back(notification);
}

void ConsoleDesk::refused(const std::string& name, const char* why) {
    out_ << "refused: " << name << " is " << why << '\n';
    happenings_.refusals.push_back(name);
}

}  // namespace brimley::console
