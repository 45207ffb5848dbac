#include "kernel/store/error.h"
#include "kernel/store/recordset_state.h"
#include "kernel/store/trail_reader.h"

namespace brimley::store {

namespace {

// Errors of the dialect know their text; those of the engine get it here.
template <class Action>
auto with_text(std::string_view text, const Action& action) {
    try {
        return action();
    } catch (const Error& error) {
        if (!error.statement().empty()) throw;
        throw Error(error.kind(), error.what(), error.native_code(), std::string(text));
    }
}

}  // namespace

Recordset::Recordset() = default;
Recordset::Recordset(std::unique_ptr<State> state) : state_(std::move(state)) {}
Recordset::Recordset(Recordset&&) noexcept = default;
Recordset& Recordset::operator=(Recordset&&) noexcept = default;
Recordset::~Recordset() = default;

Recordset::State& Recordset::state() const {
    if (!state_) throw Error(ErrorKind::state, "the recordset is closed");
    return *state_;
}

void Recordset::Close() {
    if (!state_) return;
    // Here, so that a failure is thrown; the destructor swallows it.
    state_->cancel();
    state_.reset();
}

bool Recordset::at_eof() const { return state().rows().at_eof(); }
std::int64_t Recordset::RecordCount() const { return state().rows().count(); }
void Recordset::MoveFirst() { state().moving().move_first(); }
void Recordset::MoveLast() { state().moving().move_last(); }
void Recordset::MoveNext() { state().moving().move_next(); }

void Recordset::FindFirst(std::string_view criteria) {
    with_text(criteria, [&] { state().no_match = !state().moving().find(criteria, false); });
}

void Recordset::FindFirst(FieldValues fields) { state().no_match = !state().moving().find_equal(fields); }

void Recordset::FindNext(std::string_view criteria) {
    with_text(criteria, [&] { state().no_match = !state().moving().find(criteria, true); });
}

bool Recordset::NoMatch() const { return state().no_match; }

Value Recordset::field(std::string_view name) const { return state().value(state().column_of(name)); }
std::string Recordset::text(std::string_view name) const { return state().text(state().column_of(name)); }
bool Recordset::has_field(std::string_view name) const { return state().plan().names.find(name) >= 0; }
Value Recordset::field_or_null(std::string_view name) const {
    const int column = state().plan().names.find(name);
    return column < 0 ? Value() : state().value(column);
}
int Recordset::column_count() const { return state().plan().names.size(); }
const std::string& Recordset::column_name(int column) const { return state().plan().names.name(column); }

FieldType Recordset::column_type(int column) const {
    return state().plan().translation.columns[static_cast<std::size_t>(column)].type;
}

Value Recordset::column(int column) const {
    state().require_column(column);
    return state().value(column);
}

void Recordset::read_text(int column, std::string& into) const {
    state().require_column(column);
    state().read_text(column, into);
}

void Recordset::numbers(std::span<const int> columns, std::span<std::optional<double>> into) const {
    for (const int column : columns)
        state().require_column(column);
    state().numbers(columns, into);
}

int Recordset::column_of(std::string_view name) const { return state().column_of(name); }
int Recordset::column_to_set(std::string_view name) const { return state().column_to_set(name); }

void Recordset::AddNew() { state().add_new(); }

void Recordset::Edit() {
    if (!state().edit()) throw Error(ErrorKind::locked, kAnotherUserChanges);
}

bool Recordset::try_edit() { return state().edit(); }

void Recordset::edit_first(FieldValues fields) {
    if (!state().edit_first(fields) && !state().no_match) throw Error(ErrorKind::locked, kAnotherUserChanges);
}

bool Recordset::try_edit_first(FieldValues fields) { return state().edit_first(fields); }

void Recordset::prefetch_first(FieldValues fields) { state().prefetch(fields, Keyset::Purpose::reading); }
void Recordset::prefetch_edit_first(FieldValues fields) { state().prefetch(fields, Keyset::Purpose::taking); }

void Recordset::set(std::string_view name, const Value& value) {
    State& changed = state();
    changed.set(changed.column_to_set(name), value);
}

void Recordset::set_text(std::string_view name, std::string_view text) {
    State& changed = state();
    changed.set_text(changed.column_to_set(name), text);
}

void Recordset::set_number(std::string_view name, double number) {
    State& changed = state();
    changed.set_number(changed.column_to_set(name), number);
}

void Recordset::set_column(int column, const Value& value) {
    state().require_column_to_set(column);
    state().set(column, value);
}

void Recordset::set_numbers(std::span<const int> columns, std::span<const double> numbers) {
    for (const int column : columns)
        state().require_column_to_set(column);
    state().set_numbers(columns, numbers);
}

void Recordset::Update() { state().update(); }
void Recordset::CancelUpdate() { state().cancel(); }
// Every Edit takes its row at once, so there is nothing to choose.
void Recordset::LockEdits(bool /*pessimistic*/) { (void)state(); }

Bookmark Recordset::Bookmark() const { return {state().rows().place()}; }
void Recordset::Bookmark(store::Bookmark where) { state().go_to(where.position); }
Bookmark Recordset::LastModified() const { return {state().last_modified()}; }

Database::Database(std::shared_ptr<Connection> connection) : connection_(std::move(connection)) {}
Database::~Database() = default;

Recordset Database::OpenRecordset(std::string_view query, RecordsetKind kind, const Pause& between) {
    return with_text(query, [&] {
        return Recordset(std::make_unique<Recordset::State>(connection_, query, kind, between));
    });
}

void Database::bring_trail_along() { connection_->trail().note_entries_brought(); }

std::int64_t Database::Execute(std::string_view statement) {
    return with_text(statement, [&] { return connection_->change(statement); });
}

const Catalog& Database::catalog() const { return connection_->catalog(); }
const std::string& Database::name() const { return connection_->name(); }
std::string Database::reading_only_because() const { return connection_->reading_only_because(); }
std::optional<ServerRole> Database::role() const { return connection_->role(); }
std::vector<TableRights> Database::rights_of_role(const std::string& role) const {
    return connection_->rights_of_role(role);
}
void Database::give_rights(const std::string& role, std::span<const TableRights> rights) {
    connection_->give_rights(role, rights);
}
bool Database::others_write_meanwhile() const { return connection_->others_write_meanwhile(); }
std::vector<std::string> Database::faults_of_storage() const { return connection_->faults_of_storage(); }
std::optional<TrailEntry> Database::end_of_trail() const {
    if (!catalog().trail()) return {};
    return connection_->end_of_trail();
}
std::vector<std::string> Database::faults_of_trail(const TrailEntry& sealed) const {
    if (catalog().trail()) return TrailReader(*connection_).faults(sealed);
    if (sealed.number == 0) return {};
    return {"the company has no trail, but the end of one was sealed"};
}
bool Database::copy_file(const std::string& to) const { return connection_->copy_file(to); }

}  // namespace brimley::store
