// A server that takes connections and never says a word: who opens a company on it waits, and can be looked
// at meanwhile.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

namespace brimley::testing {

class SilentServer {
  public:
    SilentServer() : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        address_.sin_family = AF_INET;
        address_.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address_;
        if (::bind(socket_, as_address(), size) != 0 || ::listen(socket_, 4) != 0 ||
            ::getsockname(socket_, as_address(), &size) != 0)
            throw std::runtime_error("no socket to listen on");
    }
    ~SilentServer() { ::close(socket_); }
    SilentServer(const SilentServer&) = delete;
    SilentServer& operator=(const SilentServer&) = delete;

    [[nodiscard]] std::string place() const {
        return "127.0.0.1:" + std::to_string(ntohs(address_.sin_port));
    }
    // Whether somebody has knocked within this time.
    [[nodiscard]] bool has_visitor(int milliseconds) const {
        pollfd waiting{socket_, POLLIN, 0};
        return ::poll(&waiting, 1, milliseconds) == 1;
    }

  private:
    [[nodiscard]] sockaddr* as_address() { return reinterpret_cast<sockaddr*>(&address_); }

    int socket_;
    sockaddr_in address_{};
};

// The arguments of a program, as every user of the machine can read them, while it waits for the server;
// each ended by a character with the code zero. Ends the program afterwards.
inline std::string arguments_seen(const SilentServer& server, std::vector<std::string> words) {
    constexpr int kStartMax = 20000;
    std::vector<char*> pointers;
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    pid_t process = 0;
    if (::posix_spawn(&process, pointers[0], nullptr, nullptr, pointers.data(), environ) != 0)
        throw std::runtime_error(words[0] + " cannot be started");
    std::string seen;
    if (server.has_visitor(kStartMax)) {
        std::ifstream file("/proc/" + std::to_string(process) + "/cmdline", std::ios::binary);
        seen.assign(std::istreambuf_iterator<char>(file), {});
    }
    ::kill(process, SIGKILL);
    ::waitpid(process, nullptr, 0);
    return seen;
}

}  // namespace brimley::testing
