#include "kernel/store/postgresql/postgresql_wait.h"

#include <fmt/format.h>
#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <memory>
#include <utility>

namespace brimley::store {

namespace {

using std::chrono::duration_cast;
using std::chrono::milliseconds;

constexpr int kLookMilliseconds = 100;
// An answer to a cancel must come within this time.
constexpr std::chrono::seconds kCancelMax{10};

bool comes_within(PGconn* connection, int wait_ms) {
    pollfd waiting{PQsocket(connection), POLLIN, 0};
    return ::poll(&waiting, 1, wait_ms) != 0;
}

}  // namespace

bool PostgresqlWait::has_input(PGconn* connection) { return comes_within(connection, 0); }

void PostgresqlWait::begin(bool committing) {
    committing_ = committing;
    cancelled_ = false;
    reason_.clear();
    begun_ = Clock::now();
}

void PostgresqlWait::until_answered(PGconn* connection) {
    wait_on(connection);
    if (std::exchange(has_asked_, false) && watch_ != nullptr) watch_->wait_is_over();
}

void PostgresqlWait::wait_on(PGconn* connection) {
    while (PQstatus(connection) == CONNECTION_OK && PQisBusy(connection) != 0) {
        if (!comes_within(connection, kLookMilliseconds))
            look(connection);
        else if (PQconsumeInput(connection) == 0)
            return;
    }
}

bool PostgresqlWait::is_to_go_on(milliseconds so_far) {
    if (watch_ == nullptr) {
        ConnectionWatch usual;
        return so_far < (committing_ ? usual.commit_wait_max() : usual.statement_wait_max());
    }
    if (so_far >= (committing_ ? watch_->commit_wait_max() : watch_->statement_wait_max())) return false;
    asking_ = true;
    has_asked_ = true;
    const bool go_on = watch_->go_on_waiting(so_far);
    asking_ = false;
    return go_on;
}

void PostgresqlWait::look(PGconn* connection) {
    const auto now = Clock::now();
    if (cancelled_) {
        if (now - cancelled_at_ > kCancelMax) give_up(connection, "the server does not answer");
        return;
    }
    const auto so_far = duration_cast<milliseconds>(now - begun_);
    if (is_to_go_on(so_far)) return;
    if (!committing_) return cancel(connection);
    give_up(connection, fmt::format("the server had not confirmed the save after {:.1f} s",
                                    static_cast<double>(so_far.count()) / 1000));
}

void PostgresqlWait::cancel(PGconn* connection) {
    cancelled_ = true;
    cancelled_at_ = Clock::now();
    const std::unique_ptr<PGcancel, decltype(&PQfreeCancel)> request(PQgetCancel(connection), &PQfreeCancel);
    std::array<char, 256> fault{};
    if (request && PQcancel(request.get(), fault.data(), static_cast<int>(fault.size())) == 1) return;
    give_up(connection, "the server does not answer");
}

// libpq then finds the connection broken, as it would without us.
void PostgresqlWait::give_up(PGconn* connection, std::string reason) {
    reason_ = std::move(reason);
    (void)::shutdown(PQsocket(connection), SHUT_RDWR);
}

}  // namespace brimley::store
