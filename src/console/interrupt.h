// Ctrl+C while a command runs: it ends the wait for a server, not the program.
#pragma once

#include <csignal>

namespace brimley::console {

// Takes the signal during its life. The first one is remembered for the wait; a second one ends the program,
// and so does one that nothing has waited for, at the end.
class Interrupt {
  public:
    Interrupt();
    ~Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;

    // Whether one has come since; it is used up then.
    [[nodiscard]] static bool take();

  private:
    struct sigaction before_ {};
};

}  // namespace brimley::console
