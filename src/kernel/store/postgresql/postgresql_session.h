// A connection that speaks in pipelines: statements are sent as they come and answered together.
//
// send() waits for nothing. finish() waits for everything that was sent, and throws the first failure among
// it; the server has run nothing of what came after that. Statements are prepared on the way, when they are
// sent first.
//
//   send(BEGIN), send(INSERT), send(INSERT), send(SELECT), finish()   one round trip
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "kernel/store/engine.h"
#include "kernel/store/error.h"
#include "kernel/store/postgresql/postgresql_handle.h"
#include "kernel/store/postgresql/postgresql_values.h"
#include "kernel/store/postgresql/postgresql_wait.h"

namespace brimley::store {

// Names of prepared statements that nobody uses any more, for the session to forget; and how many
// connections it has had before, whose names are forgotten with them.
struct ForgottenNames {
    std::vector<std::string> names;
    int connection = 0;
};

class PostgresqlStatement final : public EngineStatement {
  public:
    PostgresqlStatement(StatementText text, std::shared_ptr<ForgottenNames> forgotten);
    ~PostgresqlStatement() override;
    PostgresqlStatement(const PostgresqlStatement&) = delete;
    PostgresqlStatement& operator=(const PostgresqlStatement&) = delete;

    [[nodiscard]] const StatementText& text() const { return text_; }
    // The server's name for it; empty until it is prepared. No two statements share one.
    [[nodiscard]] const std::shared_ptr<std::string>& name() const { return name_; }

  private:
    friend class PostgresqlSession;
    StatementText text_;
    std::vector<Oid> types_;
    int prepared_on_ = 0;  // which of the session's connections
    // Shared with the session while that waits.
    std::shared_ptr<std::string> name_ = std::make_shared<std::string>();
    std::shared_ptr<ForgottenNames> forgotten_;
};

// Where the answer to a statement will be. Holds none before it has come, and when the statement has failed.
using LaterAnswer = std::shared_ptr<PostgresqlResult>;

class PostgresqlSession {
  public:
    // Takes over a connection that is set up, and may be within a transaction.
    explicit PostgresqlSession(PostgresqlHandle connection);
    // Takes over another one in place of the one that was lost. Statements are prepared there when they are
    // sent next.
    void renew(PostgresqlHandle connection);
    void watch(ConnectionWatch* watch) { wait_.watch(watch); }

    [[nodiscard]] std::unique_ptr<PostgresqlStatement> prepare(StatementText text) const;

    // Without parameters and rows.
    [[nodiscard]] std::unique_ptr<PostgresqlStatement> command(std::string_view sql) const;

    // Where the answer to a statement stands among those due.
    using Place = std::size_t;
    // Throws ErrorKind::lost, and ErrorKind::conversion for a value that cannot be sent; then nothing is.
    Place send(PostgresqlStatement& statement, std::span<const Parameter> parameters = {});
    // As send(); whichever finish() gets the answer puts it there.
    [[nodiscard]] LaterAnswer send_ahead(PostgresqlStatement& statement,
                                         std::span<const Parameter> parameters);
    // The answer wanted; without a place the last one.
    PostgresqlResult finish();
    PostgresqlResult finish(Place wanted);
    // The same, when what was sent last is a commit.
    PostgresqlResult finish_commit();
    // How many answers are due.
    [[nodiscard]] std::size_t unanswered() const { return sent_.size(); }

    // As of the last finish():
    [[nodiscard]] bool is_idle() const { return status_ == PQTRANS_IDLE; }
    [[nodiscard]] bool has_failed_transaction() const { return status_ == PQTRANS_INERROR; }
    [[nodiscard]] bool is_lost() const { return PQstatus(connection_.get()) == CONNECTION_BAD; }
    // As the server knows it.
    [[nodiscard]] std::string user() const { return PQuser(connection_.get()); }
    // The server is a standby, or set so, as far as it has told.
    [[nodiscard]] bool takes_no_changes() const;
    // Looks, without waiting, whether the server has closed the connection.
    [[nodiscard]] bool is_broken();

  private:
    struct Sent {
        // Of a statement being prepared: to be emptied when that fails.
        std::shared_ptr<std::string> prepared_name;
        bool must_meet_a_row = false;
        LaterAnswer later{};
    };

    void send_preparation(PostgresqlStatement& statement);
    void forget_names();
    void require_sent(int sent);
    [[nodiscard]] bool is_prepared(const PostgresqlStatement& statement) const {
        return !statement.name_->empty() && statement.prepared_on_ == forgotten_->connection;
    }
    PostgresqlResult all_answers(Place wanted);
    [[nodiscard]] PostgresqlResult next_result();
    [[nodiscard]] Error loss() const;
    // The answer to one statement. failure: the first one so far, put in here.
    PostgresqlResult answer(const Sent& sent, std::unique_ptr<Error>& failure);

    PostgresqlHandle connection_;
    std::vector<Sent> sent_;
    std::shared_ptr<ForgottenNames> forgotten_ = std::make_shared<ForgottenNames>();
    std::int64_t names_given_ = 0;
    PGTransactionStatusType status_;
    PostgresqlWait wait_;
};

}  // namespace brimley::store
