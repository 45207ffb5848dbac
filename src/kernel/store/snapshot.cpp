#include "kernel/store/snapshot.h"

#include <algorithm>

#include "kernel/store/dialect/evaluator.h"

namespace brimley::store {

Snapshot::Snapshot(Connection& connection, std::shared_ptr<SelectPlan> plan,
                   std::span<const Parameter> parameters, bool empty)
    : connection_(connection), plan_(std::move(plan)) {
    if (empty) return;
    connection_.query(plan_->rows, parameters, [this](const EngineRow& row) {
        row.read(row_);
        rows_.append(row_);
        return true;
    });
    if (rows_.size() > 1) go(0);  // a single row is at hand already
}

void Snapshot::go(std::int64_t row) {
    at_ = std::clamp<std::int64_t>(row, 0, rows_.size());
    if (!at_eof()) rows_.load(at_, row_);
}

bool Snapshot::find(std::string_view criteria, bool onward) {
    const std::shared_ptr<FilterPlan> plan = connection_.filter_plan(*plan_, criteria);
    const dialect::Expression& condition = *plan->criteria;
    const std::vector<Value> literals = dialect::literal_values(condition, connection_.literals());
    Row tried;
    for (std::int64_t row = onward ? at_ + 1 : 0; row < rows_.size(); ++row) {
        rows_.load(row, tried);
        if (!dialect::meets(condition, tried, literals)) continue;
        go(row);
        return true;
    }
    return false;
}

void Snapshot::go_to(std::int64_t place) {
    if (place < 0 || place >= rows_.size()) throw Error(ErrorKind::state, "no row at this bookmark");
    go(place);
}

}  // namespace brimley::store
