#include "kernel/store/postgresql/postgresql_engine.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <string_view>

#include "kernel/store/error.h"
#include "kernel/store/postgresql/postgresql_flavour.h"
#include "kernel/store/postgresql/postgresql_key_pool.h"
#include "kernel/store/postgresql/postgresql_layout.h"
#include "kernel/store/postgresql/postgresql_prefetch.h"
#include "kernel/store/postgresql/postgresql_prefetched_locks.h"
#include "kernel/store/postgresql/postgresql_rights.h"
#include "kernel/store/postgresql/postgresql_savepoint.h"
#include "kernel/store/postgresql/postgresql_session.h"

namespace brimley::store {

namespace {

// At most this many statements are sent before their answers are asked for.
constexpr std::size_t kUnansweredMax = 512;

// A process whose connection is gone may need a moment to end: a second in all.
constexpr int kLooksMax = 50;

std::string lock_of_all(const Catalog& catalog) {
    std::string tables;
    for (const Table& table : catalog.tables())
        tables += (tables.empty() ? "" : ", ") + postgresql_name(table.name);
    return "LOCK TABLE " + tables + " IN EXCLUSIVE MODE NOWAIT";
}

std::string advisory_lock(std::string_view function, AdvisoryLock lock) {
    return fmt::format("SELECT {}({}, {})", function, kAdvisoryLocks, static_cast<int>(lock));
}

// Takes the end of the trail, after waiting so long for it at most.
std::string lock_of_trail(std::string_view wait_max) {
    return fmt::format("SELECT set_config('lock_timeout', '{}', TRUE), pg_advisory_xact_lock({}, {})",
                       wait_max, kAdvisoryLocks, static_cast<int>(AdvisoryLock::end_of_trail));
}

class ResultRow final : public EngineRow {
  public:
    ResultRow(const PGresult* result, const StatementText& text) : result_(result), text_(text) {}
    void go_to(int row) { row_ = row; }

    RowKey key() const override { return whole_number_cell(result_, row_, 0); }
    void read(Row& into) const override {
        into.clear();
        into.expect(text_.columns.size());
        int column = text_.keyed ? 1 : 0;
        for (const FieldType type : text_.columns)
            read_cell(result_, row_, column++, type, into);
    }
    bool has_whole_seconds() const override {
        int column = text_.keyed ? 1 : 0;
        return std::ranges::all_of(text_.columns, [&](FieldType type) {
            const int at = column++;
            return !is_date(type) || is_whole_second(result_, row_, at);
        });
    }

  private:
    const PGresult* result_;
    const StatementText& text_;
    int row_ = 0;
};

// A row when the role may act as the owner of the company's tables.
const std::string kLooksForOwner = fmt::format(
    "SELECT 1 FROM pg_catalog.pg_namespace WHERE nspname = '{}' "
    "AND pg_catalog.pg_has_role(current_user, nspowner, 'USAGE')",
    kCompanySchema);

enum class Span { none, snapshot, writing };

class PostgresqlEngine final : public Engine {
  public:
    PostgresqlEngine(ReachedCompany reached, const std::string& uri)
        : PostgresqlEngine(std::move(reached.connection), *reached.catalog) {
        uri_ = uri;
        place_ = std::move(reached.place);
        making_ = false;
    }
    // The connection is within the transaction that makes the company.
    PostgresqlEngine(PostgresqlHandle connection, const Catalog& catalog)
        : catalog_(catalog),
          session_(std::move(connection)),
          lock_all_(session_.command(lock_of_all(catalog))) {}

    const dialect::Flavour& flavour() const override { return flavour_; }

    std::unique_ptr<EngineStatement> prepare(const StatementText& text) override {
        return session_.prepare(text);
    }

