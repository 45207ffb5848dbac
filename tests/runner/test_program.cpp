#include "test_program.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>
#include <unordered_set>

#include "support/temporary_folder.h"
#include "watched_child.h"

namespace brimley::testing {

namespace {

// A program may take so long for what it does outside of its cases.
constexpr std::chrono::minutes kOutsideMax{5};

constexpr std::string_view kRun = "[ RUN      ] ";
constexpr std::string_view kPassed = "[       OK ] ";
constexpr std::string_view kFailed = "[  FAILED  ] ";
constexpr std::string_view kSkipped = "[  SKIPPED ] ";

// What stands after the marker. A case may have printed something before it without ending the line.
std::optional<std::string> after(const std::string& line, std::string_view marker) {
    const auto at = line.find(marker);
    if (at == std::string::npos) return {};
    return line.substr(at + marker.size());
}

bool names(const std::optional<std::string>& text, const std::string& name) {
    return text && text->starts_with(name) &&
           (text->size() == name.size() ||
            std::string_view(" ,").find((*text)[name.size()]) != std::string_view::npos);
}

// The filter goes through a file: a command line has room for some thousand names only.
std::string filter_file(const TemporaryFolder& folder, const std::vector<std::string>& names) {
    const std::string path = folder.file("flags");
    std::ofstream file(path);
    file << "--gtest_filter=";
    for (const std::string& name : names)
        file << name << ':';
    file << '\n';
    return path;
}

bool any_failed(const std::vector<CaseResult>& results) {
    return std::any_of(results.begin(), results.end(), [](const CaseResult& each) { return !each.passed; });
}

}  // namespace

std::vector<std::string> listed_cases(std::string_view list) {
    std::vector<std::string> names;
    std::string suite;
    while (!list.empty()) {
        const auto end = list.find('\n');
        std::string_view line = list.substr(0, end);
        list.remove_prefix(end == std::string_view::npos ? list.size() : end + 1);
        const bool is_case = line.starts_with("  ");
        line = line.substr(is_case ? 2 : 0, line.find("  #", 2) - (is_case ? 2 : 0));
        if (is_case) {
            names.push_back(suite + std::string(line));
        } else if (line.ends_with('.')) {
            suite = line;
        }
    }
    return names;
}

void CaseReader::read_line(const std::string& line) {
    if (!running_) {
        if (auto name = after(line, kRun)) {
            running_ = CaseResult{*name, false, {}};
            ++steps_;
        } else {
            between_ += line + '\n';
        }
        return;
    }
    running_->output += line + '\n';
    if (names(after(line, kPassed), running_->name)) {
        end(*running_, true);
    } else if (names(after(line, kFailed), running_->name) || names(after(line, kSkipped), running_->name)) {
        end(*running_, false);
    }
}

void CaseReader::end(CaseResult& result, bool passed) {
    result.passed = passed;
    results_.push_back(std::move(result));
    running_.reset();
    between_.clear();
    ++steps_;
}

void CaseReader::fail_running(const std::string& reason) {
    running_->output += reason + '\n';
    end(*running_, false);
}

void CaseReader::fail_ended(const std::string& reason) {
    results_.back().passed = false;
    results_.back().output += between_ + "after this case: " + reason + '\n';
}

void CaseReader::fail(const std::string& name, const std::string& reason) {
    results_.push_back({name, false, between_ + reason + '\n'});
}

std::vector<std::string> TestProgram::cases(const std::string& filter) const {
    WatchedChild list({path_, "--gtest_list_tests", "--gtest_filter=" + filter});
    std::string printed;
    while (const auto line = list.next_line(kOutsideMax))
        printed += *line + '\n';
    if (!list.ended() || list.how_it_ended() != "status 0")
        throw std::runtime_error(path_ + " does not list its cases\n" + printed);
    return listed_cases(printed);
}

std::string TestProgram::watch(WatchedChild& child, CaseReader& reader) const {
    using Clock = std::chrono::steady_clock;
    auto since = Clock::now();
    for (;;) {
        const auto limit = reader.in_a_case() ? std::chrono::milliseconds(limit_) : kOutsideMax;
        const auto spent = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - since);
        const auto line = child.next_line(limit - spent);
        if (!line) break;
        const auto steps = reader.steps();
        reader.read_line(*line);
        if (reader.steps() != steps) since = Clock::now();
    }
    return child.ended() ? child.how_it_ended() : "killed after its time";
}

std::vector<CaseResult> TestProgram::run_once(const std::vector<std::string>& names) const {
    const TemporaryFolder folder;
    WatchedChild child({path_, "--gtest_flagfile=" + filter_file(folder, names), "--gtest_color=no"});
    CaseReader reader;
    const std::string end = watch(child, reader);
    const bool whole = !reader.in_a_case() && reader.results().size() == names.size();
    const bool as_it_should = end == (any_failed(reader.results()) ? "status 1" : "status 0");
    if (reader.in_a_case()) {
        reader.fail_running(end + " within this case");
    } else if (reader.results().empty()) {
        for (const std::string& name : names)
            reader.fail(name, "was not run: " + end);
    } else if (!whole) {
        reader.fail_ended(end);
    } else if (!as_it_should) {
        reader.fail(path_, "after its last case: " + end);
    }
    return reader.results();
}

std::vector<CaseResult> TestProgram::run(std::vector<std::string> names) const {
    std::vector<CaseResult> results;
    while (!names.empty()) {
        std::unordered_set<std::string> known;
        for (CaseResult& result : run_once(names)) {
            known.insert(result.name);
            results.push_back(std::move(result));
        }
        std::erase_if(names, [&](const std::string& name) { return known.contains(name); });
    }
    return results;
}

}  // namespace brimley::testing
