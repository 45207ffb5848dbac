// The world outside of kernel and forms: message boxes, clock, machine. Desktop, console and tests each hand
// in their own.
//
// Nothing below the hosts may ask the operating system for any of these itself: a stopped clock must stop
// everything, and a test must see every message.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "kernel/store/value.h"

namespace brimley::kernel {

class Outside {
  public:
    virtual ~Outside() = default;

    // A message box with an OK button and no title. Returns when it was closed.
    virtual void message(const std::string& text) = 0;
    // A box with Yes and No. True for Yes.
    [[nodiscard]] virtual bool question(const std::string& text, const std::string& title) = 0;
    [[nodiscard]] virtual store::DateTime now() = 0;
    // Returns after this time by the clock of now(); a stopped clock lets no time pass, so the wait is over
    // at once.
    virtual void wait(std::chrono::milliseconds duration) = 0;
    // Lets the host handle what is waiting for it (DoEvents). May call back into any form.
    virtual void pump() = 0;
    // The name of this machine, at most 512 characters; empty when the system does not know it.
    [[nodiscard]] virtual std::string computer_name() = 0;
    [[nodiscard]] virtual std::vector<std::string> font_families() = 0;
};

// The wait between two tries for a row that another user holds: 5e-06 of a day.
inline constexpr std::chrono::milliseconds kLockRetryWait{432};

}  // namespace brimley::kernel
