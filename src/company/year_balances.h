// The balance rows that a new fiscal year starts with.
#pragma once

#include <string>

#include "kernel/store/database.h"

namespace brimley::company {

// Adds the Balance_period_table rows of `fyear`: one for every balance that has a row in any other year, and
// one of the base ledger for every account that has none.
//
// A balance opens with what it closed at in the nearest earlier year that knows it, or at 0 when its account
// is one of the income statement and not Current Earnings; else with what it opened with in the nearest later
// year. Rows of the year that exist stay as they are. Runs inside the caller's transaction; throws
// store::Error.
void add_year_balances(store::Database& database, const std::string& fyear);

}  // namespace brimley::company
