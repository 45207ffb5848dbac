// The acts of a random session on the forms of prepayments and card payments.
#include <fmt/format.h>

#include "frame/form.h"
#include "random_session.h"

namespace brimley::testing {

namespace {

using frame::command::kEditMode;
using frame::command::kNew;

// Prepayments to it by card balance, and can be applied.
constexpr const char* kPrepaidByCard = "V1012";

}  // namespace

void RandomSession::prepay() {
    run("form APform_prepayment");
    press(kNew);
    if (pressed(kNew)) {
        const bool by_card = chance_.percent(60);
        set("cmbvendor", by_card ? kPrepaidByCard : chance_.one_of(vendors_));
        set("txtpaydate", date());
        set("txtprepay", amount());
        if (chance_.percent(10)) {
            set("cmbcurrency", "EUR");
            if (chance_.percent(80)) set("cmbexrate", fmt::format("1.{:03}", chance_.below(1000)));
        }
        if (chance_.percent(50)) set("cmbpono", fmt::format("PO-26-{:05}", chance_.below(20)));
        choose_way_of_paying();
        if (by_card) set("cmbpayby", "VISA");
        press(101);
        if (!pressed(kNew)) {
            used_vendors_.push_back(shown("cmbvendor"));
            count_way_of_paying("ahead");
        }
        leave_without_saving(kNew);
    }
    back_to_invoices();
}

bool RandomSession::go_to_some_prepayment() {
    if (prepayment_docnos_.empty()) return false;
    run("form APform_prepayment");
    run("enter txtdocno " + chance_.one_of(prepayment_docnos_));
    return true;
}

void RandomSession::edit_prepayment() {
    if (!go_to_some_prepayment()) return;
    press(kEditMode);
    if (pressed(kEditMode)) {
        if (chance_.percent(50)) set("txtprepay", amount());
        if (chance_.percent(40)) set("cmbpono", chance_.percent(50) ? " " : "PO-26-00077");
        if (chance_.percent(30)) choose_way_of_paying();
        set("txtremark", "Order " + std::to_string(chance_.below(100)));
        if (chance_.percent(80)) press(101);
        leave_without_saving(kEditMode);
    }
    back_to_invoices();
}

void RandomSession::void_prepayment() {
    if (!go_to_some_prepayment()) return;
    press(133);
    back_to_invoices();
}

void RandomSession::pay_card() {
    static const std::vector<std::string> kCards{"VISA", "VISA", "MASTERCARD", "DINERS"};
    run("form APform_creditcard_payment");
    press(kNew);
    if (pressed(kNew)) {
        set("txtpaydate", date());
        if (chance_.percent(10)) {
            set("cmbcurrency", "EUR");
            set("cmbexrate", fmt::format("1.{:03}", chance_.below(1000)));
        }
        set("cmbcard", chance_.one_of(kCards));
        set("txtpayment", chance_.percent(40) ? shown("txtbalance") : amount());
        if (chance_.percent(50)) {
            set("txtfee", fmt::format("{}.50", chance_.below(20)));
            if (chance_.percent(90)) set("cmbexpacc", "6520");
        }
        choose_way_of_paying();
        press(101);
        if (!pressed(kNew)) count_way_of_paying("for a card");
        leave_without_saving(kNew);
    }
    back_to_invoices();
}

void RandomSession::void_card_payment() {
    if (card_docnos_.empty()) return;
    run("form APform_creditcard_payment");
    run("enter txtdocno " + chance_.one_of(card_docnos_));
    press(133);
    back_to_invoices();
}

}  // namespace brimley::testing
