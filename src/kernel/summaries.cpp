#include "kernel/summaries.h"

#include <algorithm>

#include "kernel/money.h"

namespace brimley::kernel {

namespace {

// The entry that is the same, or a new one at the end.
template <class Entry, class Same>
Entry& entry_of(std::vector<Entry>& summary, std::size_t entries_max, Same same) {
    const auto found = std::find_if(summary.begin(), summary.end(), same);
    if (found != summary.end()) return *found;
    if (summary.size() == entries_max) throw SummaryFull();
    return summary.emplace_back();
}

}  // namespace

void add_to_account_summary(std::vector<AccountSum>& summary, std::string_view accno, double amount) {
    AccountSum& entry =
        entry_of(summary, kSummaryEntriesMax, [&](const AccountSum& sum) { return sum.accno == accno; });
    entry.accno = accno;
    entry.amount = Round(amount + entry.amount);
}

void add_to_currency_summary(std::vector<CurrencySum>& summary, std::string_view accno, double amount,
                             double base_amount, std::string_view currency, std::size_t entries_max) {
    CurrencySum& entry = entry_of(summary, entries_max, [&](const CurrencySum& sum) {
        return sum.accno == accno && sum.currency == currency;
    });
    entry.accno = accno;
    entry.currency = currency;
    entry.amount = Round(amount + entry.amount);
    entry.base_amount = Round(base_amount + entry.base_amount);
}

}  // namespace brimley::kernel
