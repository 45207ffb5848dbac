#include "kernel/store/snapshot.h"

#include <algorithm>

#include "kernel/store/dialect/evaluator.h"

namespace brimley::store {

namespace {

constexpr std::int64_t kRowsBetweenPauses = 1000;

}  // namespace

Snapshot::Snapshot(Connection& connection, SelectPlan& plan, Row& row, std::span<const Parameter> parameters,
                   bool empty, const Pause& between)
    : connection_(connection), plan_(plan), row_(row) {
    if (empty) return;
    connection_.query(plan_.rows, parameters, [&](const EngineRow& each) {
        if (count_ == 1) rows_.append(row_);
        each.read(row_);
        if (++count_ > 1) rows_.append(row_);
        if (between && count_ % kRowsBetweenPauses == 0) between();
        return true;
    });
    go(0);
}

void Snapshot::go(std::int64_t row) {
    at_ = std::clamp<std::int64_t>(row, 0, count_);
    if (count_ > 1 && !at_eof()) rows_.load(at_, row_);
}

void Snapshot::load(std::int64_t row, Row& into) const {
    if (count_ > 1)
        rows_.load(row, into);
    else
        into = row_;
}

bool Snapshot::find(std::string_view criteria, bool onward) {
    const std::shared_ptr<FilterPlan> plan = connection_.filter_plan(plan_, criteria);
    const dialect::Expression& condition = *plan->criteria;
    const std::vector<Value> literals = dialect::literal_values(condition, connection_.literals());
    Row tried;
    for (std::int64_t row = onward ? at_ + 1 : 0; row < count_; ++row) {
        load(row, tried);
        if (!dialect::meets(condition, tried, literals)) continue;
        go(row);
        return true;
    }
    return false;
}

void Snapshot::go_to(std::int64_t place) {
    if (place < 0 || place >= count_) throw Error(ErrorKind::state, "no row at this bookmark");
    go(place);
}

}  // namespace brimley::store
