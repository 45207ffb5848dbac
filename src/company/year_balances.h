// The balance rows that a new fiscal year starts with.
#pragma once

#include <optional>
#include <string>

#include "kernel/store/database.h"

namespace brimley::company {

// The year whose rows a new year's rows are made from.
struct CarryFrom {
    std::string fyear;
    bool is_earlier = true;  // else it follows the new year, and its opening balances stand in
};

// Adds the Balance_period_table rows of `fyear`. Runs inside the caller's transaction; throws store::Error.
void add_year_balances(store::Database& database, const std::string& fyear,
                       const std::optional<CarryFrom>& from);

}  // namespace brimley::company
