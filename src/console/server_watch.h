// What the console says of the connection to a server, one line each on standard error, and how Ctrl+C ends
// the wait for an answer.
#pragma once

#include <string>

#include "kernel/store/database.h"

namespace brimley::console {

class ServerWatch final : public store::ConnectionWatch {
  public:
    explicit ServerWatch(std::string program) : program_(std::move(program)) {}

    void connection_lost() override;
    void connection_back(const std::string& reading_only_because) override;
    [[nodiscard]] bool go_on_waiting(std::chrono::milliseconds so_far) override;

  private:
    void tell(const std::string& text) const;

    std::string program_;
};

}  // namespace brimley::console
