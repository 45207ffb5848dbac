// The rows of G/L SUMMARY: what the ledger document of a run is made of, by account and currency, each amount
// in the base currency on the debit or the credit side.
#pragma once

#include <string>
#include <vector>

#include "frame/form_part.h"
#include "revaluation/account_pairs.h"

namespace brimley::revaluation {

class APform_revalue;

// A row as it stands on screen. A row that has lost its pair is blank.
struct SummaryRow {
    std::string accno;
    std::string currency;
    std::string debit;  // an amount as it is shown; empty when it stands on the other side
    std::string credit;

    // Of either side; debit positive, 0 where there is none.
    [[nodiscard]] double amount() const;
    [[nodiscard]] bool has_amount() const { return !debit.empty() || !credit.empty(); }
};

class LedgerSummary : public frame::FormPart {
  public:
    explicit LedgerSummary(APform_revalue& form);

    // Payable accounts first, on the side of their balance, then gains as credits and losses as debits.
    void show(const AccountPairs& payables, const AccountPairs& gains, const AccountPairs& losses);
    // Of a stored run.
    void show(store::Recordset& rows);

    // Up to the last row of the summary.
    [[nodiscard]] std::vector<SummaryRow> read() const;
    // The cursor stands on a row with an account, as it does after a run that has found something.
    [[nodiscard]] bool stands_on_account() const;

  private:
    enum class Side { debit, credit };
    void begin();
    void end(int rows);
    void show_pairs(int& row, const AccountPairs& pairs, Side (*side_of)(double amount));
    void show_row(int row, const AccountPair& pair, Side side);

    APform_revalue& form_;
    ShortNumber last_row_{-1};
};

}  // namespace brimley::revaluation
