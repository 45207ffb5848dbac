#include "child.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <stdexcept>

extern char** environ;

namespace brimley::testing {

namespace {

std::chrono::milliseconds duration_of(const timeval& time) {
    return std::chrono::milliseconds(time.tv_sec * 1000 + time.tv_usec / 1000);
}

}  // namespace

Child::Child(const std::vector<std::string>& command) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    std::vector<char*> words;
    for (const std::string& word : command)
        words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    const int failure = posix_spawn(&process_, words[0], &actions, nullptr, words.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    output_ = ends[0];
    if (failure != 0) {
        close(output_);
        throw std::runtime_error("cannot start " + command.front());
    }
}

Child::~Child() {
    if (process_ > 0) {
        kill();
        waitpid(process_, nullptr, 0);
    }
    if (output_ >= 0) close(output_);
}

void Child::kill() {
    if (process_ > 0) ::kill(process_, SIGKILL);
}

std::vector<std::string> Child::lines() {
    std::string printed;
    std::array<char, 4096> buffer{};
    for (ssize_t size = 0; (size = read(output_, buffer.data(), buffer.size())) > 0;)
        printed.append(buffer.data(), static_cast<std::size_t>(size));
    int status = 0;
    rusage used{};
    wait4(process_, &status, 0, &used);
    process_ = -1;
    cpu_time_ = duration_of(used.ru_utime) + duration_of(used.ru_stime);
    if (WIFEXITED(status)) status_ = WEXITSTATUS(status);
    std::vector<std::string> lines;
    std::size_t begin = 0;
    for (std::size_t end = 0; (end = printed.find('\n', begin)) != std::string::npos; begin = end + 1)
        lines.push_back(printed.substr(begin, end - begin));
    return lines;
}

}  // namespace brimley::testing
