#include "console/interrupt.h"

namespace brimley::console {

namespace {

volatile std::sig_atomic_t interrupted = 0;

void note_interrupt(int) { interrupted = 1; }

}  // namespace

// Whoever started the program may have told it to ignore the signal; then it stays so.
Interrupt::Interrupt() {
    interrupted = 0;
    sigaction(SIGINT, nullptr, &before_);
    if (before_.sa_handler == SIG_IGN) return;
    struct sigaction action {};
    action.sa_handler = note_interrupt;
    // The next one finds the usual end of a program.
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigaction(SIGINT, &action, nullptr);
}

Interrupt::~Interrupt() {
    sigaction(SIGINT, &before_, nullptr);
    if (interrupted != 0) std::raise(SIGINT);
}

bool Interrupt::take() {
    if (interrupted == 0) return false;
    interrupted = 0;
    return true;
}

}  // namespace brimley::console
