#include "kernel/store/connection.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>
#include <utility>

#include "kernel/store/database.h"
#include "kernel/store/dialect/evaluator.h"

namespace brimley::store {

namespace {

// Marks a statement while it runs.
class Running {
  public:
    explicit Running(EngineStatement& statement) : statement_(statement) { statement_.is_running = true; }
    ~Running() { statement_.is_running = false; }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

  private:
    EngineStatement& statement_;
};

constexpr std::size_t kPlansMax = 512;
// When this many statements are known by their SQL, those that are gone are swept out.
constexpr std::size_t kSweepFrom = 4096;

dialect::BoundParameters parameters_of(RowKey key) {
    dialect::BoundParameters parameters;
    parameters.add_row_key(key);
    return parameters;
}

// Literals of different kinds may be bound in the same SQL.
std::string identity_of(const StatementText& text) {
    std::string identity = text.sql;
    identity += '\0';
    for (const dialect::ParameterKind kind : text.parameters)
        identity += static_cast<char>(kind);
    identity += '\0';
    for (const FieldType type : text.columns)
        identity += static_cast<char>(type);
    return identity;
}

}  // namespace

Connection::Connection(std::unique_ptr<Engine> engine, const Catalog& catalog, std::string name)
    : catalog_(catalog),
      name_(std::move(name)),
      engine_(std::move(engine)),
      translator_(catalog, engine_->flavour()),
      selects_(kPlansMax),
      constant_selects_(kPlansMax),
      changes_(kPlansMax),
      can_reconnect_(engine_->can_reconnect()),
      trail_(catalog) {
    if (!catalog_.trail()) return;
    last_entry_.text = translator_.last_entry();
    std::vector<int> every_field(catalog_.trail()->fields.size());
    std::iota(every_field.begin(), every_field.end(), 0);
    append_entry_.text = translator_.insert(*catalog_.trail(), every_field);
    if (auto next = translator_.next_entry()) next_entry_ = PlannedStatement{std::move(*next)};
}

Connection::~Connection() {
    engine_->watch(nullptr);
    if (begun_) engine_->rollback();
}

void Connection::watch(std::shared_ptr<ConnectionWatch> watch) {
    engine_->watch(watch.get());
    watch_ = std::move(watch);
}

// The plan for the shape of a text, made when the shape is new. The text's literals are in literals_ then.
template <class Plan, class Make>
std::shared_ptr<Plan> Connection::plan_of(LruCache<Plan>& plans, std::string_view text, const Make& make) {
    dialect::take_shape(text, shape_, literals_);
    if (auto known = plans.find(shape_)) return known;
    std::shared_ptr<Plan> plan = make();
    plans.add(shape_, plan);
    return plan;
}

std::shared_ptr<SelectPlan> Connection::select_plan(std::string_view query) {
    // Most texts that hold values hold one in quotes, and need not be looked for.
    const bool may_be_constant = query.find('\'') == std::string_view::npos;
    if (auto known = may_be_constant ? constant_selects_.find(query) : nullptr) {
        literals_.clear();
        return known;
    }
    auto plan = plan_of(selects_, query, [&] {
        auto made = std::make_shared<SelectPlan>(translator_.select(query));
        if (const Table* const table = made->translation.table) made->table_plan = &table_plan(*table);
        return made;
    });
    if (may_be_constant && literals_.empty()) constant_selects_.add(query, plan);
    return plan;
}

TablePlan& Connection::table_plan(const Table& table) {
    TablePlan& plan = tables_[&table];
    plan.watched = trail_.watched(table);
    return plan;
}

std::shared_ptr<FindPlan> Connection::find_plan(SelectPlan& select, std::string_view criteria) {
    return plan_of(select.finds, criteria, [&] {
        return std::make_shared<FindPlan>(translator_.find(select.translation, criteria));
    });
}

std::shared_ptr<FindPlan> Connection::find_plan(SelectPlan& select, FieldValues fields) {
    shape_.clear();
    for (const auto& [field, value] : fields)
        shape_.append(field) += '=';
    auto plan = select.finds_of_fields.find(shape_);
    if (!plan) {
        const std::string names = shape_;
        plan = find_plan(select, all_equal(fields));
        select.finds_of_fields.add(names, plan);
    }
    literals_.clear();
    for (const auto& [field, value] : fields)
        literals_.push_back({true, value});
    return plan;
}

std::shared_ptr<FilterPlan> Connection::filter_plan(SelectPlan& select, std::string_view criteria) {
    return plan_of(select.filters, criteria, [&] {
        auto plan = std::make_shared<FilterPlan>();
        plan->criteria = translator_.filter(select.translation, criteria);
        const auto column_of = [&](std::string_view name) { return select.names.find(name); };
        dialect::look_up_columns(*plan->criteria, column_of, criteria);
        return plan;
    });
}

std::shared_ptr<ChangePlan> Connection::change_plan(std::string_view statement) {
    return plan_of(changes_, statement, [&] {
        auto made = std::make_shared<ChangePlan>(translator_.change(statement));
        made->table_plan = &table_plan(*made->table);
        const WatchedTable* const watched = made->table_plan->watched;
        if (watched && (made->assigned.is_empty() || watched->fields.meets(made->assigned)))
            made->watched = watched;
        return made;
    });
}

PlannedStatement& Connection::insert_plan(const SelectPlan& select, const PlaceSet& fields) {
    return select.table_plan->inserts.of(fields, [&](const std::vector<int>& places) {
        return translator_.insert(*select.translation.table, places);
    });
}

PlannedStatement& Connection::update_plan(const SelectPlan& select, const PlaceSet& fields) {
    return select.table_plan->updates.of(fields, [&](const std::vector<int>& places) {
        return translator_.update(*select.translation.table, places);
    });
}

EngineStatement& Connection::prepared(PlannedStatement& statement) {
    if (statement.prepared) return *statement.prepared;
    if (by_sql_.size() >= kSweepFrom)
        std::erase_if(by_sql_, [](const auto& known) { return known.second.expired(); });
    std::weak_ptr<EngineStatement>& known = by_sql_[identity_of(statement.text)];
    statement.prepared = known.lock();
    if (!statement.prepared) {
        statement.prepared = engine_->prepare(statement.text);
        known = statement.prepared;
        ++prepared_count_;
    }
    return *statement.prepared;
}

void Connection::require_usable() const {
    if (state_ == ConnectionState::good) return;
    ++lost_calls_;
    throw Error(ErrorKind::lost, "the connection to the company is gone");
}

template <class Action>
auto Connection::guarded(const Action& action) {
    try {
        return action();
    } catch (const Error& error) {
        note_failure(error);
        throw;
    }
}

void Connection::note_failure(const Error& error) {
    if (error.spoils_connection() && state_ == ConnectionState::good) {
        ++lost_calls_;
        note_lost(error);
    }
    if (!error.spoils_transaction() && (!begun_ || engine_->in_transaction())) return;
    if (in_trans_)
        spoiled_ = true;
    else if (begun_)
        roll_back_engine();
}

void Connection::note_witness(Witness witness) {
    if (!witness_ || witness_->key != witness.key || witness_->table != witness.table) {
        witness_ = std::move(witness);
        return;
    }
    for (Witness::Written& again : witness.fields) {
        const auto known = std::ranges::find(witness_->fields, again.field, &Witness::Written::field);
        if (known == witness_->fields.end())
            witness_->fields.push_back(std::move(again));
        else
            known->after = std::move(again.after);
    }
}

void Connection::note_lost(const Error& error) {
    const bool in_doubt = error.kind() == ErrorKind::commit_in_doubt;
    state_ = in_doubt ? ConnectionState::in_doubt : ConnectionState::lost;
    if (in_doubt) {
        ++doubts_;
        doubt_ = Doubt::undecided;
        doubtful_ = std::exchange(witness_, std::nullopt);
    }
    if (watch_) watch_->connection_lost();
}

// With the act that lost it still open nothing is done: its rest must not become an act of its own.
bool Connection::reconnect() {
    if (in_trans_) return state_ == ConnectionState::good;
    if (state_ == ConnectionState::good && engine_->is_broken()) {
        note_failure(Error(ErrorKind::lost, "the connection to the company is gone"));
        --lost_calls_;  // nobody has called
    }
    if (begun_) return state_ == ConnectionState::good;
    if (state_ != ConnectionState::good) {
        try {
            if (!engine_->reconnect()) return false;
        } catch (const Error&) {
            return false;  // another company: it stays lost
        }
        state_ = ConnectionState::good;
        ++times_reconnected_;
        engine_transaction_ended();
        if (watch_) watch_->connection_back(engine_->reading_only_because());
    }
    if (doubt_ == Doubt::undecided) look_up_doubt();
    return state_ == ConnectionState::good;
}

void Connection::look_up_doubt() {
    try {
        // First of all, since it may be carried out between two looks.
        const bool at_work = engine_->lost_one_is_at_work();
        const Doubt found = doubtful_ ? found_out(*doubtful_) : Doubt::unknown;
        if (at_work && found != Doubt::stored) return;
        doubt_ = found;
        doubtful_.reset();
    } catch (const Error& error) {
        note_failure(error);
    }
}

Doubt Connection::found_out(const Witness& witness) {
    Row row;
    // A row that is gone was never added, or has been deleted since it was to be changed.
    if (!read_row(*witness.table, witness.key, row))
        return witness.added ? Doubt::not_stored : Doubt::unknown;
    const auto holds = [&](Value Witness::Written::*value) {
        return std::ranges::all_of(witness.fields,
                                   [&](const auto& field) { return row.holds(field.field, field.*value); });
    };
    if (holds(&Witness::Written::after)) return Doubt::stored;
    return !witness.added && holds(&Witness::Written::before) ? Doubt::not_stored : Doubt::unknown;
}

std::shared_ptr<SelectPlan> Connection::row_plan(const Table& table) {
    return select_plan("SELECT * FROM [" + table.name + "]");
}

bool Connection::read_row(const Table& table, RowKey key, Row& into) {
    bool found = false;
    query(row_plan(table)->by_key, parameters_of(key).span(), [&](const EngineRow& row) {
        row.read(into);
        found = true;
        return false;
    });
    return found;
}

void Connection::query(PlannedStatement& statement, std::span<const Parameter> parameters,
                       const RowSink& sink) {
    require_usable();
    const auto run = [&](EngineStatement& prepared) {
        const Running running(prepared);
        engine_->query(prepared, parameters, sink);
    };
    guarded([&] {
        EngineStatement& shared = prepared(statement);
        if (!shared.is_running) return run(shared);
        // What takes its rows asks for the same query again: that runs on a statement of its own.
        run(*engine_->prepare(statement.text));
    });
}

WriteResult Connection::write(PlannedStatement& statement, std::span<const Parameter> parameters) {
    require_usable();
    if (in_trans_ && !begin_write()) throw Error(ErrorKind::locked, kAnotherUserWrites);
    ++stamp_;
    return guarded([&] { return engine_->write(prepared(statement), parameters); });
}

std::int64_t Connection::change(std::string_view statement) {
    const std::shared_ptr<ChangePlan> plan = change_plan(statement);
    dialect::BoundParameters parameters;
    parameters.add(plan->literals, literals_);
    if (!plan->watched) return run_change(*plan, parameters);

    std::uint64_t hold = 0;
    if (!begin_hold(hold)) throw Error(ErrorKind::locked, kAnotherUserWrites);
    std::int64_t rows = 0;
    try {
        rows = change_watched(*plan, parameters);
    } catch (...) {
        drop(hold);
        throw;
    }
    release(hold);
    return rows;
}

std::int64_t Connection::run_change(ChangePlan& plan, const dialect::BoundParameters& parameters) {
    const std::int64_t rows = write(plan.statement, parameters.span()).rows;
    plan.table_plan->written_at = stamp_;
    return rows;
}

// Which rows it changes has to be found out before they are changed; from then on they are held.
std::int64_t Connection::change_watched(ChangePlan& plan, const dialect::BoundParameters& parameters) {
    dialect::BoundParameters of_rows;
    of_rows.add(plan.literals_of_rows, literals_);
    TrailWriter::Mark mark(trail_);
    std::vector<RowKey> keys;
    query(plan.rows, of_rows.span(), [&](const EngineRow& each) {
        trail_.note(*plan.watched, each, false);
        keys.push_back(each.key());
        return true;
    });
    const std::int64_t changed = run_change(plan, parameters);
    mark.keep();
    or_nothing_stands([&] {
        // One that somebody else has added in between is not among them.
        if (changed != static_cast<std::int64_t>(keys.size()))
            throw Error(ErrorKind::locked, kAnotherUserChanges);
        if (!plan.assigned.is_empty()) note_changed(*plan.watched, keys);
    });
    return changed;
}

void Connection::note_changed(const WatchedTable& watched, std::span<const RowKey> keys) {
    PlannedStatement& by_key = row_plan(*watched.table)->by_key;
    if (can_prefetch())
        for (const RowKey key : keys)
            prefetch(by_key, parameters_of(key).span());
    Row row;
    // What was prefetched last is found first.
    std::for_each(keys.rbegin(), keys.rend(), [&](RowKey key) {
        if (read_row(*watched.table, key, row)) trail_.note(watched, row, true);
    });
}

void Connection::upgrade() {
    ++stamp_;
    guarded([&] { engine_->upgrade(catalog_); });
    for (const Table& table : catalog_.tables()) {
        const WatchedTable* const watched = trail_.watched(table);
        if (!watched) continue;
        query(row_plan(table)->rows, {}, [&](const EngineRow& each) {
            trail_.note(*watched, each, true);
            return true;
        });
    }
    trail_.name_entries("what stood here before the trail");
}

TrailEntry Connection::end_of_trail() {
    TrailEntry end;
    query(last_entry_, {}, [&](const EngineRow& each) {
        Row row;
        each.read(row);
        end.number = static_cast<std::int64_t>(row.number(0).value_or(0));
        end.hash = row.text(1).value_or("");
        return false;
    });
    return end;
}

// As the last thing before the commit. Where it is done here, whoever writes is alone.
void Connection::append_to_trail(Entries& entries) {
    TrailEntry end = end_of_trail();
    or_nothing_stands([&] {
        for (std::vector<Value>& entry : entries) {
            trail_.chain(entry, end);
            std::vector<Parameter> parameters;
            for (const Value& value : entry)
                parameters.push_back(dialect::parameter_of(value));
            (void)write(append_entry_, parameters);
        }
    });
    trail_.clear();
}

// The engine knows the end of the trail when it has got hold of it, and nothing is waited for in between.
void Connection::commit_with(const Entries& entries) {
    std::vector<std::string> rests;
    for (const std::vector<Value>& entry : entries)
        rests.push_back(hexadecimal(entry_rest(*catalog_.trail(), entry)));
    std::vector<std::vector<Parameter>> parameters;
    for (std::size_t at = 0; at < entries.size(); ++at) {
        std::vector<Parameter>& of_entry = parameters.emplace_back();
        for (const Value& value : std::span(entries[at]).subspan(1))
            of_entry.push_back(dialect::parameter_of(value));
        of_entry.emplace_back(rests[at]);
    }
    guarded([&] { engine_->commit_with_entries(prepared(*next_entry_), parameters); });
}

void Connection::commit_engine() {
    Entries entries;
    if (!trail_.is_empty()) or_nothing_stands([&] { entries = trail_.entries(signature_); });
    if (next_entry_ && !entries.empty()) return commit_with(entries);
    if (!entries.empty()) append_to_trail(entries);
    guarded([&] { engine_->commit(); });
}

void Connection::begin_trans() {
    require_usable();
    if (in_trans_) throw Error(ErrorKind::state, "a transaction is open already");
    in_trans_ = true;
}

void Connection::begin_alone() {
    require_leave_to_write();
    begin_trans();
    try {
        begun_ = guarded([&] { return engine_->begin_write_alone(); });
    } catch (...) {
        rollback();
        throw;
    }
    began_at_ = ++stamp_;
    if (begun_) return;
    rollback();
    throw Error(ErrorKind::locked, kAnotherUserWrites);
}

void Connection::begin_snapshot() {
    require_usable();
    if (in_trans_ || begun_) throw Error(ErrorKind::state, "a transaction is open already");
    guarded([&] { engine_->begin_read(); });
    in_trans_ = true;
    reading_only_ = true;
    begun_ = true;
    ++stamp_;
}

void Connection::commit_trans() {
    if (!in_trans_) throw Error(ErrorKind::state, "no transaction is open");
    if (spoiled_) throw Error(ErrorKind::state, "the transaction has failed and can only be rolled back");
    require_usable();
    if (begun_) commit_engine();
    in_trans_ = false;
    engine_transaction_ended();
}

void Connection::rollback() {
    if (!in_trans_) return;
    if (begun_) engine_->rollback();
    in_trans_ = false;
    engine_transaction_ended();
}

void Connection::spoil() {
    if (in_trans_)
        spoiled_ = true;
    else
        roll_back_engine();
}

void Connection::roll_back_engine() {
    engine_->rollback();
    engine_transaction_ended();
}

void Connection::tidy() {
    if (!in_trans_ && !begun_ && state_ == ConnectionState::good) engine_->tidy();
}

void Connection::engine_transaction_ended() {
    begun_ = false;
    reading_only_ = false;
    spoiled_ = false;
    holds_ = 0;
    witness_.reset();
    trail_.clear();
    ++transaction_number_;
    ++stamp_;
}

void Connection::require_leave_to_write() const {
    if (!may_write_) throw Error(ErrorKind::state, "nothing is written at the moment");
}

bool Connection::begin_write() {
    require_usable();
    if (spoiled_) throw Error(ErrorKind::state, "the transaction has failed and can only be rolled back");
    if (reading_only_) throw Error(ErrorKind::state, "nothing can be written within a snapshot");
    if (begun_) return true;
    require_leave_to_write();
    if (!guarded([&] { return engine_->begin_write(); })) return false;
    begun_ = true;
    began_at_ = ++stamp_;
    return true;
}

bool Connection::begin_hold(std::uint64_t& hold) {
    if (hold == transaction_number_) return true;
    if (!begin_write()) return false;
    if (in_trans_) return true;
    ++holds_;
    hold = transaction_number_;
    return true;
}

bool Connection::lock_row(PlannedStatement& held_row, std::span<const Parameter> parameters,
                          const RowSink& sink) {
    return guarded([&] { return engine_->lock_row(prepared(held_row), parameters, sink); });
}

void Connection::prefetch(PlannedStatement& statement, std::span<const Parameter> parameters) {
    guarded([&] { engine_->prefetch(prepared(statement), parameters); });
}

void Connection::release(std::uint64_t& hold) {
    const bool over = hold != transaction_number_;
    hold = 0;
    if (over || in_trans_ || --holds_ > 0) return;
    try {
        commit_engine();
    } catch (...) {
        roll_back_engine();
        throw;
    }
    engine_transaction_ended();
}

void Connection::drop(std::uint64_t& hold) {
    const bool over = hold != transaction_number_;
    hold = 0;
    if (over || in_trans_ || --holds_ > 0) return;
    roll_back_engine();
}

bool Connection::still_true(std::uint64_t stamp, std::uint64_t held_in) const {
    if (!begun_ || stamp != stamp_) return false;
    return held_in == transaction_number_ || engine_->reads_stay_true();
}

}  // namespace brimley::store
