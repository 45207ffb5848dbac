#include "kernel/store/recordset_state.h"

#include <algorithm>
#include <cmath>

#include "kernel/store/convert.h"
#include "kernel/store/dialect/evaluator.h"
#include "kernel/store/error.h"

namespace brimley::store {

namespace {

constexpr const char* kRowIsGone = "the row to update is gone";

Value literal_value(const dialect::Literal& literal) {
    return literal.is_text ? Value(literal.text) : Value(dialect::number_of(literal));
}

// Whether a condition without any field, such as 1 = 2, keeps every row out.
bool nothing_meets(const dialect::SelectTranslation& select, std::span<const dialect::Literal> literals) {
    return !std::ranges::all_of(select.constants, [&](const dialect::ConstantTest& test) {
        return dialect::compare(literal_value(literals[test.left]), test.sign,
                                literal_value(literals[test.right]))
            .value_or(false);
    });
}

bool is_false_when_new(const Field& field) { return field.type == FieldType::yes_no && !field.nullable_flag; }

}  // namespace

Recordset::State::State(std::shared_ptr<Connection> connection, std::string_view query, RecordsetKind kind,
                        const Pause& between)
    : connection_(std::move(connection)),
      plan_(connection_->select_plan(query)),
      memory_(plan_->spare_memory),
      buffer_(memory_->buffer) {
    const dialect::SelectTranslation& select = plan_->translation;
    const auto literals = connection_->literals();
    const bool empty = nothing_meets(select, literals);
    dialect::BoundParameters parameters;
    parameters.add(select.outer, literals);
    parameters.add(select.condition, literals);
    if (kind == RecordsetKind::snapshot || !select.table) {
        source_ =
            &rows_.emplace<Snapshot>(*connection_, *plan_, memory_->row, parameters.span(), empty, between);
        return;
    }
    std::vector<Value> outer;
    for (const dialect::LiteralParameter& parameter : select.outer)
        outer.push_back(value_of(parameter, literals[parameter.literal]));
    keyset_ = &rows_.emplace<Keyset>(*connection_, *plan_, memory_->row, parameters.span(), std::move(outer),
                                     empty);
    source_ = keyset_;
}

Recordset::State::~State() {
    try {
        cancel();
    } catch (const Error&) {
        // Nothing was written under the lock that is released here.
        hold_ = 0;
    }
}

RecordSource& Recordset::State::moving() {
    cancel();
    return *source_;
}

void Recordset::State::go_to(std::int64_t place) {
    RecordSource& rows = moving();
    if (knows_added_row(place))
        show_added_row(keyset_->go_to_added(place));
    else
        rows.go_to(place);
}

// Nothing has been written into its table since, by this transaction, and nobody else can have done it.
bool Recordset::State::knows_added_row(std::int64_t place) const {
    return place >= 0 && place == added_.key && connection_->in_trans() &&
           connection_->held_row_is_true(added_.stamp, *plan_->table_plan);
}

void Recordset::State::show_added_row(Row& row) const {
    const std::vector<Field>& fields = plan_->translation.table->fields;
    row.expect(fields.size());
    for (std::size_t field = 0; field < fields.size(); ++field) {
        const Value* const value = buffer_.kept(static_cast<int>(field));
        if (value)
            row.add(*value);
        else if (is_false_when_new(fields[field]))
            row.add_flag(false);
        else
            row.add_null();
    }
}

int Recordset::State::column_of(std::string_view name) const {
    const int column = plan_->names.find(name);
    if (column < 0) throw Error(ErrorKind::name, "no field \"" + std::string(name) + "\" in the recordset");
    return column;
}

int Recordset::State::column_to_set(std::string_view name) const {
    const int column = plan_->names.find(name);
    if (column >= 0) return column;
    if (!keyset_) return column_of(name);
    const int field = require_table().field_index(name);
    if (field < 0) return column_of(name);
    // Perhaps a column shows it under another name.
    const std::vector<dialect::ResultColumn>& columns = plan_->translation.columns;
    const auto shown = std::ranges::find(columns, field, &dialect::ResultColumn::field);
    return static_cast<int>(shown - columns.begin()) + (shown == columns.end() ? field : 0);
}

void Recordset::State::refuse_column(int column) {
    throw Error(ErrorKind::name, "no column " + std::to_string(column) + " in the recordset");
}

const Row& Recordset::State::row_at_hand() {
    const Row* const row = source_->current();
    if (!row) throw Error(ErrorKind::state, "no current row in the recordset");
    return *row;
}

Value Recordset::State::value(int column) {
    if (buffer_.active() && buffer_.is_set(column)) return buffer_.value(column);
    if (buffer_.mode() == EditBuffer::Mode::adding) {
        const int field = plan_->translation.columns[static_cast<std::size_t>(column)].field;
        return field >= 0 && is_false_when_new(field_of(column)) ? Value(false) : Value();
    }
    return row_at_hand().value(column);
}

std::string Recordset::State::text(int column) {
    std::string text;
    read_text(column, text);
    return text;
}

void Recordset::State::read_text(int column, std::string& into) {
    if (buffer_.mode() != EditBuffer::Mode::adding && !buffer_.is_set(column)) {
        const Row& row = row_at_hand();
        if (const auto text = row.text(column)) {
            into.assign(*text);
            return;
        }
        if (const auto number = row.number(column)) {
            into = shortest_number(*number);
            return;
        }
    }
    into = value(column).text();
}

void Recordset::State::numbers(std::span<const int> columns, std::span<std::optional<double>> into) {
    const Row* const row = buffer_.mode() == EditBuffer::Mode::adding ? nullptr : &row_at_hand();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const int column = columns[i];
        if (row && !buffer_.is_set(column))
            into[i] = row->number(column);
        else
            into[i].reset();
        if (into[i]) continue;
        const Value held = value(column);
        if (!held.is_null()) into[i] = held.number();
    }
}

