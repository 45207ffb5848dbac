// Balance_table: the running totals per account and currency.

#include <fmt/format.h>

#include "kernel/module_g3.h"

namespace brimley::kernel {

namespace {

using store::Recordset;

constexpr int kBalanceRetries = 5;

void add_to(Recordset& row, const char* field, double amount) { row.set(field, row.number(field) + amount); }

// The fields that find a row, written once: a prefetch and the look-up after it ask for the same.

template <class Look>
auto at_balance(const LedgerKey& key, const Look& look) {
    return look(store::FieldValues{{"company", key.company},
                                   {"ledgertype", key.ledgertype},
                                   {"accno", key.accno},
                                   {"currency", key.Currency}});
}

template <class Look>
auto at_base_balance(const LedgerKey& key, const Look& look) {
    return look(store::FieldValues{{"company", key.company}, {"ledgertype", "A"}, {"accno", key.accno}});
}

// A caller that has just written a line of the account stands on it already.
bool stand_on_account(Recordset& account_rows, const std::string& accno) {
    if (!account_rows.at_eof() && account_rows.text("accno") == accno) return true;
    account_rows.FindFirst({{"accno", accno}});
    return !account_rows.NoMatch();
}

}  // namespace

void ModuleG3::tell_missing_balance(const GlLine& line) {
    const std::string& accno = line.account.accno;
    const auto config = read("SELECT * FROM COA_config_table");
    if (!config.at_eof() && config.text("Currency") == line.Currency)
        return tell(fmt::format("Error! {} does not exist", accno));
    if (!config.at_eof() && !account_currency_exists(accno, line.Currency))
        return tell(fmt::format("Error! account {} has not been set for {} currency", accno, line.Currency));
    reasons_.refused(fmt::format("Account {} has no balance in {}", accno, line.Currency));
}

bool ModuleG3::resolve_current_earnings() {
    if (!Current_Earnings_accno_.empty()) return true;
    const auto row = read("SELECT accno FROM Account_master_table WHERE type = 'X'");
    if (row.at_eof()) {
        tell("Current Earnings account (account type X) has not been set in Account Master");
        return false;
    }
    Current_Earnings_accno_ = row.text("accno");
    return true;
}

bool ModuleG3::post_to_account(Recordset& balance_rows, const GlLine& line) {
    const RowTaken taken = at_balance(line.key(), [&](store::FieldValues fields) {
        return edit_first_with_retry(balance_rows, fields, outside_, kBalanceRetries);
    });
    if (taken == RowTaken::there_is_none) tell_missing_balance(line);
    if (taken == RowTaken::somebody_has_it)
        return refuse(fmt::format("The balance of account {} is held by another user", line.account.accno));
    if (taken != RowTaken::yes) return false;
    add_to(balance_rows, "amount", line.amount);
    add_to(balance_rows, "base_amount", line.base_amount);
    balance_rows.Update();
    return true;
}

// Only `amount` moves, and nobody waits for the row: both are how Current Earnings has always been kept here.
bool ModuleG3::post_current_earnings(EarningsRow& balance, const GlLine& line, bool debit) {
    static const std::string kQuery = "SELECT amount FROM Balance_table";
    if (!resolve_current_earnings()) return false;
    Recordset* const row =
        balance.take(*this, kQuery, {{"company", line.company}, {"accno", Current_Earnings_accno_}});
    if (row == nullptr) {
        tell(fmt::format("Error : No Current Retained Earning account {} in Account Balance",
                         Current_Earnings_accno_));
        return false;
    }
    add_to(*row, "amount", -side_of(debit) * line.amount);
    return true;
}

bool ModuleG3::post_balance(Recordset& balance_rows, const GlLine& line, Recordset& account_rows,
                            CurrentEarnings& earnings) {
    bool posted = false;
    carry_on(reasons_, "post_balance", [&] {
        const std::string& accno = line.account.accno;
        if (accno == Current_Earnings_accno_) earnings.balance.write();
        if (!post_to_account(balance_rows, line)) return;
        if (!stand_on_account(account_rows, accno)) return reasons_.refused(no_account(accno));
        if (account_rows.text("acctype") == "Income Statement" && line.ledgertype == "A" &&
            !post_current_earnings(earnings.balance, line, account_rows.flag("debit"))) {
            return;
        }
        if (line.ledgertype == "F") {
            at_base_balance(line.key(), [&](store::FieldValues fields) { balance_rows.edit_first(fields); });
            if (balance_rows.NoMatch()) {
                tell(fmt::format("Error! {} does not exist in Balance", accno));
                return;
            }
            add_to(balance_rows, "amount", line.base_amount);
            balance_rows.Update();
        }
        posted = true;
    });
    return posted;
}

bool ModuleG3::write_current_earnings(CurrentEarnings& earnings) {
    return carry_on(reasons_, "write_current_earnings", [&] { earnings.write(); });
}

void ModuleG3::prefetch_balance(Recordset& balance_rows, const LedgerKey& key) {
    const auto prefetch = [&](store::FieldValues fields) { balance_rows.prefetch_edit_first(fields); };
    at_balance(key, prefetch);
    if (key.ledgertype == "F") at_base_balance(key, prefetch);
}

bool ModuleG3::add_balance_row(const AccountSegments& account, std::string_view currency) {
    auto rows = find_to_change(
        "Balance_table",
        {{"company", "1"}, {"ledgertype", "F"}, {"accno", account.accno}, {"Currency", currency}});
    if (!rows.at_eof())
        return refuse(fmt::format("Account {} has a balance in {} already", account.accno, currency));
    rows.AddNew();
    rows.set("company", 1);
    rows.set("ledgertype", "F");
    rows.set("accno", account.accno);
    rows.set("Currency", currency);
    rows.set("acccode", account.acccode);
    for (std::size_t i = 0; i < kSubaccFields.size(); ++i)
        rows.set(kSubaccFields[i], account.subacc[i]);
    rows.Update();
    return true;
}

}  // namespace brimley::kernel
