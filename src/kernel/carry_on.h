// "Carry on at the next statement", for the routines that run with errors ignored, and why something was not
// done.
//
// One call per statement: carry_on(reasons, "fill cmbterm", [&] { ... }). It catches failures of the store
// and of conversions and notes them; mistakes of our own (std::logic_error) and std::bad_alloc go through.
#pragma once

#include <algorithm>
#include <cstdint>
#include <deque>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace brimley::kernel {

// A step that has failed, and what the store said; or, without a step, a sentence about what was refused.
struct Reason {
    std::string step;
    std::string said;
    friend bool operator==(const Reason&, const Reason&) = default;
};

// As a person reads it.
[[nodiscard]] inline std::string told(const Reason& reason) {
    return reason.step.empty() ? reason.said : reason.step + ": " + reason.said;
}

// Why things were not done: failures that were ignored, and refusals. The last ones, oldest first.
class Reasons {
  public:
    void failed(const std::string& step, const std::string& failure) {
        add({step, failure});
        last_failure_ = failure;
        ++failures_;
    }
    void refused(const std::string& why) { add({{}, why}); }

    // How many failures there have been, without refusals, and the message of the last one.
    [[nodiscard]] std::int64_t failures() const { return failures_; }
    [[nodiscard]] const std::string& last_failure() const { return last_failure_; }

    // How many reasons there have been of either kind, and those since there were so many.
    [[nodiscard]] std::int64_t count() const { return count_; }
    [[nodiscard]] std::vector<Reason> since(std::int64_t count) const {
        const auto kept = static_cast<std::int64_t>(kept_.size());
        const std::int64_t wanted = std::clamp<std::int64_t>(count_ - count, 0, kept);
        return {kept_.end() - wanted, kept_.end()};
    }

  private:
    void add(Reason reason) {
        if (kept_.size() == kMost) kept_.pop_front();
        kept_.push_back(std::move(reason));
        ++count_;
    }

    static constexpr std::size_t kMost = 50;
    std::deque<Reason> kept_;
    std::int64_t count_ = 0;
    std::int64_t failures_ = 0;
    std::string last_failure_;
};

// True when the step ran to its end.
template <class Step>
bool carry_on(Reasons& reasons, const char* name, Step&& step) {
    try {
        std::forward<Step>(step)();
        return true;
    } catch (const std::runtime_error& failure) {
        reasons.failed(name, failure.what());
        return false;
    }
}

}  // namespace brimley::kernel
