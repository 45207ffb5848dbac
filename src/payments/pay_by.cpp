#include "payments/pay_by.h"

#include "payments/payment_form.h"

namespace brimley::payments {

PayBy::PayBy(PaymentForm& form) : DocumentPart(form), form_(form) {}

std::vector<std::vector<std::string>> PayBy::ways() const {
    auto ways = rows_of("SELECT card_name FROM Credit_card_master_table WHERE used = TRUE")();
    ways.insert(ways.begin(), {{"Cash"}, {"Check"}});
    return ways;
}

void PayBy::fill() {
    form_.cmbpayby.set_source([this] { return ways(); });
    form_.cmbcash.set_source(
        rows_of("SELECT accno, accname FROM Account_master_table WHERE accclass = 'Cash' AND type = 'A' "
                "ORDER BY accno DESC"));
    form_.cmbbank.set_source(
        rows_of("SELECT bank_code, bank_name FROM Bank_master_table ORDER BY bank_code DESC"));
}

bool PayBy::is_cash() const { return form_.cmbpayby.text() == "Cash"; }
bool PayBy::is_check() const { return form_.cmbpayby.text() == "Check"; }
bool PayBy::is_by_bank() const { return is_check() || (is_cash() && form_.cmbcash.empty()); }

std::optional<std::string> PayBy::card() const {
    const std::string& way = form_.cmbpayby.text();
    if (is_cash() || is_check() || way == "Pay Later") return std::nullopt;
    return way;
}

void PayBy::show_bank() {
    const std::string way = controls::upper_case(form_.cmbpayby.text());
    form_.cmbbank.set_visible(way.empty() || way == "CASH" || way == "CHECK");
}

// A bank that a card has hidden is shown again for a check; for cash it is unlocked again and stays hidden.
void PayBy::cmbpayby_ItemSelect() {
    const std::string way = controls::upper_case(form_.cmbpayby.text());
    const bool check = way == "CHECK";
    const bool card = !check && way != "CASH";
    for (controls::TextField* field :
         std::initializer_list<controls::TextField*>{&form_.txtcheck, &form_.txtcheckdate}) {
        field->set_locked(!check);
        if (!check) field->set("");
    }
    if (check || card) form_.cmbbank.set_visible(check);
    form_.cmbbank.set_locked(card);
}

void PayBy::lock_check() {
    form_.txtcheck.set_locked(true);
    form_.txtcheckdate.set_locked(true);
}

void PayBy::begin_check() {
    form_.txtcheck.set_locked(false);
    form_.txtcheckdate.set_locked(false);
    form_.txtcheckdate.set(date_text(desk().now()));
}

std::optional<std::string> PayBy::bank_account() const {
    const auto accno =
        kernel().look_up("Bank_master_table", {{"bank_code", form_.cmbbank.text()}}, "account_no");
    return accno ? std::optional(accno->text()) : std::nullopt;
}

std::string PayBy::no_card_account(const std::string& card) {
    return "No Account Payable account for " + card + ".\nCheck its setting in Credit card master.";
}

std::string PayBy::card_account(const std::string& card) const {
    const std::string accno =
        kernel().look_up_text("Credit_card_master_table", {{"card_name", card}}, "payable_accno");
    if (accno.empty()) tell(no_card_account(card));
    return accno;
}

}  // namespace brimley::payments
