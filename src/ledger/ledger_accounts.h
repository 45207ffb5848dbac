// The chart of accounts as the ledger's forms need it, read once, and the sides of amounts.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "kernel/module_g3.h"

namespace brimley::ledger {

struct LedgerAccount {
    std::string name;
    bool debit = true;  // the side on which it rises
    bool inactive = false;
    bool income_statement = false;
    bool earnings = false;  // Current Earnings, which posting moves by itself
};

class LedgerAccounts {
  public:
    LedgerAccounts() = default;
    // Throws store::Error.
    explicit LedgerAccounts(kernel::ModuleG3& kernel);

    // Null for one that the chart does not have.
    [[nodiscard]] const LedgerAccount* find(std::string_view accno) const;
    [[nodiscard]] std::string name_of(std::string_view accno) const;
    // An amount on the account's own side, as it counts on the debit side; and back. An account that the
    // chart does not have counts as one of the debit side.
    [[nodiscard]] double debit_of(std::string_view accno, double amount) const;

    [[nodiscard]] auto begin() const { return accounts_.begin(); }
    [[nodiscard]] auto end() const { return accounts_.end(); }

  private:
    std::map<std::string, LedgerAccount, std::less<>> accounts_;
};

// What a line of GL_transaction_table moves in base currency, on its account's own side. Lines of generated
// invoices hold it as their amount alone.
[[nodiscard]] double base_amount_of(const store::Recordset& line);

// The amount when it stands on this side, else empty. Nothing stands on either side of 0.
[[nodiscard]] std::string debit_text(double debit);
[[nodiscard]] std::string credit_text(double debit);

}  // namespace brimley::ledger
