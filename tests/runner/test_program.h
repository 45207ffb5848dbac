// A GoogleTest program run as a child: which cases it has, and what came of each that was run.
//
// A case that crashes or hangs ends its process. It is named, and the others get a process of their own, so
// that no case is lost and none pulls another down.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brimley::testing {

struct CaseResult {
    std::string name;
    bool passed = false;
    std::string output;  // what it has printed, with the reason of a failure
};

// The names in what --gtest_list_tests prints.
[[nodiscard]] std::vector<std::string> listed_cases(std::string_view list);

// Reads what a program prints while it runs its cases.
class CaseReader {
  public:
    void read_line(const std::string& line);
    // The running case, the one that ended last, or one that was never begun has failed.
    void fail_running(const std::string& reason);
    void fail_ended(const std::string& reason);
    void fail(const std::string& name, const std::string& reason);

    [[nodiscard]] bool in_a_case() const { return running_.has_value(); }
    // Grows with each beginning and each end of a case.
    [[nodiscard]] int steps() const { return steps_; }
    [[nodiscard]] const std::vector<CaseResult>& results() const { return results_; }

  private:
    void end(CaseResult& result, bool passed);

    std::optional<CaseResult> running_;
    int steps_ = 0;
    std::string between_;  // printed since the last case
    std::vector<CaseResult> results_;
};

class WatchedChild;

class TestProgram {
  public:
    // A case may take so long and no longer.
    TestProgram(std::string path, std::chrono::seconds limit) : path_(std::move(path)), limit_(limit) {}

    // Throws std::runtime_error when the program cannot be asked.
    [[nodiscard]] std::vector<std::string> cases(const std::string& filter) const;
    // Runs the cases in as few processes as crashes and hangs allow. One result for each, and one
    // more for a program that fails after its last case, as when it has lost memory.
    [[nodiscard]] std::vector<CaseResult> run(std::vector<std::string> names) const;

  private:
    // Reads up to the end of the program or of its time, and returns how it ended.
    [[nodiscard]] std::string watch(WatchedChild& child, CaseReader& reader) const;
    // Runs them up to the first crash or hang. At least one of them has a result then.
    [[nodiscard]] std::vector<CaseResult> run_once(const std::vector<std::string>& names) const;

    std::string path_;
    std::chrono::seconds limit_;
};

}  // namespace brimley::testing
