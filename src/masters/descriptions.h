// The descriptions of the masters, one function each, and what several of them say.
#pragma once

#include "masters/master.h"

namespace brimley::masters {

inline constexpr Known kAccount{"Account_master_table", "accno", "accname", "account"};
inline constexpr Known kCurrency{"Working_currency_table", "Currency", "description", "currency"};

// "Refund % must be from 0 to 100."; empty when it is.
[[nodiscard]] std::string fault_of_percent(const Entered& row, const char* field, const char* caption);

// --- the ledger and the people (account_masters.cpp) ---
[[nodiscard]] Master accounts();
[[nodiscard]] Master account_currencies();
[[nodiscard]] Master allocations();
[[nodiscard]] Master parameters();
[[nodiscard]] Master rights();

}  // namespace brimley::masters
