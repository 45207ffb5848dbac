#include "frame/list_fill.h"

#include <algorithm>

#include "frame/line_columns.h"

namespace brimley::frame {

namespace {

// A turn of the host at every row would cost more than the row.
constexpr int kRowsBetweenPauses = 500;

}  // namespace

void ListFill::clear() {
    ++newest_;
    grid_.array.dimension(kRowsMin);
    grid_.go_to(0, 0);
    finish();
}

int ListFill::start() {
    clear();
    progress_.set(0);
    progress_.set_visible(true);
    return newest_;
}

void ListFill::expect(std::int64_t count) {
    count_ = count;
    shown_ = 0;
    grid_.array.dimension(rows_for(static_cast<int>(count)));
}

// Totals are rows of the list, but not of the query: without a limit they would move the bar past its end.
void ListFill::note_progress(int row) {
    progress_.set(static_cast<int>(std::min<std::int64_t>(row * std::int64_t{100} / count_, 100)));
    if (row - shown_ < kRowsBetweenPauses) return;
    shown_ = row;
    desk().pump();
}

void ListFill::finish() {
    grid_.rebind();
    progress_.set_visible(false);
}

}  // namespace brimley::frame