    void query(EngineStatement& statement, std::span<const Parameter> parameters,
               const RowSink& sink) override {
        auto& prepared = static_cast<PostgresqlStatement&>(statement);
        if (span_ == Span::writing && prepared.text().may_be_refused) {
            locks_ahead_.end(prefetch_);
            const PostgresqlResult held = ask_under_savepoint(prepared, parameters);
            holds_a_table_ = true;
            return static_cast<void>(hand_over(held, prepared, sink));
        }
        PostgresqlResult result = prefetched(prepared, parameters);
        if (!result) result = ask(prepared, parameters);
        (void)hand_over(result, prepared, sink);
    }

    WriteResult write(EngineStatement& statement, std::span<const Parameter> parameters) override {
        auto& prepared = static_cast<PostgresqlStatement&>(statement);
        locks_ahead_.end(prefetch_);
        switch (prepared.text().effect) {
            case StatementEffect::inserts_row:
                return insert(prepared, parameters);
            case StatementEffect::updates_row:
                prefetch_.note_written(std::get<RowKey>(parameters.back()));
                return {run(prepared, parameters), 0};
            default:
                prefetch_.clear();
                return {run(prepared, parameters), 0};
        }
    }

    // Everybody may write; only rows are locked.
    bool begin_write() override {
        if (!making_) session_.send(*begin_);
        making_ = false;
        span_ = Span::writing;
        return true;
    }

    bool begin_write_alone() override {
        if (!begin_write()) return false;
        session_.send(*lock_all_);
        try {
            (void)session_.finish();
        } catch (const Error& error) {
            rollback();
            if (error.kind() == ErrorKind::locked) return false;
            throw;
        }
        return true;
    }

    // BEGIN alone sees nothing yet: the first query decides what is seen.
    void begin_read() override {
        session_.send(*begin_read_);
        session_.send(*look_);
        span_ = Span::snapshot;
        try {
            (void)session_.finish();
        } catch (const Error&) {
            rollback();
            throw;
        }
    }

    void commit() override {
        locks_ahead_.end(prefetch_);  // what fails here has not met the commit
        try {
            send_commit();
        } catch (const Error& error) {
            throw_doubt(error);
            rollback();
            throw;
        }
    }

    // Mostly nobody is at the end of the trail, and entries and commit travel with the lock. Else that is
    // waited for as a statement is, which can be given up without a doubt.
    void commit_with_entries(EngineStatement& next_entry,
                             std::span<const std::vector<Parameter>> entries) override {
        auto& prepared = static_cast<PostgresqlStatement&>(next_entry);
        locks_ahead_.end(prefetch_);  // what fails here has not met the commit
        try {
            before_trail_.set();
            session_.send(*end_of_trail_at_once_);
            before_trail_.release();
            append(prepared, entries);
            send_commit();
            return;
        } catch (const Error& error) {
            throw_doubt(error);
            if (error.kind() != ErrorKind::locked || !go_back_before_trail()) {
                rollback();
                throw;
            }
        }
        (void)ask(*end_of_trail_, {});
        append(prepared, entries);
        commit();
    }

    void rollback() noexcept override {
        const bool open = in_transaction() || session_.has_failed_transaction();
        try {
            if (open && !session_.is_lost()) leave();
        } catch (const std::exception&) {
            // Whatever fails here, the server drops the transaction with the connection.
        }
        end();
    }

    bool in_transaction() const override {
        return span_ != Span::none && !session_.has_failed_transaction() && !session_.is_lost();
    }

    bool lock_row(EngineStatement& statement, std::span<const Parameter> parameters,
                  const RowSink& sink) override {
        auto& prepared = static_cast<PostgresqlStatement&>(statement);
        if (span_ == Span::writing && !holds_a_table_) return lock_first_row(prepared, parameters, sink);
        PostgresqlResult result = prefetched(prepared, parameters);
        if (!result) result = ask(prepared, parameters);
        // What was read of them earlier is no longer valid.
        for (int row = 0; row < PQntuples(result.get()); ++row)
            prefetch_.note_written(whole_number_cell(result.get(), row, 0));
        return hand_over(result, prepared, sink) > 0;
    }

