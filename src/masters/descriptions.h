// The descriptions of the masters, one function each, and what several of them say.
#pragma once

#include "masters/master.h"

namespace brimley::masters {

inline constexpr Known kAccount{"Account_master_table", "accno", "accname", "account"};
inline constexpr Known kVendor{"Vendor_table", "vendor_no", "VENDOR_NAME", "vendor"};
inline constexpr Known kCurrency{"Working_currency_table", "Currency", "description", "currency"};

// "Refund % must be from 0 to 100."; empty when it is.
[[nodiscard]] std::string fault_of_percent(const Entered& row, const char* field, const char* caption);

// --- the ledger and the people (account_masters.cpp) ---
[[nodiscard]] Master accounts();
[[nodiscard]] Master account_currencies();
[[nodiscard]] Master allocations();
[[nodiscard]] Master parameters();
// others: whose forms a right can be given on, beside those of the module.
[[nodiscard]] Master rights(const std::vector<Master>& others);

// --- time, numbers, orders (calendar_masters.cpp) ---
[[nodiscard]] Master fiscal_years();
[[nodiscard]] Master periods();
[[nodiscard]] Master working_period();
[[nodiscard]] Master numbers();
[[nodiscard]] Master number_formats();
[[nodiscard]] Master counters();
[[nodiscard]] Master purchase_orders();

}  // namespace brimley::masters
