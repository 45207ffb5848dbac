// A program that runs beside this one, and what it has printed.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace brimley::testing {

class Child {
  public:
    // Starts the program; throws std::runtime_error when it cannot.
    explicit Child(const std::vector<std::string>& command);
    // Kills it when it is still running.
    ~Child();
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    void kill();
    // Waits for its end and returns the whole lines that it has printed.
    [[nodiscard]] std::vector<std::string> lines();
    // After lines(): whether it ended by itself, and well.
    [[nodiscard]] bool ended_well() const { return status_ == 0; }
    // After lines(): with what it ended by itself; nothing when it was killed.
    [[nodiscard]] std::optional<int> status() const { return status_; }
    // After lines(): what it has cost.
    [[nodiscard]] std::chrono::milliseconds cpu_time() const { return cpu_time_; }

  private:
    pid_t process_ = -1;
    int output_ = -1;
    std::optional<int> status_;
    std::chrono::milliseconds cpu_time_{0};
};

}  // namespace brimley::testing