    // Before it holds a row, a lock on all tables may be in its way.
    bool can_prefetch() const override {
        return span_ == Span::writing && holds_a_table_ && in_transaction();
    }

    void prefetch(EngineStatement& statement, std::span<const Parameter> parameters) override {
        if (!can_prefetch()) return;
        auto& prepared = static_cast<PostgresqlStatement&>(statement);
        if (prepared.text().holds_row) locks_ahead_.begin();
        try {
            prefetch_.add(prepared, parameters, session_.send_ahead(prepared, parameters));
        } catch (const Error& error) {
            // A value that no row can hold: the call that this is for will say so.
            if (error.kind() != ErrorKind::conversion) throw;
        }
        if (session_.unanswered() >= kUnansweredMax) (void)session_.finish();
    }

    // A row that was read stays as it is only while it is held.
    bool reads_stay_true() const override { return span_ == Span::snapshot; }

    void watch(ConnectionWatch* watch) override { session_.watch(watch); }
    bool is_broken() override { return session_.is_broken(); }
    bool can_reconnect() const override { return !uri_.empty(); }

    bool reconnect() override {
        if (!can_reconnect()) return false;
        try {
            ReachedCompany reached = connect_to_company(uri_, catalog_);
            if (reached.place.company != place_.company)
                throw Error(ErrorKind::not_a_company, "another company stands in its place");
            session_.renew(std::move(reached.connection));
            lost_ = std::exchange(place_, std::move(reached.place));
        } catch (const Error& error) {
            if (error.kind() == ErrorKind::not_a_company) throw;
            return false;
        }
        end();
        return true;
    }

    bool lost_one_is_at_work() override {
        const auto question = session_.command(still_at_work_sql(lost_));
        const auto moment = session_.command("SELECT pg_sleep(0.02)");
        for (int looks = 0; looks < kLooksMax; ++looks) {
            if (PQntuples(ask(*question, {}).get()) == 0) return false;
            (void)ask(*moment, {});
        }
        return true;
    }

    void upgrade(const Catalog& catalog) override {
        hold_layout_alone();
        for (const std::string& statement : postgresql_upgrade(catalog, catalog_.layout()))
            (void)ask(*session_.command(statement), {});
    }

    std::optional<ServerRole> role() override {
        const PostgresqlResult owner = ask(*session_.command(kLooksForOwner), {});
        return ServerRole{session_.user(), PQntuples(owner.get()) > 0};
    }

    std::vector<TableRights> rights_of_role(const std::string& role) override {
        const PostgresqlResult rights =
            ask(*session_.command(rights_of_role_sql(require_role(role), catalog_)), {});
        std::vector<TableRights> of_tables;
        for (int row = 0; row < PQntuples(rights.get()); ++row) {
            const auto may = [&](int column) { return *PQgetvalue(rights.get(), row, column) == '1'; };
            of_tables.push_back(
                {catalog_.tables()[static_cast<std::size_t>(row)].name, may(0), may(1), may(2), may(3)});
        }
        return of_tables;
    }

    void give_rights(const std::string& role, std::span<const TableRights> rights) override {
        for (const std::string& statement : statements_giving(require_role(role), rights))
            (void)ask(*session_.command(statement), {});
    }

    std::string reading_only_because() const override {
        if (!session_.takes_no_changes()) return {};
        return shown_company(uri_) + " is on a server that takes no changes, and can only be read";
    }

  private:
    WriteResult insert(PostgresqlStatement& statement, std::span<const Parameter> parameters) {
        with_key_.assign(parameters.begin(), parameters.end());
        const RowKey key = span_ == Span::none ? keys_.single() : keys_.next();
        with_key_.emplace_back(key);
        return {run(statement, with_key_), key};
    }

    void append(PostgresqlStatement& next_entry, std::span<const std::vector<Parameter>> entries) {
        for (const std::vector<Parameter>& entry : entries)
            (void)run(next_entry, entry);
    }

