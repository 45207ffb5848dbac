// Current Earnings as the lines of one GL document move it: its row in each balance table is taken with the
// first line that moves it, and written once, after the last. What is added, and in which order, is the same
// as if each line wrote the row.
//
// A line on the Current Earnings account itself writes the same rows through another recordset, and so comes
// after what was added before it: post_balance and post_balance_period see to that.
#pragma once

#include <string>

#include "kernel/store/database.h"

namespace brimley::kernel {

class ModuleG3;

// The row of one of the tables.
class EarningsRow {
  public:
    // The first row in which the fields hold their values, in edit, with the columns of the query: taken now,
    // unless it is held already. Null when there is none.
    [[nodiscard]] store::Recordset* take(ModuleG3& kernel, const std::string& query,
                                         store::FieldValues fields);
    void write();

  private:
    store::Recordset rows_;
    std::string held_by_;  // the values of the fields; empty: it is not held
};

struct CurrentEarnings {
    EarningsRow balance;
    EarningsRow period;

    void write() {
        balance.write();
        period.write();
    }
};

}  // namespace brimley::kernel
