// A desk on which nobody watches: messages are kept, questions are answered with no, the clock stands still.
#pragma once

#include <string>
#include <vector>

#include "frame/desk.h"
#include "frame/form.h"

namespace brimley::bench {

class QuietDesk : public frame::Desk {
  public:
    void message(const std::string& text) override { messages.push_back(text); }
    [[nodiscard]] bool question(const std::string&, const std::string&) override { return false; }
    [[nodiscard]] store::DateTime now() override { return clock; }
    void wait(std::chrono::milliseconds) override {}
    void pump() override {}
    [[nodiscard]] std::string computer_name() override { return "BENCH"; }
    [[nodiscard]] std::vector<std::string> font_families() override { return {}; }
    void form_shown(std::shared_ptr<frame::Form> form) override { shown = std::move(form); }
    void child_shown(frame::Form&, std::shared_ptr<frame::Form>) override {}
    void form_raised(frame::Form&) override {}
    void form_closed(frame::Form&) override { shown.reset(); }
    [[nodiscard]] bool folder_exists(const std::string&) override { return true; }
    bool make_folder(const std::string&) override { return false; }

    std::vector<std::string> messages;
    std::shared_ptr<frame::Form> shown;
    store::DateTime clock = store::DateTime::from_ymd(2026, 3, 16).value();
};

}  // namespace brimley::bench
