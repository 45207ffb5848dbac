// A program that runs beside this one in a process group of its own: what it prints, line by line, both
// outputs in one, and how it ended. Dies with this one.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace brimley::testing {

class WatchedChild {
  public:
    // Throws std::system_error when it cannot be started.
    explicit WatchedChild(const std::vector<std::string>& command);
    // Kills it, and whatever it has started, when it is still running.
    ~WatchedChild();
    WatchedChild(const WatchedChild&) = delete;
    WatchedChild& operator=(const WatchedChild&) = delete;

    // The next line without its end, waited for so long at most; nothing when the program has ended or the
    // time is over.
    [[nodiscard]] std::optional<std::string> next_line(std::chrono::milliseconds wait_ms_max);
    [[nodiscard]] bool ended() const { return status_.has_value(); }
    // After its end: "status 3" or "signal 11 (Segmentation fault)".
    [[nodiscard]] std::string how_it_ended() const;

  private:
    [[nodiscard]] std::optional<std::string> take_line();
    void read_some();
    void note_end();

    pid_t process_ = -1;
    int process_handle_ = -1;
    int output_ = -1;
    std::string unread_;
    std::optional<int> status_;
};

}  // namespace brimley::testing
