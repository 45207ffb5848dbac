// The rows of the vendor aging: items with their amounts in the columns of their ages, and a total after each
// vendor's.
//
// One object serves one fill of the list.
#pragma once

#include <array>

#include "frame/line_columns.h"
#include "inquiries/vendor_cells.h"

namespace brimley::inquiries {

class AgingListing {
  public:
    // The items come by vendor, each with its age_range: the months of thirty days that it is past due, null
    // when it is never due.
    AgingListing(frame::Form& form, controls::Grid& grid, const store::Recordset& items);

    // The current item in a row of the grid, after the total of the vendor before it. Returns the next row.
    [[nodiscard]] int show(const store::Recordset& item, int row);
    // The total of the last vendor.
    void end(int row) { show_total(row); }

  private:
    static constexpr std::size_t kAges = 5;

    void show_total(int row);
    [[nodiscard]] int age_column_of(const store::Value& age) const;

    controls::Grid& grid_;
    frame::LineColumns columns_;
    VendorCells vendor_;
    int open_amount_field_;
    int age_field_;
    int open_amount_column_;
    std::array<int, kAges> age_columns_;
    double vendor_total_ = 0;
};

}  // namespace brimley::inquiries
