#include "kernel/store/postgresql/postgresql_session.h"

#include <fmt/format.h>

#include <new>
#include <utility>

#include "kernel/store/postgresql/postgresql_error.h"

namespace brimley::store {

namespace {

constexpr int kBinary = 1;

}  // namespace

PostgresqlStatement::PostgresqlStatement(StatementText text, std::shared_ptr<ForgottenNames> forgotten)
    : text_(std::move(text)), types_(parameter_types(text_.parameters)), forgotten_(std::move(forgotten)) {}

PostgresqlStatement::~PostgresqlStatement() {
    if (!name_->empty() && prepared_on_ == forgotten_->connection) forgotten_->names.push_back(*name_);
}

PostgresqlSession::PostgresqlSession(PostgresqlHandle connection)
    : connection_(std::move(connection)), status_(PQtransactionStatus(connection_.get())) {
    if (PQenterPipelineMode(connection_.get()) != 1) throw postgresql_error(connection_.get(), nullptr);
}

void PostgresqlSession::renew(PostgresqlHandle connection) {
    if (PQenterPipelineMode(connection.get()) != 1) throw postgresql_error(connection.get(), nullptr);
    connection_ = std::move(connection);
    sent_.clear();
    forgotten_->names.clear();
    ++forgotten_->connection;
    status_ = PQtransactionStatus(connection_.get());
}

std::unique_ptr<PostgresqlStatement> PostgresqlSession::prepare(StatementText text) const {
    return std::make_unique<PostgresqlStatement>(std::move(text), forgotten_);
}

std::unique_ptr<PostgresqlStatement> PostgresqlSession::command(std::string_view sql) const {
    StatementText text;
    text.sql = sql;
    return prepare(std::move(text));
}

void PostgresqlSession::require_sent(int sent) {
    if (sent == 1) return;
    sent_.clear();
    throw postgresql_error(connection_.get(), nullptr);
}

void PostgresqlSession::send_preparation(PostgresqlStatement& statement) {
    *statement.name_ = fmt::format("s{}", ++names_given_);
    statement.prepared_on_ = forgotten_->connection;
    require_sent(PQsendPrepare(connection_.get(), statement.name_->c_str(), statement.text_.sql.c_str(),
                               static_cast<int>(statement.types_.size()), statement.types_.data()));
    sent_.push_back({statement.name_});
}

void PostgresqlSession::forget_names() {
    for (const std::string& name : forgotten_->names) {
        require_sent(PQsendQueryParams(connection_.get(), ("DEALLOCATE " + name).c_str(), 0, nullptr, nullptr,
                                       nullptr, nullptr, kBinary));
        sent_.push_back({});
    }
    forgotten_->names.clear();
}

PostgresqlSession::Place PostgresqlSession::send(PostgresqlStatement& statement,
                                                 std::span<const Parameter> parameters) {
    const EncodedParameters encoded(statement.text_.parameters, parameters);
    if (wait_.is_asking()) throw Error(ErrorKind::state, "the server has not answered yet");
    if (!forgotten_->names.empty() && !has_failed_transaction()) forget_names();
    if (!is_prepared(statement)) send_preparation(statement);
    require_sent(PQsendQueryPrepared(connection_.get(), statement.name_->c_str(), encoded.count(),
                                     encoded.values(), encoded.lengths(), encoded.formats(), kBinary));
    sent_.push_back({nullptr, statement.text_.effect == StatementEffect::updates_row});
    return sent_.size() - 1;
}

LaterAnswer PostgresqlSession::send_ahead(PostgresqlStatement& statement,
                                          std::span<const Parameter> parameters) {
    const Place place = send(statement, parameters);
    return sent_[place].later = std::make_shared<PostgresqlResult>();
}

PostgresqlResult PostgresqlSession::answer(const Sent& sent, std::unique_ptr<Error>& failure) {
    PostgresqlResult last;
    while (PostgresqlResult result = next_result()) {
        const ExecStatusType status = PQresultStatus(result.get());
        const bool good = status == PGRES_COMMAND_OK || status == PGRES_TUPLES_OK;
        if (!good && sent.prepared_name) sent.prepared_name->clear();
        if (!good && !failure)
            failure = std::make_unique<Error>(postgresql_error(connection_.get(), result.get()));
        if (good && sent.must_meet_a_row && std::string_view(PQcmdTuples(result.get())) == "0" && !failure)
            failure = std::make_unique<Error>(ErrorKind::state, "the row to update is gone");
        last = std::move(result);
        if (is_lost()) break;
    }
    return last;
}

PostgresqlResult PostgresqlSession::next_result() {
    wait_.until_answered(connection_.get());
    return PostgresqlResult(PQgetResult(connection_.get()));
}

bool PostgresqlSession::takes_no_changes() const {
    for (const char* const setting : {"in_hot_standby", "default_transaction_read_only"}) {
        const char* const value = PQparameterStatus(connection_.get(), setting);
        if (value && std::string_view(value) == "on") return true;
    }
    return false;
}

// A server that goes down says so first, and closes the connection then.
bool PostgresqlSession::is_broken() {
    while (!is_lost() && PostgresqlWait::has_input(connection_.get())) {
        if (PQconsumeInput(connection_.get()) == 0) return true;
        (void)PQisBusy(connection_.get());
    }
    return is_lost();
}

Error PostgresqlSession::loss() const {
    if (wait_.reason().empty()) return postgresql_error(connection_.get(), nullptr);
    return {ErrorKind::lost, "the connection to the company is gone: " + wait_.reason()};
}

PostgresqlResult PostgresqlSession::finish() { return finish(sent_.size() - 1); }

PostgresqlResult PostgresqlSession::finish(Place wanted) {
    wait_.begin(false);
    return all_answers(wanted);
}

PostgresqlResult PostgresqlSession::finish_commit() {
    wait_.begin(true);
    return all_answers(sent_.size() - 1);
}

PostgresqlResult PostgresqlSession::all_answers(Place wanted) {
    require_sent(PQpipelineSync(connection_.get()));
    const std::vector<Sent> sent = std::exchange(sent_, {});
    std::unique_ptr<Error> failure;
    PostgresqlResult result;
    for (std::size_t i = 0; i < sent.size() && !is_lost(); ++i) {
        PostgresqlResult each = answer(sent[i], failure);
        if (sent[i].later && PQresultStatus(each.get()) == PGRES_TUPLES_OK)
            *sent[i].later = std::move(each);
        else if (i == wanted)
            result = std::move(each);
    }
    // What follows the last answer is the mark of the end.
    const PostgresqlResult end = is_lost() ? nullptr : next_result();
    status_ = PQtransactionStatus(connection_.get());
    if (is_lost() && (!failure || failure->kind() != ErrorKind::lost || !wait_.reason().empty()))
        throw loss();
    if (failure) throw *failure;
    return result;
}

}  // namespace brimley::store
