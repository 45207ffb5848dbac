// "Carry on at the next statement", for the routines that run with errors ignored.
//
// One call a statement: carry_on(log, "fill cmbterm", [&] { ... }). It lets failures of the store and of
// conversions pass and notes them; mistakes of our own (std::logic_error) and std::bad_alloc go through.
#pragma once

#include <deque>
#include <stdexcept>
#include <string>
#include <utility>

namespace brimley::kernel {

// The last failures that were passed over, oldest first.
class PassedOver {
  public:
    void note(std::string step) {
        if (steps_.size() == kMost) steps_.pop_front();
        steps_.push_back(std::move(step));
    }
    [[nodiscard]] const std::deque<std::string>& steps() const { return steps_; }

  private:
    static constexpr std::size_t kMost = 50;
    std::deque<std::string> steps_;
};

// True when the step ran to its end.
template <class Step>
bool carry_on(PassedOver& log, const char* name, Step&& step) {
    try {
        std::forward<Step>(step)();
        return true;
    } catch (const std::runtime_error& failure) {
        log.note(std::string(name) + ": " + failure.what());
        return false;
    }
}

}  // namespace brimley::kernel
