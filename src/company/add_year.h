// Opens a fiscal year: the year, its twelve periods, its counters, and its balance rows with the balances
// carried over.
//
// The year starts on the same day as the other years of the company, or on January 1 in a company without
// any. Balance sheet accounts and Current Earnings open with what the nearest earlier year closed at;
// accounts of the income statement open at 0. In a year before the first one, balances open with what the
// first year opened with.
//
// What is posted to the earlier year afterwards does not move the opening balances that were carried.
#pragma once

#include <string>

#include "kernel/store/database.h"

namespace brimley::company {

// Runs inside the caller's transaction. Throws Refusal when the year or periods of it exist or it
// overlaps another year or lies outside the calendar, UnusableValue when no document can be dated in it, and
// store::Error.
void add_year(store::Database& database, const std::string& fyear);

}  // namespace brimley::company
