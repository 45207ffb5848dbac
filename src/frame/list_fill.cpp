#include "frame/list_fill.h"

#include <algorithm>

#include "frame/line_columns.h"

namespace brimley::frame {

namespace {

// The host is not let go on for each row: that would cost more than the row.
constexpr int kRowsBetweenPauses = 500;

}  // namespace

int ListFill::start() {
    grid_.array.dimension(kRowsMin);
    grid_.go_to(0, 0);
    vendor_names_.clear();
    progress_.set(0);
    progress_.set_visible(true);
    return ++newest_;
}

void ListFill::expect(std::int64_t count) {
    count_ = count;
    shown_ = 0;
    grid_.array.dimension(rows_for(static_cast<int>(count)));
}

// Rows that are no items, such as totals, would bring it past the end.
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

const std::string& ListFill::vendor_name(const std::string& vendor_no) {
    const auto [name, is_new] = vendor_names_.try_emplace(vendor_no);
    if (is_new)
        step("find the vendor's name", [&] {
            name->second = kernel().look_up_text("Vendor_table", {{"vendor_no", vendor_no}}, "VENDOR_NAME");
        });
    return name->second;
}

}  // namespace brimley::frame
