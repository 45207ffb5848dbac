#include "kernel/store/sqlite/sqlite_engine.h"

#include "kernel/store/error.h"
#include "kernel/store/sqlite/sqlite_error.h"
#include "kernel/store/sqlite/sqlite_file.h"
#include "kernel/store/sqlite/sqlite_flavour.h"
#include "kernel/store/sqlite/sqlite_statement.h"

namespace brimley::store {

namespace {

// How long a read waits for another program that holds the whole file, as it does while it recovers it.
constexpr int kReadWaitMs = 2000;
constexpr int kReadWaitStepMs = 10;

class SqliteEngine final : public Engine {
  public:
    explicit SqliteEngine(SqliteHandle connection) : connection_(std::move(connection)) {
        sqlite3_busy_handler(connection_.get(), &SqliteEngine::wait, this);
        begin_ = prepare_sql(connection_.get(), "BEGIN IMMEDIATE");
        begin_read_ = prepare_sql(connection_.get(), "BEGIN");
        commit_ = prepare_sql(connection_.get(), "COMMIT");
        rollback_ = prepare_sql(connection_.get(), "ROLLBACK");
    }

    const dialect::Flavour& flavour() const override { return flavour_; }

    std::unique_ptr<EngineStatement> prepare(const StatementText& text) override {
        return std::make_unique<SqliteStatement>(connection_.get(), text);
    }

    void query(EngineStatement& statement, std::span<const Parameter> parameters,
               const RowSink& sink) override {
        auto& prepared = static_cast<SqliteStatement&>(statement);
        const SqliteRun run(prepared, parameters);
        while (prepared.step())
            if (!sink(prepared)) break;
    }

    WriteResult write(EngineStatement& statement, std::span<const Parameter> parameters) override {
        auto& prepared = static_cast<SqliteStatement&>(statement);
        const Impatience impatience(*this);
        const SqliteRun run(prepared, parameters);
        (void)prepared.step();
        return {sqlite3_changes64(connection_.get()), sqlite3_last_insert_rowid(connection_.get())};
    }

    bool begin_write() override {
        const Impatience impatience(*this);
        const int code = run(begin_.get());
        if ((code & 0xff) == SQLITE_BUSY) return false;
        if (code != SQLITE_OK) throw_sqlite_error(connection_.get(), code, "the company file");
        return true;
    }

    bool begin_write_alone() override { return begin_write(); }

    // BEGIN alone sees nothing yet: the first read decides what is seen.
    void begin_read() override {
        const int code = run(begin_read_.get());
        if (code != SQLITE_OK) throw_sqlite_error(connection_.get(), code, "the company file");
        try {
            (void)text_of_sql(connection_.get(), "SELECT count(*) FROM sqlite_schema");
        } catch (...) {
            rollback();
            throw;
        }
    }

    void commit() override {
        const Impatience impatience(*this);
        const int code = run(commit_.get());
        if (code != SQLITE_OK) throw_sqlite_error(connection_.get(), code, "the company file");
    }

    void rollback() noexcept override {
        if (in_transaction()) run(rollback_.get());
    }

    bool in_transaction() const override { return sqlite3_get_autocommit(connection_.get()) == 0; }

    // The file has one writer, and begin_write() has made it this workspace.
    bool lock_row(EngineStatement& statement, std::span<const Parameter> parameters,
                  const RowSink& sink) override {
        bool found = false;
        query(statement, parameters, [&](const EngineRow& row) {
            found = true;
            return sink(row);
        });
        return found;
    }
    bool reads_stay_true() const override { return in_transaction(); }

  private:
    // While this exists a lock of somebody else is refused at once.
    class Impatience {
      public:
        explicit Impatience(SqliteEngine& engine) : engine_(engine) { engine_.may_wait_ = false; }
        ~Impatience() { engine_.may_wait_ = true; }
        Impatience(const Impatience&) = delete;
        Impatience& operator=(const Impatience&) = delete;

      private:
        SqliteEngine& engine_;
    };

    static int wait(void* engine, int times) {
        if (!static_cast<SqliteEngine*>(engine)->may_wait_ || times * kReadWaitStepMs >= kReadWaitMs)
            return 0;
        sqlite3_sleep(kReadWaitStepMs);
        return 1;
    }

    static int run(sqlite3_stmt* statement) noexcept {
        sqlite3_step(statement);
        return sqlite3_reset(statement);
    }

    // Statements go before their connection.
    SqliteHandle connection_;
    SqliteStatementHandle begin_;
    SqliteStatementHandle begin_read_;
    SqliteStatementHandle commit_;
    SqliteStatementHandle rollback_;
    SqliteFlavour flavour_;
    bool may_wait_ = true;
};

}  // namespace

std::unique_ptr<Engine> open_sqlite_company(const std::string& path, const Catalog& catalog) {
    return std::make_unique<SqliteEngine>(open_sqlite_file(path, catalog));
}

void create_sqlite_company(const std::string& path, const Catalog& catalog) {
    create_sqlite_file(path, catalog);
}

void remove_sqlite_company(const std::string& path) { remove_sqlite_file(path); }

}  // namespace brimley::store