const Table& Recordset::State::require_table() const {
    if (!keyset_) throw Error(ErrorKind::state, "the recordset cannot be changed");
    return *plan_->translation.table;
}

std::size_t Recordset::State::place_of_field(int column) const {
    const int place = plan_->field_places[static_cast<std::size_t>(column)];
    if (place < 0) {
        const dialect::ResultColumn& shown = plan_->translation.columns[static_cast<std::size_t>(column)];
        throw Error(ErrorKind::state, shown.name + " is computed and cannot be changed");
    }
    return static_cast<std::size_t>(place);
}

const Field& Recordset::State::field_of(int column) const {
    return require_table().fields[place_of_field(column)];
}

void Recordset::State::add_new() {
    (void)require_table();
    cancel();
    added_ = {};
    buffer_.begin(EditBuffer::Mode::adding, plan_->field_places.size());
}

bool Recordset::State::edit() {
    (void)require_table();
    cancel();
    if (!keyset_->current()) throw Error(ErrorKind::state, "no current row to edit");
    // Even an Edit without LockEdits takes the row: what is read now must still hold when it is written.
    const Keyset::Taken taken = keyset_->take(hold_);
    if (taken == Keyset::Taken::row_is_gone) throw Error(ErrorKind::state, "the row to edit is gone");
    if (taken == Keyset::Taken::somebody_has_it) return false;
    begin_editing();
    return true;
}

void Recordset::State::begin_editing() {
    connection_of_edit_ = connection_->times_reconnected();
    transaction_of_edit_ = connection_->transaction_number();
    added_ = {};
    buffer_.begin(EditBuffer::Mode::editing, plan_->field_places.size());
}

bool Recordset::State::edit_first(FieldValues fields) {
    (void)require_table();
    cancel();
    no_match = false;
    Keyset::Taken taken{};
    try {
        taken = keyset_->take_equal(fields, hold_);
    } catch (...) {
        connection_->release(hold_);
        throw;
    }
    no_match = taken == Keyset::Taken::row_is_gone;
    if (taken != Keyset::Taken::yes) return false;
    begin_editing();
    return true;
}

void Recordset::State::prefetch(FieldValues fields, Keyset::Purpose purpose) {
    if (keyset_) keyset_->prefetch(fields, purpose);
}

