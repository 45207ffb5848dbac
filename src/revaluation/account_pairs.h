// Amounts of a run by account and currency, from which the rows of the G/L summary are made.
//
// There are slots for 30 pairs. A further one is counted and has its row, but the row stays blank and its
// amounts are lost; the summary does not balance then, and the run cannot be saved.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "revaluation/short_number.h"

namespace brimley::revaluation {

struct AccountPair {
    std::string accno;
    std::string currency;
    double amount = 0;  // base currency
};

class AccountPairs {
  public:
    static constexpr int kSlots = 30;

    void clear() { count_.assign(0); }
    void add(std::string_view accno, std::string_view currency, double amount);
    // The pairs in the order in which they came, those without a slot included.
    [[nodiscard]] int count() const { return count_; }
    // Null for one without a slot. `index` counts from 0.
    [[nodiscard]] const AccountPair* at(int index) const;

  private:
    ShortNumber count_{0};
    std::array<AccountPair, kSlots> pairs_;
};

}  // namespace brimley::revaluation
