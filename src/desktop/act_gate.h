// Every act of a user goes from a widget to its model through here.
//
// Widgets never look at what an act did: the model reports what changed. What was refused is kept for whoever
// wants to know (a test, a script), and a failure that a handler throws stops here, because exceptions must
// not travel through the toolkit's event loop.
#pragma once

#include <exception>
#include <functional>

#include "controls/control.h"

namespace brimley::desktop {

class ActGate {
  public:
    using Act = std::function<controls::Refusal()>;

    // Runs the act. True when the model did not refuse it and nothing was thrown. A closed gate runs nothing.
    bool run(const Act& act);
    // Acts come from inside acts, while a box is open or the host answers a request.
    [[nodiscard]] bool is_running() const { return depth_ > 0; }
    // Of several gates that are running the one that began last has the highest.
    [[nodiscard]] int order_of_begin() const { return order_; }
    void close() { closed_ = true; }

    // What became of the acts since `reset`: the first refusal, and the first failure.
    void reset();
    [[nodiscard]] controls::Refusal refusal() const { return refusal_; }
    [[nodiscard]] std::exception_ptr failure() const { return failure_; }

    // Called before an outermost act.
    std::function<void()> on_begin;
    // Called after each act, refused or not.
    std::function<void()> on_acted;
    // Called when the outermost act has ended.
    std::function<void()> on_idle;
    // Called with what a handler threw.
    std::function<void(const std::exception_ptr&)> on_failure;

  private:
    controls::Refusal refusal_ = controls::Refusal::none;
    std::exception_ptr failure_;
    int depth_ = 0;
    int order_ = 0;
    bool closed_ = false;
};

// What is wrong, in the words of the exception.
[[nodiscard]] std::string failure_text(const std::exception_ptr& failure);

}  // namespace brimley::desktop
