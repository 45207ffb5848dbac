// The acts of a random session on the form of miscellaneous payments.
#include <fmt/format.h>

#include "frame/form.h"
#include "random_session.h"

namespace brimley::testing {

namespace {

using frame::command::kEditMode;
using frame::command::kNew;
using store::RecordsetKind;

}  // namespace

// Mostly to accounts that expenses go to.
void RandomSession::enter_expense(int row) {
    static const std::vector<std::string> kExpenses{"6120", "6300", "6310", "6400", "6410", "5900"};
    if (chance_.percent(60)) cell(row, "tax code", chance_.one_of(tax_codes_));
    if (chance_.percent(40)) cell(row, "tax included", chance_.percent(80) ? "TRUE" : "FALSE");
    cell(row, chance_.percent(75) ? "amount" : "net amount", amount());
    if (chance_.percent(95))
        cell(row, "account", chance_.one_of(chance_.percent(85) ? kExpenses : accounts_));
    if (chance_.percent(10)) cell(row, "tax included", chance_.percent(50) ? "TRUE" : "FALSE");
    if (chance_.percent(5)) cell(row, "amount", "");
}

void RandomSession::pay_expenses() {
    static const std::vector<std::string> kCurrencies{"USD", "USD", "USD", "EUR"};
    run("form APform_misc_payment");
    press(kNew);
    if (pressed(kNew)) {
        if (chance_.percent(95)) set("txtremit", "Payee " + std::to_string(chance_.below(100)));
        set("txtpaydate", date());
        set("cmbcurrency", chance_.one_of(kCurrencies));
        if (shown("cmbcurrency") != "USD" && chance_.percent(90))
            set("cmbexrate", fmt::format("1.{:03}", chance_.below(1000)));
        choose_way_of_paying();
        const int rows = chance_.between(1, 4);
        for (int row = 0; row < rows; ++row)
            enter_expense(row);
        press(101);
        if (!pressed(kNew)) count_ways_of_paying_expenses(shown("txtfkey"));
        leave_without_saving(kNew);
    }
    back_to_invoices();
}

void RandomSession::count_ways_of_paying_expenses(const std::string& fkey) {
    const auto count = [&](const char* way, const std::string& from) {
        const auto rows = reader_.database->OpenRecordset(
            fmt::format("SELECT fkey FROM {} AND fkey = '{}'", from, fkey), RecordsetKind::snapshot);
        if (rows.RecordCount() > 0) ++tally_.ways_of_paying[way];
    };
    const std::string lines = "Payment_misc_transaction_table WHERE ";
    const std::string header = "Payment_header_table WHERE ";
    count("for expenses with their tax", lines + "include_tax = TRUE AND tax_amount > 0");
    count("for expenses with tax on top", lines + "include_tax = FALSE AND tax_amount > 0");
    count("for expenses in a foreign currency", header + "Currency <> 'USD'");
    count("for expenses by check", header + "payby = 'Check'");
    count("for expenses by card", header + "payby <> 'Cash' AND payby <> 'Check'");
}

void RandomSession::void_expenses() { void_some_payment("APform_misc_payment", misc_docnos_); }

void RandomSession::edit_expenses() { edit_some_payment("APform_misc_payment", misc_docnos_); }

}  // namespace brimley::testing
