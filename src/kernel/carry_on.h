// "Carry on at the next statement", for the routines that run with errors ignored.
//
// One call per statement: carry_on(log, "fill cmbterm", [&] { ... }). It catches failures of the store and of
// conversions and notes them; mistakes of our own (std::logic_error) and std::bad_alloc go through.
#pragma once

#include <cstdint>
#include <deque>
#include <stdexcept>
#include <string>
#include <utility>

namespace brimley::kernel {

// The last failures that were ignored, oldest first.
class IgnoredFailures {
  public:
    void note(const std::string& step, std::string failure) {
        if (steps_.size() == kMost) steps_.pop_front();
        steps_.push_back(step + ": " + failure);
        last_failure_ = std::move(failure);
        ++count_;
    }
    [[nodiscard]] const std::deque<std::string>& steps() const { return steps_; }
    // How many there have been, and the message of the last one.
    [[nodiscard]] std::int64_t count() const { return count_; }
    [[nodiscard]] const std::string& last_failure() const { return last_failure_; }

  private:
    static constexpr std::size_t kMost = 50;
    std::deque<std::string> steps_;
    std::int64_t count_ = 0;
    std::string last_failure_;
};

// True when the step ran to its end.
template <class Step>
bool carry_on(IgnoredFailures& log, const char* name, Step&& step) {
    try {
        std::forward<Step>(step)();
        return true;
    } catch (const std::runtime_error& failure) {
        log.note(name, failure.what());
        return false;
    }
}

}  // namespace brimley::kernel
