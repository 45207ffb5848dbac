#include "payments/payment_checks.h"

#include "kernel/money.h"
#include "payments/payment_form.h"

namespace brimley::payments {

PaymentChecks::PaymentChecks(PaymentForm& form) : DocumentPart(form), form_(form) {}

void PaymentChecks::begin() {
    dates = {};
    accno.clear();
}

bool PaymentChecks::payment_date() {
    const auto date = required_date(form_.txtpaydate, "please specify payment date");
    if (date) dates.payment = *date;
    return date.has_value();
}

bool PaymentChecks::is_rate(const std::string& text) {
    return kernel::is_numeric(text) && kernel::money_value(text) > 0;
}

bool PaymentChecks::exchange_rate(NoRate no_rate) {
    if (!foreign() || (form_.cmbexrate.empty() && no_rate == NoRate::passes)) return true;
    if (!is_rate(form_.cmbexrate.text())) return refuse("exchange rate is invalid");
    if (form_.txtratedate.empty()) return true;
    dates.rate = required_date(form_.txtratedate, "please specify rate date");
    return dates.rate.has_value();
}

bool PaymentChecks::check_date(const char* missing) {
    dates.check = required_date(form_.txtcheckdate, missing);
    return dates.check.has_value();
}

bool PaymentChecks::check_number(const WayOfPayingRules& rules) {
    return !form_.txtcheck.empty() || refuse(rules.no_check_number);
}

bool PaymentChecks::bank() {
    const auto account = form_.pay_by.bank_account();
    if (!account) return refuse("Bank code " + form_.cmbbank.text() + " not exist");
    accno = *account;
    return true;
}

bool PaymentChecks::check(const WayOfPayingRules& rules) {
    if (form_.cmbbank.empty()) return refuse(rules.no_bank);
    const bool bank_first = rules.bank_first == WayOfPayingRules::BankFirst::yes;
    if (bank_first && !bank()) return false;
    if (!check_number(rules)) return false;
    if (!bank_first && !bank()) return false;
    const bool may_be_missing = rules.check_date == WayOfPayingRules::CheckDate::may_be_missing;
    return (may_be_missing && form_.txtcheckdate.empty()) || check_date("please specify Check date");
}

bool PaymentChecks::way_of_paying(const WayOfPayingRules& rules, const CardAccount& card_account) {
    if (form_.cmbpayby.empty()) return refuse(rules.no_way);
    if (form_.pay_by.is_check()) return check(rules);
    if (form_.pay_by.is_cash()) {
        if (form_.cmbcash.empty()) return refuse("please specify cash account");
        accno = form_.cmbcash.text();
        return true;
    }
    accno = card_account(form_.cmbpayby.text());
    return !accno.empty();
}

bool PaymentChecks::way_of_paying(const WayOfPayingRules& rules) {
    return way_of_paying(rules, [this](const std::string& card) { return form_.pay_by.card_account(card); });
}

}  // namespace brimley::payments