void Recordset::State::require_buffer() const {
    if (!buffer_.active()) throw Error(ErrorKind::state, "neither AddNew nor Edit before a field is set");
}

void Recordset::State::set(int column, const Value& value) {
    require_buffer();
    convert_for_field(value, field_of(column), buffer_.slot(column));
    buffer_.mark_set(column);
}

void Recordset::State::set_text(int column, std::string_view text) {
    require_buffer();
    const Field& field = field_of(column);
    Value& slot = buffer_.slot(column);
    if (field.type == FieldType::text)
        slot.assign(text);
    else
        slot = convert_for_field(Value(text), field);
    buffer_.mark_set(column);
}

void Recordset::State::set_number(int column, double number) {
    require_buffer();
    const Field& field = field_of(column);
    Value& slot = buffer_.slot(column);
    if (field.type == FieldType::number && std::isfinite(number))
        slot = number;
    else
        slot = convert_for_field(number, field);
    buffer_.mark_set(column);
}

void Recordset::State::set_numbers(std::span<const int> columns, std::span<const double> numbers) {
    require_buffer();
    const std::vector<Field>& fields = require_table().fields;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (fields[place_of_field(columns[i])].type == FieldType::number && std::isfinite(numbers[i])) {
            buffer_.slot(columns[i]) = numbers[i];
            buffer_.mark_set(columns[i]);
        } else {
            set_number(columns[i], numbers[i]);
        }
    }
}

void Recordset::State::update() {
    if (!buffer_.active()) throw Error(ErrorKind::state, "Update without AddNew or Edit");
    if (buffer_.mode() == EditBuffer::Mode::adding) {
        insert_row();
        buffer_.end_and_keep();
    } else {
        update_row();
        buffer_.end();
    }
}

void Recordset::State::cancel() {
    buffer_.end();
    connection_->release(hold_);
}

void Recordset::State::insert_row() {
    begin_fields();
    // A field that is left out is null as well.
    buffer_.each_set_column([&](int column) {
        if (!buffer_.value(column).is_null()) write_field(column);
    });
    memory_->parameters.clear();
    add_field_values();
    const WatchedTable* const watched = plan_->table_plan->watched;
    const bool is_entry = plan_->translation.table->is_trail;
    if (watched || is_entry) begin_hold();
    const WriteResult added = write_new_row();
    plan_->table_plan->written_at = connection_->stamp();
    if (watched) connection_->or_nothing_stands([&] { note_added(*watched); });
    if (is_entry) connection_->trail().note_entries_brought();
    note_witness(added.key, true);
    connection_->release(hold_);
    keyset_->append(added.key);
    last_modified_ = added.key;
    if (plan_->is_whole_row) added_ = {added.key, plan_->table_plan->written_at};
}

WriteResult Recordset::State::write_new_row() {
    try {
        return connection_->write(connection_->insert_plan(*plan_, memory_->written_fields),
                                  memory_->parameters);
    } catch (...) {
        connection_->drop(hold_);
        throw;
    }
}

// Of what the trail has to know: its entry is part of the same transaction.
void Recordset::State::begin_hold() {
    if (!connection_->begin_hold(hold_)) throw Error(ErrorKind::locked, kAnotherUserWrites);
}

void Recordset::State::note_added(const WatchedTable& watched) {
    RowBytes& bytes = connection_->trail().row_bytes();
    bytes.begin(*watched.table);
    std::string_view number;
    memory_->written_fields.each([&](std::size_t field) {
        const Value& value = buffer_.value(memory_->column_of_field[field]);
        if (watched.fields.contains(field)) bytes.add(field, value);
        if (static_cast<int>(field) == watched.number_field) number = value.text_ref();
    });
    connection_->trail().note(watched, true, number);
}

// The row that is being written, or was, as the table holds it, with every field.
const Row& Recordset::State::whole_row() {
    if (plan_->is_whole_row && keyset_->knows_row()) return *keyset_->current();
    if (!connection_->read_row(require_table(), keyset_->current_key(), memory_->changed_row))
        throw Error(ErrorKind::state, kRowIsGone);
    return memory_->changed_row;
}

