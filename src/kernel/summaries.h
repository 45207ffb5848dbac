// The in-memory summaries from which GL lines are built: amounts added up by account, or by account and
// currency.
//
// Each sum is rounded to two places at every step. A summary has a largest number of entries; one more is an
// error (SummaryFull) that ends the save it happens in.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace brimley::kernel {

class SummaryFull : public std::runtime_error {
  public:
    SummaryFull() : std::runtime_error("Subscript out of range: a document has too many accounts") {}
};

inline constexpr std::size_t kSummaryEntriesMax = 50;

// GL sign: amounts are signed on the account's own side.
struct CurrencySum {
    std::string accno;
    std::string currency;
    double amount = 0;       // in `currency`
    double base_amount = 0;  // in the base currency
};

struct AccountSum {
    std::string accno;
    double amount = 0;
};

// Adds to the entry of the account, or appends one.
void add_to_account_summary(std::vector<AccountSum>& summary, std::string_view accno, double amount);
// The same by account and currency, with both amounts.
void add_to_currency_summary(std::vector<CurrencySum>& summary, std::string_view accno, double amount,
                             double base_amount, std::string_view currency, std::size_t entries_max);

}  // namespace brimley::kernel
