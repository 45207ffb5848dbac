// The world outside, as tests give it: what is told and asked is kept, answers are scripted, the clock stands
// still and waiting costs nothing.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "kernel/outside.h"

namespace brimley::testing {

// World: kernel::Outside, or an interface derived from it, whose further functions the test gives itself.
template <class World>
class Recording : public World {
  public:
    void message(const std::string& text) override {
        if (answer_instead) return;
        messages.push_back(text);
        pumps_before_message = pumps;
    }
    // A question without a scripted answer fails the test and is answered by No.
    bool question(const std::string& text, const std::string& /*title*/) override {
        questions.push_back(text);
        if (answer_instead) return answer_instead();
        if (answers.empty()) {
            ADD_FAILURE() << "a question without an answer: " << text;
            return false;
        }
        const bool answer = answers.front();
        answers.pop_front();
        if (on_answer) on_answer(answer);
        return answer;
    }
    store::DateTime now() override { return now_instead ? now_instead() : clock; }
    void wait(std::chrono::milliseconds duration) override {
        waits.push_back(duration);
        if (on_wait) on_wait(static_cast<int>(waits.size()));
    }
    void pump() override {
        ++pumps;
        if (on_pump) on_pump();
    }
    std::string computer_name() override { return computer; }
    std::vector<std::string> font_families() override { return {"Arial", "Courier"}; }

    // The messages so far, which are forgotten then.
    [[nodiscard]] std::vector<std::string> take_messages() { return std::exchange(messages, {}); }

    std::vector<std::string> messages;
    std::vector<std::string> questions;
    std::deque<bool> answers;
    std::vector<std::chrono::milliseconds> waits;
    int pumps = 0;
    int pumps_before_message = 0;
    store::DateTime clock = store::DateTime::from_iso("2026-03-16 09:30:00").value();
    std::string computer = "DESK-7";
    // Called in each wait with its number, from 1; lets another user act meanwhile.
    std::function<void(int)> on_wait;
    std::function<void()> on_pump;
    std::function<void(bool yes)> on_answer;
    // In place of the user, who sees no messages then, and of the clock.
    std::function<bool()> answer_instead;
    std::function<store::DateTime()> now_instead;
};

using RecordingOutside = Recording<kernel::Outside>;

}  // namespace brimley::testing
