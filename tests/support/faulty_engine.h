// An engine that fails on purpose: the n-th call, once or from then on, with a chosen kind of error.
//
// The calls that count are those that can fail in real life: prepare, query, write, begin_write,
// begin_write_alone, begin_read, commit and lock_row. A rollback never fails. Where an engine answers false
// for a lock held by somebody else, a fault of kind locked is that answer. A connection that is lost in a
// commit leaves it in doubt.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "kernel/store/database.h"
#include "kernel/store/engine.h"

namespace brimley::testing {

// Shared between a test and the engine that it has put in. Can be changed while the engine is in use.
struct Faults {
    int calls = 0;    // made so far
    int fail_at = 0;  // the call that fails, counted from 1; 0: none
    bool for_good = false;
    store::ErrorKind kind = store::ErrorKind::io;
    // Only calls on statements that hold this text, in any case, count; empty: every call does.
    std::string only_statements_with = {};
    // Only the taking of rows counts.
    bool only_row_locks = false;
    // A failing commit has still been carried out, as when only its answer is lost.
    bool commit_done = false;
    // Called at the fault, if there is one.
    std::function<void()> on_fault = {};
    // on_fault sees to it that the engine fails by itself: the call is made.
    bool engine_fails_itself = false;
    // Which call the last commit was.
    int last_commit = 0;
    // Whatever the engine thinks of it, it is told ahead what will be asked within a transaction; here is
    // what has been told and not been asked since.
    bool listens_ahead = false;
    std::vector<std::string> told_ahead = {};
    int times_told = 0;
    // Told of each statement that is to write or to take a row.
    std::function<void(const std::string& sql)> on_write = {};

    // Counts from now on and fails at the n-th call.
    void arm(int nth, bool always) {
        calls = 0;
        fail_at = nth;
        for_good = always;
    }
    void disarm() { fail_at = 0; }
};

class FaultyEngine final : public store::Engine {
  public:
    FaultyEngine(std::unique_ptr<store::Engine> engine, std::shared_ptr<Faults> faults)
        : engine_(std::move(engine)), faults_(std::move(faults)) {}

    const store::dialect::Flavour& flavour() const override { return engine_->flavour(); }

    std::unique_ptr<store::EngineStatement> prepare(const store::StatementText& text) override {
        may_fail(text.sql);
        return std::make_unique<Statement>(engine_->prepare(text), text.sql);
    }
    void query(store::EngineStatement& statement, std::span<const store::Parameter> parameters,
               const store::RowSink& sink) override {
        auto& known = static_cast<Statement&>(statement);
        may_fail(known.sql);
        note_asked(known.sql, parameters);
        engine_->query(*known.prepared, parameters, sink);
    }
    store::WriteResult write(store::EngineStatement& statement,
                             std::span<const store::Parameter> parameters) override {
        auto& known = static_cast<Statement&>(statement);
        may_fail(known.sql);
        note_written(known.sql);
        return engine_->write(*known.prepared, parameters);
    }
    bool begin_write() override { return !refused() && engine_->begin_write(); }
    bool begin_write_alone() override { return !refused() && engine_->begin_write_alone(); }
    void begin_read() override {
        may_fail();
        engine_->begin_read();
    }
    void commit() override {
        commit_by([&] { engine_->commit(); });
    }
    void commit_with_entries(store::EngineStatement& next_entry,
                             std::span<const std::vector<store::Parameter>> entries) override {
        auto& known = static_cast<Statement&>(next_entry);
        try {
            for (std::size_t entry = 0; entry < entries.size(); ++entry)
                may_fail(known.sql);
            note_written(known.sql);
        } catch (const store::Error&) {
            engine_->rollback();  // as the server does
            throw;
        }
        commit_by([&] { engine_->commit_with_entries(*known.prepared, entries); });
    }
    void rollback() noexcept override { engine_->rollback(); }
    bool in_transaction() const override { return engine_->in_transaction(); }
    bool lock_row(store::EngineStatement& statement, std::span<const store::Parameter> parameters,
                  const store::RowSink& sink) override {
        auto& known = static_cast<Statement&>(statement);
        note_asked(known.sql, parameters);
        note_written(known.sql);
        return !refused(known.sql, true) && engine_->lock_row(*known.prepared, parameters, sink);
    }
    bool reads_stay_true() const override { return engine_->reads_stay_true(); }
    void watch(store::ConnectionWatch* watch) override { engine_->watch(watch); }
    std::string reading_only_because() const override { return engine_->reading_only_because(); }
    bool is_broken() override { return engine_->is_broken(); }
    bool can_reconnect() const override { return engine_->can_reconnect(); }
    bool reconnect() override { return engine_->reconnect(); }
    void upgrade(const store::Catalog& catalog) override {
        may_fail();
        engine_->upgrade(catalog);
    }
    bool lost_one_is_at_work() override { return engine_->lost_one_is_at_work(); }
    bool can_prefetch() const override { return faults_->listens_ahead || engine_->can_prefetch(); }
    // The call that it is for may fail.
    void prefetch(store::EngineStatement& statement, std::span<const store::Parameter> parameters) override {
        auto& known = static_cast<Statement&>(statement);
        if (faults_->listens_ahead) {
            faults_->told_ahead.push_back(question(known.sql, parameters));
            ++faults_->times_told;
        }
        engine_->prefetch(*known.prepared, parameters);
    }

