#include "kernel/store/postgresql/postgresql_prefetch.h"

#include <algorithm>
#include <utility>

#include "kernel/store/postgresql/postgresql_values.h"

namespace brimley::store {

namespace {

struct ToValue {
    Value operator()(std::monostate) const { return {}; }
    template <class Held>
    Value operator()(const Held& held) const {
        return Value(held);
    }
};

std::vector<Value> values_of(std::span<const Parameter> parameters) {
    std::vector<Value> values;
    for (const Parameter& parameter : parameters)
        values.push_back(std::visit(ToValue{}, parameter));
    return values;
}

}  // namespace

void PostgresqlPrefetch::add(const PostgresqlStatement& statement, std::span<const Parameter> parameters,
                             LaterAnswer answer) {
    if (asked_.empty()) written_.clear();
    asked_.push_back({statement.text().holds_row, statement.name(), values_of(parameters), std::move(answer),
                      written_.size()});
}

bool PostgresqlPrefetch::all_locked() const {
    return std::ranges::all_of(asked_, [](const Asked& asked) {
        return !asked.locks_row || (*asked.answer && PQntuples(asked.answer->get()) > 0);
    });
}

void PostgresqlPrefetch::forget_locks() {
    std::erase_if(asked_, [](const Asked& asked) { return asked.locks_row; });
}

void PostgresqlPrefetch::clear() {
    asked_.clear();
    written_.clear();
}

std::optional<PostgresqlPrefetch::Asked> PostgresqlPrefetch::take(const PostgresqlStatement& statement,
                                                                  std::span<const Parameter> parameters) {
    if (asked_.empty()) return std::nullopt;
    const std::vector<Value> values = values_of(parameters);
    // The latest: nothing has been written since that was not before the others, too.
    const auto same = [&](const Asked& asked) {
        return asked.statement == statement.name() && asked.parameters == values;
    };
    const auto found = std::find_if(asked_.rbegin(), asked_.rend(), same);
    if (found == asked_.rend()) return std::nullopt;
    Asked taken = std::move(*found);
    asked_.erase(std::next(found).base());
    return taken;
}

bool PostgresqlPrefetch::is_still_true(const Asked& asked) const {
    const PGresult* const rows = asked.answer->get();
    const std::span written = std::span(written_).subspan(asked.written_before);
    for (int row = 0; row < PQntuples(rows); ++row)
        if (std::ranges::find(written, whole_number_cell(rows, row, 0)) != written.end()) return false;
    return true;
}

}  // namespace brimley::store
