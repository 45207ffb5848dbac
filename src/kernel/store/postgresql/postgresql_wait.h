// Waiting for an answer of the server, so that the host stays alive and can end it.
#pragma once

#include <libpq-fe.h>

#include <chrono>
#include <string>

#include "kernel/store/connection_watch.h"

namespace brimley::store {

class PostgresqlWait {
  public:
    // Null: nobody is asked. The watch must outlive it or the next call of this.
    void watch(ConnectionWatch* watch) { watch_ = watch; }
    // What follows is a commit, until the next begin().
    void begin(bool committing);
    // Returns when the connection has its next result, or is broken. A wait that is given up ends a statement
    // by a cancel, and breaks the connection for a commit, and when the cancel has no answer either.
    void until_answered(PGconn* connection);
    // Whether something has come, or the connection was closed.
    [[nodiscard]] static bool has_input(PGconn* connection);
    // Why the connection was broken here; empty: it was not.
    [[nodiscard]] const std::string& reason() const { return reason_; }
    // Whether the host is being asked just now.
    [[nodiscard]] bool is_asking() const { return asking_; }

  private:
    using Clock = std::chrono::steady_clock;

    void wait_on(PGconn* connection);
    [[nodiscard]] bool is_to_go_on(std::chrono::milliseconds so_far);
    void look(PGconn* connection);
    void cancel(PGconn* connection);
    void give_up(PGconn* connection, std::string reason);

    ConnectionWatch* watch_ = nullptr;
    bool committing_ = false;
    bool asking_ = false;
    bool has_asked_ = false;
    Clock::time_point begun_{};
    bool cancelled_ = false;
    Clock::time_point cancelled_at_{};
    std::string reason_;
};

}  // namespace brimley::store
