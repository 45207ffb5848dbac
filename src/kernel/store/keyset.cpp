#include "kernel/store/keyset.h"

#include <algorithm>

#include "kernel/store/database.h"

namespace brimley::store {

namespace {

// Up to here the keys are tried one by one; the table may be much larger than the keyset.
constexpr std::ptrdiff_t kTriedKeysMax = 256;

// Such values are refused as in a text.
bool no_text_can_hold(FieldValues fields) {
    return std::ranges::any_of(
        fields, [](const auto& field) { return field.second.find('\'') != std::string_view::npos; });
}

}  // namespace

// The criteria of one find, ready to run.
struct Keyset::Search {
    std::shared_ptr<FindPlan> plan;
    dialect::BoundParameters parameters;
    dialect::BoundParameters with_key(RowKey key) const {
        dialect::BoundParameters more;
        more.add(parameters);
        more.add_row_key(key);
        return more;
    }
};

Keyset::Keyset(Connection& connection, SelectPlan& plan, Row& row, std::span<const Parameter> parameters,
               std::vector<Value> outer, bool empty)
    : connection_(connection), plan_(plan), outer_(std::move(outer)), row_(row) {
    if (!empty && !plan_.translation.has_condition) return;
    current_.place = Place::past_end;
    if (empty)
        keys_.emplace(std::vector<RowKey>{});
    else
        open(parameters);
}

void Keyset::open(std::span<const Parameter> parameters) {
    std::vector<RowKey> keys;
    RowKey first_read = 0;
    connection_.query(plan_.head, parameters, [&](const EngineRow& row) {
        keys.push_back(row.key());
        if (keys.size() == 1) {
            first_read = row.key();
            row.read(row_);
        }
        if (keys.size() < dialect::kHeadRows) return true;
        keys.clear();
        connection_.query(plan_.keys, parameters, [&](const EngineRow& each) {
            keys.push_back(each.key());
            return true;
        });
        return false;
    });
    keys_.emplace(std::move(keys));
    if (keys_->size() == 0) return;
    note_read(first_read);
    // Between the two queries somebody may have taken the first row away.
    if (first_read != keys_->at(0)) walk_from(0, 1);
}

void Keyset::read_first() {
    current_.place = Place::past_end;
    dialect::BoundParameters parameters;
    parameters.add(outer_);
    (void)read_match(plan_.first_row, parameters.span());
}

const Row* Keyset::current() {
    if (current_.place == Place::first_unread) read_first();
    return current_.place == Place::on_row ? &row_ : nullptr;
}

std::int64_t Keyset::place() { return current() ? current_.key : -1; }

std::int64_t Keyset::count() { return fetched_keys().size(); }

KeyList& Keyset::fetched_keys() {
    if (!keys_) keys_ = fetch_keys();
    return *keys_;
}

KeyList Keyset::fetch_keys() {
    dialect::BoundParameters parameters;
    parameters.add(outer_);
    std::vector<RowKey> keys;
    connection_.query(plan_.keys, parameters.span(), [&](const EngineRow& row) {
        keys.push_back(row.key());
        return true;
    });
    // Rows added through the recordset stand at its end, wherever the order would put them.
    std::vector<RowKey> sorted = added_;
    std::ranges::sort(sorted);
    std::erase_if(keys, [&](RowKey key) { return std::ranges::binary_search(sorted, key); });
    keys.insert(keys.end(), added_.begin(), added_.end());
    return KeyList(std::move(keys));
}

bool Keyset::read_match(PlannedStatement& statement, std::span<const Parameter> parameters) {
    std::optional<RowKey> found;
    connection_.query(statement, parameters, [&](const EngineRow& row) {
        found = row.key();
        row.read(row_);
        return false;
    });
    if (!found) return false;
    note_read(*found);
    return true;
}

void Keyset::note_read(RowKey key) { current_ = {Place::on_row, key, connection_.stamp()}; }

bool Keyset::read_row(RowKey key) {
    if (current_.place == Place::on_row && key == current_.key && is_fresh()) return true;
    return read_match(plan_.by_key, parameters_of(key).span());
}

void Keyset::walk_from(std::ptrdiff_t index, int step) {
    for (; index >= 0 && index < keys_->size(); index += step)
        if (read_row(keys_->at(index))) return;
    current_.place = Place::past_end;
}

void Keyset::move_first() {
    if (keys_)
        walk_from(0, 1);
    else
        current_.place = Place::first_unread;
}

void Keyset::move_last() { walk_from(fetched_keys().size() - 1, -1); }

void Keyset::move_next() {
    if (!current()) return;
    walk_from(fetched_keys().index_after(current_.key), 1);
}

void Keyset::go_to(std::int64_t place) {
    if (place < 0 || !read_row(place)) throw Error(ErrorKind::state, "no row at this bookmark");
}

dialect::BoundParameters Keyset::parameters_of(RowKey key) const {
    dialect::BoundParameters parameters;
    parameters.add(outer_);
    parameters.add_row_key(key);
    return parameters;
}

Keyset::Taken Keyset::take(std::uint64_t& hold) {
    if (!connection_.begin_hold(hold)) return Taken::somebody_has_it;
    if (is_fresh() || lock_current()) return Taken::yes;
    const bool exists = read_row(current_.key);
    connection_.release(hold);
    return exists ? Taken::somebody_has_it : Taken::row_is_gone;
}

bool Keyset::lock_current() {
    const auto read = [&](const EngineRow& row) {
        row.read(row_);
        return false;
    };
    if (!connection_.lock_row(plan_.held_row, parameters_of(current_.key).span(), read)) return false;
    note_read(current_.key);
    note_held(current_.key);
    return true;
}

Keyset::Taken Keyset::take_equal(FieldValues fields, std::uint64_t& hold) {
    // Nothing is to be held for a row that does not exist.
    const bool at_once = connection_.is_writing() && finds_in_table() && !no_text_can_hold(fields);
    if (!at_once) return find_equal(fields) ? take(hold) : Taken::row_is_gone;
    if (connection_.begin_hold(hold)) {
        if (lock_match(fields)) return Taken::yes;
        connection_.release(hold);
    }
    return find_equal(fields) ? Taken::somebody_has_it : Taken::row_is_gone;
}

bool Keyset::lock_match(FieldValues fields) {
    const Search search = search_for(connection_.find_plan(plan_, fields));
    RowKey key = 0;
    const auto read = [&](const EngineRow& row) {
        key = row.key();
        row.read(row_);
        return false;
    };
    if (!connection_.lock_row(search.plan->held_first, search.parameters.span(), read)) return false;
    note_read(key);
    note_held(key);
    return true;
}

void Keyset::prefetch(FieldValues fields, Purpose purpose) {
    if (!connection_.can_prefetch() || !finds_in_table() || no_text_can_hold(fields)) return;
    const Search search = search_for(connection_.find_plan(plan_, fields));
    PlannedStatement& statement = purpose == Purpose::taking ? search.plan->held_first : search.plan->first;
    connection_.prefetch(statement, search.parameters.span());
}

void Keyset::prepare_to_write() {
    // The change might move the row elsewhere in the order.
    if (plan_.translation.ordered) (void)fetched_keys();
    knows_row_ = connection_.held_row_is_true(current_.stamp, *plan_.table_plan);
}

Row& Keyset::written() {
    if (knows_row_) current_.stamp = connection_.stamp();
    return row_;
}

void Keyset::append(RowKey key) {
    // Nobody else sees it before the transaction ends.
    if (connection_.in_trans()) note_held(key);
    if (keys_)
        keys_->append(key);
    else
        added_.push_back(key);
}

Row& Keyset::go_to_added(RowKey key) {
    note_read(key);
    row_.clear();
    return row_;
}

bool Keyset::find(std::string_view criteria, bool onward) {
    return find_planned(connection_.find_plan(plan_, criteria), onward);
}

bool Keyset::find_equal(FieldValues fields) {
    if (no_text_can_hold(fields)) return find(all_equal(fields), false);
    return find_planned(connection_.find_plan(plan_, fields), false);
}

Keyset::Search Keyset::search_for(std::shared_ptr<FindPlan> plan) const {
    Search search{std::move(plan), {}};
    search.parameters.add(outer_);
    search.parameters.add(search.plan->translation.literals, connection_.literals());
    return search;
}

bool Keyset::find_planned(std::shared_ptr<FindPlan> plan, bool onward) {
    Search search = search_for(std::move(plan));
    if (onward && !current()) return false;
    // In the table itself the order of the recordset is known only as long as no row stands out of it, and
    // "after the current row" only when the order is that of the keys.
    const bool ordered = plan_.translation.ordered;
    if (!keys_ && (!ordered || (added_.empty() && !onward))) return find_in_table(search, onward);
    KeyList& keys = fetched_keys();
    const std::ptrdiff_t from = onward ? keys.index_after(current_.key) : 0;
    return keys.size() <= kTriedKeysMax ? find_key_by_key(search, from) : find_among_matches(search, from);
}

bool Keyset::find_in_table(Search& search, bool onward) {
    FindPlan& plan = *search.plan;
    if (!onward) return read_match(plan.first, search.parameters.span());
    return read_match(plan.first_after, search.with_key(current_.key).span());
}

bool Keyset::find_key_by_key(Search& search, std::ptrdiff_t from) {
    for (std::ptrdiff_t index = from; index < keys_->size(); ++index)
        if (read_match(search.plan->at_key, search.with_key(keys_->at(index)).span())) return true;
    return false;
}

bool Keyset::find_among_matches(Search& search, std::ptrdiff_t from) {
    std::ptrdiff_t best = keys_->size();
    connection_.query(search.plan->keys, search.parameters.span(), [&](const EngineRow& row) {
        const std::ptrdiff_t index = keys_->index_of(row.key());
        if (index >= from) best = std::min(best, index);
        return true;
    });
    return best < keys_->size() && read_row(keys_->at(best));
}

}  // namespace brimley::store
