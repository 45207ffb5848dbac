#include "ledger/ledger_accounts.h"

#include "kernel/money.h"

namespace brimley::ledger {

LedgerAccounts::LedgerAccounts(kernel::ModuleG3& kernel) {
    auto rows =
        kernel.read("SELECT accno, accname, debit, inactive, acctype, type FROM Account_master_table");
    for (; !rows.at_eof(); rows.MoveNext())
        accounts_[rows.text("accno")] = {rows.text("accname"), rows.flag("debit"), rows.flag("inactive"),
                                         rows.text("acctype") == "Income Statement",
                                         rows.text("type") == "X"};
}

const LedgerAccount* LedgerAccounts::find(std::string_view accno) const {
    const auto found = accounts_.find(accno);
    return found == accounts_.end() ? nullptr : &found->second;
}

std::string LedgerAccounts::name_of(std::string_view accno) const {
    const LedgerAccount* const account = find(accno);
    return account == nullptr ? std::string{} : account->name;
}

double LedgerAccounts::debit_of(std::string_view accno, double amount) const {
    const LedgerAccount* const account = find(accno);
    return account == nullptr || account->debit ? amount : -amount;
}

double base_amount_of(const store::Recordset& line) {
    return line.field("base_amount").is_null() ? line.number("amount") : line.number("base_amount");
}

std::string debit_text(double debit) { return debit > 0 ? kernel::format_money(debit) : std::string{}; }

std::string credit_text(double debit) { return debit < 0 ? kernel::format_money(-debit) : std::string{}; }

}  // namespace brimley::ledger