    // False when something had failed before the savepoint: there is nothing to go back to.
    bool go_back_before_trail() {
        try {
            before_trail_.go_back();
            (void)session_.finish();
        } catch (const Error&) {
            return false;
        }
        return true;
    }

    void send_commit() {
        session_.send(*commit_);
        const PostgresqlResult result = session_.finish_commit();
        end();
        if (std::string_view(PQcmdStatus(result.get())) != "COMMIT")
            throw Error(ErrorKind::io, "the server has rolled the transaction back");
    }

    // Null when it was not prefetched, or its row has been written since.
    PostgresqlResult prefetched(const PostgresqlStatement& statement, std::span<const Parameter> parameters) {
        locks_ahead_.end(prefetch_);
        if (!in_transaction()) return nullptr;
        const auto asked = prefetch_.take(statement, parameters);
        if (!asked) return nullptr;
        if (!*asked->answer && session_.unanswered() > 0) (void)session_.finish();
        if (!*asked->answer || !prefetch_.is_still_true(*asked)) return nullptr;
        return std::move(*asked->answer);
    }

    const std::string& require_role(const std::string& role) {
        const PostgresqlResult found = ask(*session_.command(role_sql(role)), {});
        if (PQntuples(found.get()) == 0)
            throw Error(ErrorKind::name, fmt::format("there is no role {} on the server", role));
        return role;
    }

    PostgresqlResult ask(PostgresqlStatement& statement, std::span<const Parameter> parameters) {
        session_.send(statement, parameters);
        return session_.finish();
    }

    static int hand_over(const PostgresqlResult& result, PostgresqlStatement& statement,
                         const RowSink& sink) {
        ResultRow row(result.get(), statement.text());
        const int rows = PQntuples(result.get());
        for (int i = 0; i < rows; ++i) {
            row.go_to(i);
            if (!sink(row)) break;
        }
        return rows;
    }

    // A held row is skipped, but whoever writes alone holds the tables: that is found out at the first row,
    // and must not spoil the transaction either. Afterwards nobody else can write alone.
    bool lock_first_row(PostgresqlStatement& statement, std::span<const Parameter> parameters,
                        const RowSink& sink) {
        PostgresqlResult result;
        try {
            result = ask_under_savepoint(statement, parameters);
        } catch (const Error& error) {
            if (error.kind() == ErrorKind::locked) return false;
            throw;
        }
        holds_a_table_ = true;
        return hand_over(result, statement, sink) > 0;
    }

    // The number of rows written, as far as it is known yet.
    std::int64_t run(PostgresqlStatement& statement, std::span<const Parameter> parameters) {
        if (span_ == Span::none) return run_alone(statement, parameters);
        if (statement.text().may_be_refused) return rows_of(ask_under_savepoint(statement, parameters));
        session_.send(statement, parameters);
        if (session_.unanswered() >= kUnansweredMax) (void)session_.finish();
        return 1;
    }

    // The process of a connection that was just closed may need a moment to end.
    void hold_layout_alone() {
        try {
            (void)ask(*session_.command("SET LOCAL lock_timeout = '2s'"), {});
            (void)ask(*session_.command(advisory_lock("pg_advisory_xact_lock", AdvisoryLock::layout)), {});
        } catch (const Error& error) {
            if (error.kind() != ErrorKind::locked) throw;
            throw Error(ErrorKind::locked, "others have the company open", error.native_code());
        }
    }

    // A transaction of its own: when its answer is lost, it is not known whether it was carried out.
    std::int64_t run_alone(PostgresqlStatement& statement, std::span<const Parameter> parameters) {
        try {
            session_.send(statement, parameters);
            return rows_of(session_.finish_commit());
        } catch (const Error& error) {
            throw_doubt(error);
            throw;
        }
    }

