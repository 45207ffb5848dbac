// One engine connection: its plans and prepared statements, and its transaction.
//
// The transaction has two layers. BeginTrans only says that what follows belongs together; the engine's
// transaction begins with the first write or lock, so that it never rests on data that was read before it.
// Outside BeginTrans an Edit begins the engine's transaction, which ends when the last such lock is released.
//
// After a failure that leaves the engine's transaction in doubt nothing more is written until Rollback: the
// rest of a save must not become a transaction of its own.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "kernel/store/catalog.h"
#include "kernel/store/dialect/lexer.h"
#include "kernel/store/engine.h"
#include "kernel/store/error.h"
#include "kernel/store/lru_cache.h"
#include "kernel/store/plans.h"
#include "kernel/store/trail.h"
#include "kernel/store/trail_writer.h"

namespace brimley::store {

// A row as a transaction writes it, by the fields that it writes.
struct Witness {
    struct Written {
        int field;
        Value before;  // of a row that is changed
        Value after;
    };
    const Table* table = nullptr;
    RowKey key = 0;
    bool added = false;  // else changed
    std::vector<Written> fields{};
};

class Connection {
  public:
    // The catalog must outlive it.
    Connection(std::unique_ptr<Engine> engine, const Catalog& catalog, std::string name);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    [[nodiscard]] const Catalog& catalog() const { return catalog_; }
    [[nodiscard]] const std::string& name() const { return name_; }
    // How many statements the engine has been asked to prepare so far.
    [[nodiscard]] std::int64_t prepared_count() const { return prepared_count_; }

    // Plans of query texts. They leave the text's literals in literals(), which are views into the text.
    [[nodiscard]] std::shared_ptr<SelectPlan> select_plan(std::string_view query);
    // For the table of a query that has one.
    [[nodiscard]] std::shared_ptr<FindPlan> find_plan(SelectPlan& select, std::string_view criteria);
    // The values become the literals.
    [[nodiscard]] std::shared_ptr<FindPlan> find_plan(SelectPlan& select, FieldValues fields);
    [[nodiscard]] std::shared_ptr<FilterPlan> filter_plan(SelectPlan& select, std::string_view criteria);
    [[nodiscard]] std::span<const dialect::Literal> literals() const { return literals_; }
    // For the table of a query that has one. fields: those to be written. Each is to be used before the next
    // one is asked for.
    [[nodiscard]] PlannedStatement& insert_plan(const SelectPlan& select, const PlaceSet& fields);
    [[nodiscard]] PlannedStatement& update_plan(const SelectPlan& select, const PlaceSet& fields);

    void query(PlannedStatement& statement, std::span<const Parameter> parameters, const RowSink& sink);
    // Throws ErrorKind::locked when another workspace writes.
    WriteResult write(PlannedStatement& statement, std::span<const Parameter> parameters);
    // As Database::Execute().
    std::int64_t change(std::string_view statement);
    // The row of the key with every field of the table. False when there is none.
    [[nodiscard]] bool read_row(const Table& table, RowKey key, Row& into);

    // --- the trail ---
    void sign(Signature signature) { signature_ = std::move(signature); }
    // What the open transaction writes into watched tables is noted here, after it was written.
    [[nodiscard]] TrailWriter& trail() { return trail_; }
    // Notes what was written. When that fails nothing of the transaction can be committed any more: the trail
    // would not know of it.
    template <class Action>
    void or_nothing_stands(const Action& note) {
        try {
            note();
        } catch (...) {
            spoil();
            throw;
        }
    }
    // The last entry.
    [[nodiscard]] TrailEntry end_of_trail();
    // Of a company of an older layout, by the catalog to which it is brought, within begin_alone(): makes
    // what that has besides, and a first entry of the trail for all rows that are there.
    void upgrade();

    void begin_trans();
    // Throws ErrorKind::locked when another workspace writes.
    void begin_alone();
    void begin_snapshot();
    void commit_trans();
    void rollback();
    [[nodiscard]] bool in_trans() const { return in_trans_; }
    // Whether the engine's transaction is open.
    [[nodiscard]] bool is_writing() const { return begun_ && !reading_only_; }
    [[nodiscard]] ConnectionState state() const { return state_; }

    void watch(std::shared_ptr<ConnectionWatch> watch);
    [[nodiscard]] bool can_reconnect() const { return engine_->can_reconnect(); }
    // As Workspace::reconnect().
    bool reconnect();
    [[nodiscard]] int doubts() const { return doubts_; }
    [[nodiscard]] Doubt doubt(int number) const { return number == doubts_ ? doubt_ : Doubt::unknown; }
    // As Workspace::lost_calls() and forgive_lost_calls().
    [[nodiscard]] std::int64_t lost_calls() const { return lost_calls_; }
    void forgive_lost_calls(std::int64_t calls) { lost_calls_ -= calls; }
    // How often it has been made again: what was held before is lost.
    [[nodiscard]] int times_reconnected() const { return times_reconnected_; }
    // A row that the transaction has added or is about to change, by which it can be recognised when its
    // commit is in doubt. One is enough, the first that was added or else the first that was changed; and
    // what is written into that one again.
    [[nodiscard]] bool wants_witness(const Table& table, RowKey key, bool added) const {
        if (!can_reconnect_) return false;
        return !witness_ || (added && !witness_->added) ||
               (witness_->key == key && witness_->table == &table);
    }
    void note_witness(Witness witness);

