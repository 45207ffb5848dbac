#include "company/typed_secret.h"

#include <fmt/format.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <stdexcept>

#include "kernel/visible_text.h"

namespace brimley::company {

namespace {

constexpr char kInterrupt = 3;  // Ctrl+C

// The terminal as it was comes back at the end. Ctrl+C is a letter meanwhile, since a program that a signal
// ends would leave the terminal without its echo.
class WithoutEcho {
  public:
    WithoutEcho() {
        is_terminal_ = ::tcgetattr(STDIN_FILENO, &before_) == 0;
        if (!is_terminal_) return;
        termios silent = before_;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO | ISIG);
        silent.c_cc[VEOL] = kInterrupt;
        ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
    }
    ~WithoutEcho() {
        if (is_terminal_) ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &before_);
    }
    WithoutEcho(const WithoutEcho&) = delete;
    WithoutEcho& operator=(const WithoutEcho&) = delete;

  private:
    termios before_{};
    bool is_terminal_ = false;
};

constexpr std::size_t kLettersMax = 1024;

// Byte by byte: what a stream has read ahead would stay in its buffer.
Secret read_line() {
    std::string line;
    line.reserve(kLettersMax);  // it never moves, and leaves no copy behind
    for (char letter = 0; line.size() < kLettersMax;) {
        const ssize_t got = ::read(STDIN_FILENO, &letter, 1);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0 && line.empty()) throw std::runtime_error("a password is missing");
        if (got <= 0 || letter == '\n') return Secret(std::move(line));
        line += letter;
        if (letter == kInterrupt) return Secret(std::move(line));
    }
    Secret too_long(std::move(line));
    throw std::runtime_error("a password of more than a thousand letters");
}

}  // namespace

bool somebody_types() { return ::isatty(STDIN_FILENO) != 0; }

Secret typed_secret(const std::string& prompt) {
    if (!somebody_types()) return read_line();
    Secret secret;
    {
        const WithoutEcho quiet;
        fmt::print(stderr, "{}", kernel::visible_text(prompt));
        secret = read_line();
        fmt::print(stderr, "\n");
    }
    if (secret.text().ends_with(kInterrupt)) {
        (void)std::raise(SIGINT);
        throw std::runtime_error("interrupted");
    }
    return secret;
}

}  // namespace brimley::company