void Recordset::State::note_witness(RowKey key, bool added) {
    const Table& table = require_table();
    if (!connection_->wants_witness(table, key, added)) return;
    Witness witness{&table, key, added};
    const Row* const row = added ? nullptr : keyset_->current();
    buffer_.each_set_column([&](int column) {
        const bool has_old = row != nullptr && column < row->size();
        witness.fields.push_back({static_cast<int>(place_of_field(column)),
                                  has_old ? row->value(column) : Value(), buffer_.value(column)});
    });
    connection_->note_witness(std::move(witness));
}

void Recordset::State::begin_fields() {
    const std::size_t fields = require_table().fields.size();
    memory_->written_fields.clear(fields);
    memory_->column_of_field.resize(fields);
}

void Recordset::State::write_field(int column) {
    const std::size_t field = place_of_field(column);
    memory_->written_fields.add(field);
    memory_->column_of_field[field] = column;
}

void Recordset::State::add_field_values() {
    memory_->written_fields.each([&](std::size_t field) {
        memory_->parameters.push_back(dialect::parameter_of(buffer_.value(memory_->column_of_field[field])));
    });
}

bool Recordset::State::collect_changes() {
    begin_fields();
    const Row& row = *keyset_->current();
    bool changed = false;
    buffer_.each_set_column([&](int column) {
        if (column < row.size() && row.holds(column, buffer_.value(column))) return;
        write_field(column);
        changed = true;
    });
    return changed;
}

// When the transaction in which the row was taken is over, it has to be taken again.
void Recordset::State::require_held() {
    if (connection_of_edit_ != connection_->times_reconnected())
        throw Error(ErrorKind::lost, "the row being edited was lost with the connection to the company");
    if (transaction_of_edit_ == connection_->transaction_number()) return;
    const Keyset::Taken taken = keyset_->take(hold_);
    if (taken == Keyset::Taken::row_is_gone) throw Error(ErrorKind::state, kRowIsGone);
    if (taken == Keyset::Taken::somebody_has_it) throw Error(ErrorKind::locked, kAnotherUserChanges);
    transaction_of_edit_ = connection_->transaction_number();
}

void Recordset::State::update_row() {
    require_held();
    last_modified_ = keyset_->current_key();
    if (collect_changes()) write_changes();
    connection_->release(hold_);
}

void Recordset::State::write_changes() {
    keyset_->prepare_to_write();
    memory_->parameters.clear();
    add_field_values();
    memory_->parameters.emplace_back(keyset_->current_key());
    note_witness(keyset_->current_key(), false);
    const WatchedTable* const watched = plan_->table_plan->watched;
    if (!watched || !watched->fields.meets(memory_->written_fields)) {
        write_row();
        return show_changes();
    }
    begin_hold();
    const Row& before = whole_row();
    write_row();
    connection_->or_nothing_stands([&] {
        connection_->trail().note(*watched, before, false);
        show_changes();
        connection_->trail().note(*watched, whole_row(), true);
    });
}

void Recordset::State::write_row() {
    PlannedStatement& statement = connection_->update_plan(*plan_, memory_->written_fields);
    if (connection_->write(statement, memory_->parameters).rows == 0)
        throw Error(ErrorKind::state, kRowIsGone);
    plan_->table_plan->written_at = connection_->stamp();
}

void Recordset::State::show_changes() {
    Row& row = keyset_->written();
    bool all_fit = true;
    buffer_.each_set_column([&](int column) {
        if (column < row.size()) all_fit = row.put(column, buffer_.value(column)) && all_fit;
    });
    if (all_fit) return;
    memory_->changed_row.clear();
    memory_->changed_row.expect(static_cast<std::size_t>(row.size()));
    for (int column = 0; column < row.size(); ++column) {
        if (buffer_.is_set(column))
            memory_->changed_row.add(buffer_.value(column));
        else
            memory_->changed_row.add_cell(row, column);
    }
    std::swap(row, memory_->changed_row);
}

}  // namespace brimley::store