    // Begins the engine's transaction if it is not open. False when another workspace writes. Throws
    // ErrorKind::state within a snapshot.
    [[nodiscard]] bool begin_write();
    // Begins to hold what is locked next, until the transaction ends, or outside one until release(). Nothing
    // happens when it is held already. False when another workspace writes.
    [[nodiscard]] bool begin_hold(std::uint64_t& hold);
    void require_leave_to_write() const;
    // Takes the row and hands it over. False when another workspace holds it, or when it is gone.
    [[nodiscard]] bool lock_row(PlannedStatement& held_row, std::span<const Parameter> parameters,
                                const RowSink& sink);
    // As Engine::prefetch().
    void prefetch(PlannedStatement& statement, std::span<const Parameter> parameters);
    [[nodiscard]] bool can_prefetch() const { return begun_ && !spoiled_ && engine_->can_prefetch(); }
    // Ends what begin_hold() began. Nothing happens when the transaction it was part of is over.
    void release(std::uint64_t& hold);
    // As release(), when nothing has been written since begin_hold().
    void drop(std::uint64_t& hold);

    // A row read at this stamp is still what the table holds. held_in: the transaction that has locked it.
    [[nodiscard]] bool still_true(std::uint64_t stamp, std::uint64_t held_in) const;
    // The same of a row that this transaction holds, which other rows of its table do not matter to.
    [[nodiscard]] bool held_row_is_true(std::uint64_t stamp, const TablePlan& table) const {
        return begun_ && stamp >= began_at_ && stamp >= table.written_at;
    }
    [[nodiscard]] std::uint64_t transaction_number() const { return transaction_number_; }
    [[nodiscard]] std::uint64_t stamp() const { return stamp_; }

    // As the calls of Engine with these names.
    void tidy();
    void let_write(bool may_write) { may_write_ = may_write; }
    [[nodiscard]] std::string reading_only_because() const { return engine_->reading_only_because(); }
    [[nodiscard]] std::optional<ServerRole> role() { return engine_->role(); }
    [[nodiscard]] std::vector<TableRights> rights_of_role(const std::string& role) {
        return engine_->rights_of_role(role);
    }
    void give_rights(const std::string& role, std::span<const TableRights> rights) {
        engine_->give_rights(role, rights);
    }
    [[nodiscard]] bool others_write_meanwhile() const { return !engine_->reads_stay_true(); }
    [[nodiscard]] std::vector<std::string> faults_of_storage() { return engine_->faults_of_storage(); }
    [[nodiscard]] bool copy_file(const std::string& to) { return engine_->copy_file(to); }

  private:
    [[nodiscard]] std::shared_ptr<ChangePlan> change_plan(std::string_view statement);
    [[nodiscard]] TablePlan& table_plan(const Table& table);
    std::int64_t run_change(ChangePlan& plan, const dialect::BoundParameters& parameters);
    std::int64_t change_watched(ChangePlan& plan, const dialect::BoundParameters& parameters);
    void note_changed(const WatchedTable& watched, std::span<const RowKey> keys);
    // Of all rows of the table, with every field.
    [[nodiscard]] std::shared_ptr<SelectPlan> row_plan(const Table& table);
    using Entries = std::vector<std::vector<Value>>;
    void append_to_trail(Entries& entries);
    void commit_with(const Entries& entries);
    void commit_engine();
    template <class Plan, class Make>
    [[nodiscard]] std::shared_ptr<Plan> plan_of(LruCache<Plan>& plans, std::string_view text,
                                                const Make& make);
    [[nodiscard]] EngineStatement& prepared(PlannedStatement& statement);
    void require_usable() const;
    void note_failure(const Error& error);
    void note_lost(const Error& error);
    void look_up_doubt();
    [[nodiscard]] Doubt found_out(const Witness& witness);
    void spoil();
    void roll_back_engine();
    // The engine's transaction is over, in whatever way.
    void engine_transaction_ended();
    template <class Action>
    auto guarded(const Action& action);

    const Catalog& catalog_;
    std::string name_;
    std::unique_ptr<Engine> engine_;
    dialect::Translator translator_;

    LruCache<SelectPlan> selects_;
    LruCache<SelectPlan> constant_selects_;  // by their whole text, which holds no values
    LruCache<ChangePlan> changes_;
    std::unordered_map<const Table*, TablePlan> tables_;
    // The same SQL may come from texts of different shape.
    std::unordered_map<std::string, std::weak_ptr<EngineStatement>> by_sql_;
    std::int64_t prepared_count_ = 0;
    std::string shape_;
    std::vector<dialect::Literal> literals_;

    bool in_trans_ = false;
    bool reading_only_ = false;  // the transaction is a snapshot
    bool may_write_ = true;
    bool begun_ = false;    // the engine's transaction is open
    bool spoiled_ = false;  // only Rollback helps
    ConnectionState state_ = ConnectionState::good;
    std::shared_ptr<ConnectionWatch> watch_;
    const bool can_reconnect_;
    int times_reconnected_ = 0;
    mutable std::int64_t lost_calls_ = 0;
    std::optional<Witness> witness_;   // of the open transaction
    std::optional<Witness> doubtful_;  // of the one in doubt
    Doubt doubt_ = Doubt::none;
    int doubts_ = 0;
    TrailWriter trail_;
    PlannedStatement last_entry_;
    PlannedStatement append_entry_;
    // Empty where the hashes of entries are computed here.
    std::optional<PlannedStatement> next_entry_;
    Signature signature_;
    int holds_ = 0;  // locks outside BeginTrans
    std::uint64_t transaction_number_ = 1;
    std::uint64_t stamp_ = 1;
    std::uint64_t began_at_ = 0;  // the stamp at which the open transaction began to write
};

}  // namespace brimley::store
