// The columns of Balance_period_table and the sums that follow from them.
//
// A row has two families of columns: the plain one in the currency of the row, and its twin in base currency
// with "e_" before each name. Each holds an opening balance, thirteen periods, adjustments and closing, and
// what follows from them: the balance after each period and the year to date. Nothing is rounded.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "kernel/store/database.h"

namespace brimley::kernel {

inline constexpr int kPeriods = 13;

// The rows of Balance_period_table with the columns that posting reads; what follows from them can be set.
[[nodiscard]] const std::string& period_query();

// Where one family's columns stand in a recordset. Posting changes row after row of the same recordset, so
// they are looked up once.
class PeriodFamily {
  public:
    PeriodFamily(const store::Recordset& period_rows, const std::string& prefix);

    // Adds into the column of a period key ("1" to "13", "AD", "CL"; any other key: none), then recomputes.
    // The row is in edit.
    void add(store::Recordset& period_row, std::string_view key, double amount) const;
    // Nulls become 0, balances and year to date follow from the opening balance and the periods.
    void recompute(store::Recordset& period_row) const { add(period_row, "", 0); }

  private:
    // What is entered: the opening balance, the periods, adjustments and closing, in this order.
    static constexpr int kEntered = kPeriods + 3;
    // What follows: the balance after each period, and the year to date.
    static constexpr int kFollowing = kPeriods + 1;

    std::array<int, kEntered> entered_{};
    std::array<int, kFollowing> following_{};
};

struct PeriodColumns {
    explicit PeriodColumns(const store::Recordset& period_rows)
        : plain(period_rows, ""), base(period_rows, "e_"), count(period_rows.column_count()) {}
    // For rows of the same query.
    [[nodiscard]] bool fit(const store::Recordset& period_rows) const {
        return period_rows.column_count() == count;
    }

    PeriodFamily plain;
    PeriodFamily base;
    int count;
};

}  // namespace brimley::kernel
