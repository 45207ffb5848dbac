#include "inquiries/aging_listing.h"

#include <algorithm>

#include "kernel/money.h"

namespace brimley::inquiries {

using controls::TextArray;
using frame::LineColumn;
using frame::Shown;

namespace {

constexpr const char* kOpenAmountCaption = "open amount";
constexpr const char* kTotal = "total       ";

// "open amount" is the last one: it is shown a second time, in an age column.
constexpr std::array kAgingColumns{
    LineColumn{"AP document no", "docno", Shown::text},
    LineColumn{"invoice no", "invoice_no", Shown::text},
    LineColumn{"invoice date", "invoice_date", Shown::date},
    LineColumn{"due date", "due_date", Shown::date},
    LineColumn{"pay item", "pay_item", Shown::text},
    LineColumn{"gross amount", "gross_amount", Shown::money},
    LineColumn{kOpenAmountCaption, "open_amount", Shown::money},
};
constexpr std::size_t kOpenAmount = kAgingColumns.size() - 1;

// Up to which age, in months of thirty days past due, an amount stands in the column.
struct AgeColumn {
    const char* caption;
    double up_to;
};
constexpr std::array kAgeColumns{
    AgeColumn{"current", 0},
    AgeColumn{"1 - 30", 1},
    AgeColumn{"31 - 60", 2},
    AgeColumn{"61 - 90", 3},
};
constexpr const char* kOldest = "> 90";

}  // namespace

AgingListing::AgingListing(frame::Form& form, controls::Grid& grid, const store::Recordset& items)
    : grid_(grid),
      columns_(form, grid, kAgingColumns),
      vendor_(form, grid, items),
      open_amount_field_(items.column_of("open_amount")),
      age_field_(items.column_of("age_range")),
      open_amount_column_(grid.get_column(kOpenAmountCaption)) {
    columns_.begin(items);
    static_assert(kAgeColumns.size() + 1 == kAges);
    for (std::size_t age = 0; age < kAgeColumns.size(); ++age)
        age_columns_[age] = grid.get_column(kAgeColumns[age].caption);
    age_columns_.back() = grid.get_column(kOldest);
}

int AgingListing::age_column_of(const store::Value& age) const {
    std::size_t column = 0;
    while (!age.is_null() && column < kAgeColumns.size() && age.number() > kAgeColumns[column].up_to)
        ++column;
    return age_columns_[column];
}

int AgingListing::show(const store::Recordset& item, int row) {
    const bool had_vendor = !vendor_.vendor_no().empty();
    if (vendor_.changes(item)) {
        if (had_vendor) show_total(row++);
        vendor_total_ = 0;
    }
    vendor_total_ += item.column(open_amount_field_).number();
    columns_.read(item);
    std::array<TextArray::CellText, 3> more{
        {{age_column_of(item.column(age_field_)), columns_.text(kOpenAmount)}}};
    const auto vendor = vendor_.cells();
    std::copy(vendor.begin(), vendor.end(), more.begin() + 1);
    columns_.put(row, std::span(more).first(1 + vendor.size()));
    return row + 1;
}

// Wherever the layout has put the open amount, the word stands to the left of it.
void AgingListing::show_total(int row) {
    grid_.array.set(row, open_amount_column_ - 1, kTotal);
    grid_.array.set(row, open_amount_column_, kernel::format_money(vendor_total_));
}

}  // namespace brimley::inquiries
