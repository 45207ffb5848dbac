#include "kernel/store/sqlite/sqlite_engine.h"

#include <fmt/format.h>

#include <string_view>

#include "kernel/store/error.h"
#include "kernel/store/sqlite/sqlite_error.h"
#include "kernel/store/sqlite/sqlite_file.h"
#include "kernel/store/sqlite/sqlite_flavour.h"
#include "kernel/store/sqlite/sqlite_head.h"
#include "kernel/store/sqlite/sqlite_layout.h"
#include "kernel/store/sqlite/sqlite_log.h"
#include "kernel/store/sqlite/sqlite_statement.h"

namespace brimley::store {

namespace {

// How long a read waits for another program that holds the whole file, as it does while it recovers it.
constexpr int kReadWaitMs = 2000;
constexpr int kReadWaitStepMs = 10;
// Another workspace may tidy the log away between the mark and what it was made for.
constexpr int kMarksMax = 3;
// More faults of a damaged file than these tell nobody anything.
constexpr int kFaultsMax = 20;

class SqliteEngine final : public Engine {
  public:
    SqliteEngine(SqliteFile file, const std::string& path)
        : connection_(std::move(file.connection)),
          catalog_(*file.catalog),
          log_(connection_.get(), catalog_.layout()) {
        if (!file.damage.empty()) {
            reading_only_because_ = fmt::format("{} is damaged, and can only be read: {}", path, file.damage);
            run_sql(connection_.get(), "PRAGMA query_only = ON");
        }
        sqlite3_busy_handler(connection_.get(), &SqliteEngine::wait, this);
        begin_ = prepare_sql(connection_.get(), "BEGIN IMMEDIATE");
        begin_read_ = prepare_sql(connection_.get(), "BEGIN");
        commit_ = prepare_sql(connection_.get(), "COMMIT");
        rollback_ = prepare_sql(connection_.get(), "ROLLBACK");
    }

    ~SqliteEngine() override { tidy(); }

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
        if (in_transaction()) return run_write(prepared, parameters);
        return write_alone(prepared, parameters);
    }

    bool begin_write() override {
        const Impatience impatience(*this);
        require_writable();
        try {
            return begin_with_log();
        } catch (...) {
            rollback();
            throw;
        }
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

    void tidy() noexcept override {
        if (in_transaction() || !reading_only_because_.empty()) return;
        const Impatience impatience(*this);
        log_.tidy();
    }
    std::string reading_only_because() const override { return reading_only_because_; }
    std::vector<std::string> faults_of_storage() override {
        std::vector<std::string> faults;
        if (!reading_only_because_.empty()) faults.push_back(reading_only_because_);
        const SqliteStatementHandle check =
            prepare_sql(connection_.get(), fmt::format("PRAGMA integrity_check({})", kFaultsMax));
        while (sqlite3_step(check.get()) == SQLITE_ROW) {
            const auto* const fault = reinterpret_cast<const char*>(sqlite3_column_text(check.get(), 0));
            if (fault && std::string_view(fault) != "ok") faults.emplace_back(fault);
        }
        const int code = sqlite3_reset(check.get());
        if (code != SQLITE_OK) faults.emplace_back(sqlite3_errstr(code));
        return faults;
    }
    void upgrade(const Catalog& catalog) override {
        for (const std::string& statement : sqlite_layout(catalog, catalog_.layout()))
            run_sql(connection_.get(), statement);
        run_sql(connection_.get(),
                fmt::format("PRAGMA user_version = {}", catalog.layout() | kSqliteLogNeeded));
    }
    bool copy_file(const std::string& to) override {
        copy_sqlite_file(connection_.get(), to);
        return true;
    }

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

    void require_writable() const {
        if (!reading_only_because_.empty()) throw Error(ErrorKind::io, reading_only_because_);
    }

    // False when another workspace writes.
    bool begin() {
        const int code = run(begin_.get());
        if ((code & 0xff) == SQLITE_BUSY) return false;
        if (code != SQLITE_OK) throw_sqlite_error(connection_.get(), code, "the company file");
        return true;
    }

    bool begin_with_log() {
        if (!begin()) return false;
        for (int times = 0; !log_.is_needed() && times < kMarksMax; ++times) {
            rollback();
            if (!log_.mark_as_needed() || !begin()) return false;
        }
        return true;
    }

    WriteResult run_write(SqliteStatement& prepared, std::span<const Parameter> parameters) {
        const SqliteRun run(prepared, parameters);
        (void)prepared.step();
        return {sqlite3_changes64(connection_.get()), sqlite3_last_insert_rowid(connection_.get())};
    }

    // A transaction of its own.
    WriteResult write_alone(SqliteStatement& prepared, std::span<const Parameter> parameters) {
        if (!begin_write()) throw Error(ErrorKind::locked, kAnotherUserWrites);
        try {
            const WriteResult written = run_write(prepared, parameters);
            commit();
            return written;
        } catch (...) {
            rollback();
            throw;
        }
    }

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
    const Catalog& catalog_;
    SqliteLog log_;
    SqliteStatementHandle begin_;
    SqliteStatementHandle begin_read_;
    SqliteStatementHandle commit_;
    SqliteStatementHandle rollback_;
    SqliteFlavour flavour_;
    bool may_wait_ = true;
    std::string reading_only_because_;
};

}  // namespace

OpenedEngine open_sqlite_company(const std::string& path, const Catalog& catalog) {
    SqliteFile file = open_sqlite_file(path, catalog);
    const Catalog* const its_own = file.catalog;
    return {std::make_unique<SqliteEngine>(std::move(file), path), its_own};
}

void create_sqlite_company(const std::string& path, const Catalog& catalog) {
    create_sqlite_file(path, catalog);
}

void remove_sqlite_company(const std::string& path) { remove_sqlite_file(path); }

}  // namespace brimley::store
