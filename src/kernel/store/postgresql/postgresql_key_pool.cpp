#include "kernel/store/postgresql/postgresql_key_pool.h"

#include <fmt/format.h>

#include <algorithm>

#include "kernel/store/postgresql/postgresql_layout.h"
#include "kernel/store/postgresql/postgresql_values.h"

namespace brimley::store {

namespace {

std::string key_drawing(std::int64_t count) {
    return fmt::format("SELECT nextval('{}') FROM generate_series(1, {})", kRowKeySequence, count);
}

}  // namespace

RowKey PostgresqlKeyPool::next() {
    if (keys_.empty()) {
        draw(to_draw_);
        to_draw_ = std::min(to_draw_ * 2, kDrawnMax);
    }
    return take();
}

RowKey PostgresqlKeyPool::single() {
    draw(1);
    return take();
}

void PostgresqlKeyPool::end_transaction() {
    keys_.clear();
    to_draw_ = kDrawnAtFirst;
}

void PostgresqlKeyPool::draw(std::int64_t wanted) {
    std::unique_ptr<PostgresqlStatement>& drawing = drawing_[wanted];
    if (!drawing) drawing = session_.command(key_drawing(wanted));
    session_.send(*drawing);
    const PostgresqlResult drawn = session_.finish();
    for (int row = 0; row < PQntuples(drawn.get()); ++row)
        keys_.push_back(whole_number_cell(drawn.get(), row, 0));
}

RowKey PostgresqlKeyPool::take() {
    const RowKey key = keys_.front();
    keys_.pop_front();
    return key;
}

}  // namespace brimley::store