    // What is refused must not spoil the transaction.
    PostgresqlResult ask_under_savepoint(PostgresqlStatement& statement,
                                         std::span<const Parameter> parameters) {
        step_.set();
        try {
            const auto place = session_.send(statement, parameters);
            step_.release();
            return session_.finish(place);
        } catch (const Error&) {
            back_to_savepoint();
            throw;
        }
    }

    void back_to_savepoint() {
        if (session_.is_lost()) return;
        try {
            step_.go_back();
            step_.release();
            (void)session_.finish();
        } catch (const Error&) {
            // A write before the savepoint had failed already, and with it the whole transaction.
        }
    }

    static std::int64_t rows_of(const PostgresqlResult& result) {
        const std::string_view digits = PQcmdTuples(result.get());
        std::int64_t rows = 0;
        std::from_chars(digits.data(), digits.data() + digits.size(), rows);
        return rows;
    }

    // An answer that is lost leaves open whether the change was carried out. A server that goes down may have
    // done it.
    void throw_doubt(const Error& error) {
        if (error.kind() != ErrorKind::lost) return;
        end();
        throw Error(ErrorKind::commit_in_doubt,
                    std::string("the outcome of the last change is unknown: ") + error.what(),
                    error.native_code());
    }

    // Statements after one that failed are ignored, a ROLLBACK too; then it is sent again.
    void leave() {
        for (int tries = 0; tries < 2; ++tries) {
            try {
                session_.send(*rollback_);
                (void)session_.finish();
            } catch (const Error&) {
                if (session_.is_lost()) return;
            }
            if (session_.is_idle()) return;
        }
    }

    void end() {
        span_ = Span::none;
        making_ = false;
        holds_a_table_ = false;
        prefetch_.clear();
        locks_ahead_.clear();
        keys_.end_transaction();
    }

    const Catalog& catalog_;
    std::string uri_;  // empty while the company is being made
    ServerPlace place_;
    ServerPlace lost_;  // before the last reconnect()
    // Statements go before their session.
    PostgresqlSession session_;
    PostgresqlFlavour flavour_;
    std::unique_ptr<PostgresqlStatement> begin_ = session_.command("BEGIN");
    std::unique_ptr<PostgresqlStatement> begin_read_ =
        session_.command("BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY");
    std::unique_ptr<PostgresqlStatement> look_ = session_.command("SELECT 1");
    std::unique_ptr<PostgresqlStatement> commit_ = session_.command("COMMIT");
    std::unique_ptr<PostgresqlStatement> rollback_ = session_.command("ROLLBACK");
    // Whoever appends is at its commit, which may have to wait for a standby.
    std::unique_ptr<PostgresqlStatement> end_of_trail_ = session_.command(lock_of_trail("10s"));
    std::unique_ptr<PostgresqlStatement> end_of_trail_at_once_ = session_.command(lock_of_trail("20ms"));
    std::unique_ptr<PostgresqlStatement> lock_all_;

    Span span_ = Span::none;
    bool making_ = true;
    bool holds_a_table_ = false;
    PostgresqlSavepoint step_{session_, "brimley_step"};  // around what may be refused
    PostgresqlSavepoint before_trail_{session_, "brimley_trail"};
    PostgresqlKeyPool keys_{session_};
    PostgresqlPrefetch prefetch_;
    PostgresqlPrefetchedLocks locks_ahead_{session_};
    std::vector<Parameter> with_key_;
};

}  // namespace

OpenedEngine open_postgresql_company(const std::string& uri, const Catalog& catalog) {
    ReachedCompany reached = connect_to_company(uri, catalog);
    const Catalog* const its_own = reached.catalog;
    return {std::make_unique<PostgresqlEngine>(std::move(reached), uri), its_own};
}

std::unique_ptr<Engine> engine_of(CompanyInTheMaking& company, const Catalog& catalog) {
    return std::make_unique<PostgresqlEngine>(company.take_connection(), catalog);
}

}  // namespace brimley::store