  private:
    // A statement that still knows its text.
    struct Statement final : store::EngineStatement {
        Statement(std::unique_ptr<store::EngineStatement> made, std::string text)
            : prepared(std::move(made)), sql(std::move(text)) {}
        std::unique_ptr<store::EngineStatement> prepared;
        std::string sql;
    };

    template <class Commit>
    void commit_by(const Commit& commit) {
        const bool fails = next_call_fails();
        faults_->last_commit = faults_->calls;
        if (!fails || faults_->commit_done) commit();
        if (fails && faults_->kind == store::ErrorKind::lost) fail(store::ErrorKind::commit_in_doubt);
        if (fails) fail(faults_->kind);
    }

    static std::string question(const std::string& sql, std::span<const store::Parameter> parameters) {
        std::string text = sql;
        for (const store::Parameter& parameter : parameters) {
            const auto* const held = std::get_if<std::string_view>(&parameter);
            const auto* const number = std::get_if<double>(&parameter);
            text += '|' + (held ? std::string(*held) : number ? store::shortest_number(*number) : "");
        }
        return text;
    }
    void note_asked(const std::string& sql, std::span<const store::Parameter> parameters) {
        if (faults_->told_ahead.empty()) return;
        std::erase(faults_->told_ahead, question(sql, parameters));
    }

    void note_written(const std::string& sql) const {
        if (faults_->on_write) faults_->on_write(sql);
    }

    // Transactions and locks have no text.
    [[nodiscard]] bool next_call_fails(const std::string& sql = {}, bool takes_row = false) {
        if (faults_->only_row_locks && !takes_row) return false;
        const std::string wanted = store::lower_case(faults_->only_statements_with);
        if (!wanted.empty() && store::lower_case(sql).find(wanted) == std::string::npos) return false;
        ++faults_->calls;
        if (faults_->fail_at == 0) return false;
        const bool fails =
            faults_->for_good ? faults_->calls >= faults_->fail_at : faults_->calls == faults_->fail_at;
        if (fails && faults_->on_fault) faults_->on_fault();
        return fails && !faults_->engine_fails_itself;
    }
    [[noreturn]] static void fail(store::ErrorKind kind) {
        throw store::Error(kind, "a failure made by the test");
    }
    void may_fail(const std::string& sql = {}) {
        if (next_call_fails(sql)) fail(faults_->kind);
    }
    [[nodiscard]] bool refused(const std::string& sql = {}, bool takes_row = false) {
        if (!next_call_fails(sql, takes_row)) return false;
        if (faults_->kind != store::ErrorKind::locked) fail(faults_->kind);
        return true;
    }

    std::unique_ptr<store::Engine> engine_;
    std::shared_ptr<Faults> faults_;
};

// For open_company.
[[nodiscard]] inline store::EngineDecorator faulty(const std::shared_ptr<Faults>& faults) {
    return [faults](std::unique_ptr<store::Engine> engine) {
        return std::make_unique<FaultyEngine>(std::move(engine), faults);
    };
}

}  // namespace brimley::testing
