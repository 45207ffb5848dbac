#include "company/period_balances.h"

#include <algorithm>
#include <numeric>

#include "kernel/store/value.h"

namespace brimley::company {

namespace {

// Posting knows each movement by the period text of the GL line.
std::string period_text(int movement) {
    if (movement == kPeriodColumns) return "AD";
    if (movement == kPeriodColumns + 1) return "CL";
    return std::to_string(movement + 1);
}

BalanceColumns columns_of(const std::string& prefix) {
    BalanceColumns columns;
    columns.opening = prefix + "opening_balance";
    columns.year_total = prefix + "ytd_balance";
    for (int period = 1; period <= kPeriodColumns; ++period) {
        const auto at = static_cast<std::size_t>(period - 1);
        // Two of the plain columns have a capital letter in the catalog.
        const bool capital = prefix.empty() && (period == 2 || period == 3);
        columns.movements[at] = prefix + (capital ? "Period" : "period") + std::to_string(period);
        columns.running[at] = prefix + "balperiod" + std::to_string(period);
    }
    columns.movements[kPeriodColumns] = prefix + "adjust";
    columns.movements[kPeriodColumns + 1] = prefix + "closing";
    return columns;
}

}  // namespace

const BalanceColumns& plain_columns() {
    static const BalanceColumns columns = columns_of("");
    return columns;
}

const BalanceColumns& base_columns() {
    static const BalanceColumns columns = columns_of("e_");
    return columns;
}

std::optional<int> movement_of_period(std::string_view period) {
    for (int movement = 0; movement < kMovements; ++movement) {
        if (period == period_text(movement)) return movement;
    }
    return std::nullopt;
}

std::array<double, kPeriodColumns> FamilyBalances::running() const {
    std::array<double, kPeriodColumns> balances{};
    double balance = opening;
    for (std::size_t period = 0; period < balances.size(); ++period) {
        balance += movements[period];
        balances[period] = balance;
    }
    return balances;
}

double FamilyBalances::year_total() const {
    return std::accumulate(movements.begin(), movements.end(), opening);
}

FamilyBalances read_family(const store::Recordset& row, const BalanceColumns& columns) {
    FamilyBalances family;
    family.opening = row.number(columns.opening);
    for (std::size_t movement = 0; movement < family.movements.size(); ++movement) {
        family.movements[movement] = row.number(columns.movements[movement]);
    }
    return family;
}

}  // namespace brimley::company
