#include "watched_child.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <system_error>

namespace brimley::testing {

namespace {

[[noreturn]] void throw_errno(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

// In the child. Only calls that are safe after a fork.
[[noreturn]] void become(char** words, int output) {
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    dup2(output, STDOUT_FILENO);
    dup2(output, STDERR_FILENO);
    execv(words[0], words);
    _exit(127);
}

}  // namespace

WatchedChild::WatchedChild(const std::vector<std::string>& command) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw_errno("pipe");
    std::vector<char*> words;
    for (const std::string& word : command)
        words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    process_ = fork();
    if (process_ == 0) become(words.data(), ends[1]);
    close(ends[1]);
    output_ = ends[0];
    if (process_ > 0) setpgid(process_, process_);
    if (process_ > 0) process_handle_ = static_cast<int>(syscall(SYS_pidfd_open, process_, 0));
    if (process_ < 0 || process_handle_ < 0) throw_errno(words[0]);
    fcntl(output_, F_SETFL, O_NONBLOCK);
}

WatchedChild::~WatchedChild() {
    if (process_ > 0) {
        // What it has started and left behind goes with it.
        ::kill(-process_, SIGKILL);
        if (!ended()) waitpid(process_, nullptr, 0);
    }
    if (process_handle_ >= 0) close(process_handle_);
    if (output_ >= 0) close(output_);
}

std::optional<std::string> WatchedChild::take_line() {
    const auto end = unread_.find('\n');
    if (end == std::string::npos && !(ended() && !unread_.empty())) return {};
    std::string line = unread_.substr(0, end);
    unread_.erase(0, end == std::string::npos ? end : end + 1);
    return line;
}

void WatchedChild::read_some() {
    std::array<char, 65536> buffer{};
    ssize_t size = 0;
    while ((size = read(output_, buffer.data(), buffer.size())) > 0)
        unread_.append(buffer.data(), static_cast<std::size_t>(size));
    if (size == 0) {  // nobody writes any more
        close(output_);
        output_ = -1;
    }
}

// The pipe may stay open: whoever the program has started can hold it.
void WatchedChild::note_end() {
    int status = 0;
    if (waitpid(process_, &status, WNOHANG) == process_) status_ = status;
}

std::optional<std::string> WatchedChild::next_line(std::chrono::milliseconds wait_ms_max) {
    const auto until = std::chrono::steady_clock::now() + wait_ms_max;
    for (;;) {
        if (auto line = take_line()) return line;
        if (ended()) return {};
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(until - std::chrono::steady_clock::now());
        if (left.count() <= 0) return {};
        std::array<pollfd, 2> watched{{{output_, POLLIN, 0}, {process_handle_, POLLIN, 0}}};
        poll(watched.data(), watched.size(), static_cast<int>(left.count()));
        if (watched[1].revents != 0) note_end();
        read_some();
    }
}

std::string WatchedChild::how_it_ended() const {
    const int status = status_.value_or(0);
    if (WIFSIGNALED(status)) {
        const int signal = WTERMSIG(status);
        return "signal " + std::to_string(signal) + " (" + strsignal(signal) + ")";
    }
    return "status " + std::to_string(WEXITSTATUS(status));
}

}  // namespace brimley::testing
