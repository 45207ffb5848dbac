#include "revaluation/ledger_summary.h"

#include <fmt/format.h>

#include <cmath>

#include "kernel/money.h"
#include "revaluation/apform_revalue.h"

namespace brimley::revaluation {

using kernel::format_money;
using kernel::money_value;

namespace {

constexpr const char* kAccount = "account no";
constexpr const char* kAccountName = "account name";
constexpr const char* kCurrency = "currency";
// By position: their captions carry the base currency.
constexpr int kDebit = 3;
constexpr int kCredit = 4;

}  // namespace

double SummaryRow::amount() const { return debit.empty() ? 0 - money_value(credit) : money_value(debit); }

LedgerSummary::LedgerSummary(APform_revalue& form) : FormPart(form), form_(form) {}

void LedgerSummary::begin() {
    auto& columns = form_.dbgrid2.columns;
    if (columns.size() > kCredit) {
        columns[kDebit].caption = fmt::format("debit ({})", context().BASE_CURRENCY);
        columns[kCredit].caption = fmt::format("credit ({})", context().BASE_CURRENCY);
    }
    form_.dbgrid2.array.dimension(frame::kRowsMin);
}

void LedgerSummary::end(int rows) {
    last_row_.assign(rows - 1);
    form_.dbgrid2.go_to(0, 0);
    form_.dbgrid2.rebind();
}

void LedgerSummary::show(const AccountPairs& payables, const AccountPairs& gains,
                         const AccountPairs& losses) {
    begin();
    int row = 0;
    show_pairs(row, payables, [](double amount) { return amount >= 0 ? Side::debit : Side::credit; });
    show_pairs(row, gains, [](double) { return Side::credit; });
    show_pairs(row, losses, [](double) { return Side::debit; });
    end(row);
}

void LedgerSummary::show(store::Recordset& rows) {
    begin();
    int row = 0;
    for (; !rows.at_eof(); rows.MoveNext(), ++row) {
        const double amount = rows.number("amount");
        show_row(row, {rows.text("accno"), rows.text("Currency"), amount},
                 amount >= 0 ? Side::debit : Side::credit);
    }
    end(row);
}

// A pair without a slot leaves its row blank.
void LedgerSummary::show_pairs(int& row, const AccountPairs& pairs, Side (*side_of)(double amount)) {
    for (int i = 0; i < pairs.count(); ++i, ++row)
        if (const AccountPair* const pair = pairs.at(i)) show_row(row, *pair, side_of(pair->amount));
}

void LedgerSummary::show_row(int row, const AccountPair& pair, Side side) {
    auto& grid = form_.dbgrid2;
    grid.set_cell(row, kAccount, pair.accno);
    step("name of an account", [&] {
        grid.set_cell(row, kAccountName,
                      kernel().look_up_text("Account_master_table", {{"accno", pair.accno}}, "accname"));
    });
    grid.set_cell(row, kCurrency, pair.currency);
    grid.array.set(row, side == Side::debit ? kDebit : kCredit, format_money(std::abs(pair.amount)));
}

std::vector<SummaryRow> LedgerSummary::read() const {
    const auto& grid = form_.dbgrid2;
    std::vector<SummaryRow> rows;
    for (int row = 0; row <= last_row_; ++row)
        rows.push_back({grid.cell(row, kAccount), grid.cell(row, kCurrency),
                        std::string(grid.array.get(row, kDebit)), std::string(grid.array.get(row, kCredit))});
    return rows;
}

bool LedgerSummary::stands_on_account() const {
    return !form_.dbgrid2.cell(form_.dbgrid2.row(), kAccount).empty();
}

}  // namespace brimley::revaluation
