// The columns of Balance_period_table by family, as posting keeps them.
//
// A row holds each movement twice: plain columns in the ledger's own currency and, under the prefix "e_", the
// same in base currency. From the movements follow the running balances and the year's total. Nothing is
// rounded.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "kernel/store/database.h"

namespace brimley::company {

inline constexpr int kPeriodColumns = 13;
// Thirteen periods, then adjustment, then closing.
inline constexpr int kMovements = kPeriodColumns + 2;

// The names of one family's columns.
struct BalanceColumns {
    std::string opening;
    std::array<std::string, kMovements> movements;
    std::array<std::string, kPeriodColumns> running;
    std::string year_total;
};
[[nodiscard]] const BalanceColumns& plain_columns();
[[nodiscard]] const BalanceColumns& base_columns();

// Which movement a GL line's period text names: "1" to "13", "AD", "CL"; empty for any other text.
[[nodiscard]] std::optional<int> movement_of_period(std::string_view period);

// One family of one row; null counts as 0.
struct FamilyBalances {
    double opening = 0;
    std::array<double, kMovements> movements{};

    [[nodiscard]] std::array<double, kPeriodColumns> running() const;
    [[nodiscard]] double year_total() const;
};
[[nodiscard]] FamilyBalances read_family(const store::Recordset& row, const BalanceColumns& columns);

}  // namespace brimley::company
