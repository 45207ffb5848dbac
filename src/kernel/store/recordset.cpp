#include "kernel/store/error.h"
#include "kernel/store/recordset_state.h"

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

void Recordset::Close() { state_.reset(); }

bool Recordset::at_eof() const { return state_->rows().at_eof(); }
std::int64_t Recordset::RecordCount() const { return state_->rows().count(); }
void Recordset::MoveFirst() { state_->moving().move_first(); }
void Recordset::MoveLast() { state_->moving().move_last(); }
void Recordset::MoveNext() { state_->moving().move_next(); }

void Recordset::FindFirst(std::string_view criteria) {
    with_text(criteria, [&] { state_->no_match = !state_->moving().find(criteria, false); });
}

void Recordset::FindNext(std::string_view criteria) {
    with_text(criteria, [&] { state_->no_match = !state_->moving().find(criteria, true); });
}

bool Recordset::NoMatch() const { return state_->no_match; }

Value Recordset::field(std::string_view name) const { return state_->value(state_->column_of(name)); }
bool Recordset::has_field(std::string_view name) const { return state_->plan().names.find(name) >= 0; }
int Recordset::column_count() const { return state_->plan().names.size(); }
const std::string& Recordset::column_name(int column) const { return state_->plan().names.name(column); }

FieldType Recordset::column_type(int column) const {
    return state_->plan().translation.columns[static_cast<std::size_t>(column)].type;
}

Value Recordset::column(int column) const { return state_->value(column); }

void Recordset::AddNew() { state_->add_new(); }

void Recordset::Edit() {
    if (!state_->edit()) throw Error(ErrorKind::locked, "another user is changing the company");
}

bool Recordset::try_edit() { return state_->edit(); }
void Recordset::set(std::string_view name, const Value& value) { state_->set(name, value); }
void Recordset::Update() { state_->update(); }
void Recordset::CancelUpdate() { state_->cancel(); }
void Recordset::LockEdits(bool pessimistic) { state_->lock_edits(pessimistic); }

Bookmark Recordset::Bookmark() const { return {state_->rows().place()}; }
void Recordset::Bookmark(store::Bookmark where) { state_->moving().go_to(where.position); }
Bookmark Recordset::LastModified() const { return {state_->last_modified()}; }

Database::Database(std::shared_ptr<Connection> connection) : connection_(std::move(connection)) {}
Database::~Database() = default;

Recordset Database::OpenRecordset(std::string_view query, RecordsetKind kind) {
    return with_text(query,
                     [&] { return Recordset(std::make_unique<Recordset::State>(connection_, query, kind)); });
}

std::int64_t Database::Execute(std::string_view statement) {
    return with_text(statement, [&] {
        const std::shared_ptr<ChangePlan> plan = connection_->change_plan(statement);
        dialect::BoundParameters parameters;
        parameters.add(plan->literals, connection_->literals());
        return connection_->write(plan->statement, parameters.span()).rows;
    });
}

const Catalog& Database::catalog() const { return connection_->catalog(); }
const std::string& Database::name() const { return connection_->name(); }

}  // namespace brimley::store
