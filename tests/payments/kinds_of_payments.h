// The kinds of payments with a form of their own, as a bookkeeper enters one of each; for tests that put all
// of them through the same.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <utility>
#include <vector>

#include "payments/card/apform_creditcard_payment.h"
#include "payments/misc/apform_misc_payment.h"
#include "payments/prepayment/apform_prepayment.h"
#include "support/sample_host.h"

namespace brimley::testing {

struct KindOfPayment {
    const char* name;
    // Shows the form and enters a payment, which is not saved yet.
    payments::PaymentForm& (*enter)(DeskOfUser& user);
    // Changes a saved payment, in Edit, in every way that an edit can; null: the form has no Edit.
    void (*change)(DeskOfUser& user);
    // --- what the form says ---
    const char* saved;
    const char* save_failed;
    const char* voided;
    const char* void_failed;
    const char* edited;  // null: nothing
};

inline payments::PaymentForm& enter_prepayment(DeskOfUser& user) {
    using controls::Refusal;
    user.ap.showform_APform_prepayment();
    auto& form = *user.ap.frm_prepayment;
    EXPECT_EQ(form.press(105), Refusal::none);
    EXPECT_EQ(form.cmbvendor.type("V1001"), Refusal::none);
    EXPECT_EQ(form.txtprepay.type("250.00"), Refusal::none);
    EXPECT_EQ(form.cmbpono.type("PO-26-00031"), Refusal::none);
    EXPECT_EQ(form.cmbpayby.type("Cash"), Refusal::none);
    EXPECT_EQ(form.cmbcash.type("1000"), Refusal::none);
    return form;
}

inline void change_prepayment(DeskOfUser& user) {
    using controls::Refusal;
    auto& form = *user.ap.frm_prepayment;
    EXPECT_EQ(form.txtprepay.type("300.00"), Refusal::none);
    EXPECT_EQ(form.cmbpono.type("PO-26-00044"), Refusal::none);
    EXPECT_EQ(form.cmbpayby.type("Check"), Refusal::none);
    EXPECT_EQ(form.cmbbank.type("MAIN"), Refusal::none);
    EXPECT_EQ(form.txtcheck.type("2001"), Refusal::none);
    EXPECT_EQ(form.txtcheckdate.type("16/03/2026"), Refusal::none);
}

// Its card has collected what an invoice was charged to it.
inline payments::PaymentForm& enter_card_payment(DeskOfUser& user) {
    using controls::Refusal;
    user.ap.showform_APform_invoice();
    enter(*user.ap.frm_invoice,
          {"Invoice", "V1001", "USD", "", {{"2220", "NOTAX", "gross amount", "500.00"}}});
    EXPECT_EQ(user.ap.frm_invoice->press(101), Refusal::none);
    user.ap.showform_APform_creditcard_payment();
    auto& form = *user.ap.frm_creditcard;
    EXPECT_EQ(form.press(105), Refusal::none);
    EXPECT_EQ(form.cmbcard.type("VISA"), Refusal::none);
    EXPECT_EQ(form.txtbalance.text(), "500.00");
    EXPECT_EQ(form.txtfee.type("10.00"), Refusal::none);
    EXPECT_EQ(form.cmbexpacc.type("6520"), Refusal::none);
    EXPECT_EQ(form.txtpayment.type("510.00"), Refusal::none);
    EXPECT_EQ(form.cmbpayby.type("Check"), Refusal::none);
    EXPECT_EQ(form.cmbbank.type("MAIN"), Refusal::none);
    EXPECT_EQ(form.txtcheck.type("4001"), Refusal::none);
    EXPECT_EQ(form.txtcheckdate.type("16/03/2026"), Refusal::none);
    return form;
}

inline void type_misc_line(payments::APform_misc_payment& form, int row,
                           std::initializer_list<std::pair<const char*, const char*>> cells) {
    for (const auto& [caption, text] : cells)
        EXPECT_EQ(form.dbgrid1.edit_cell(row, form.dbgrid1.get_column(caption), text),
                  controls::Refusal::none)
            << caption;
}

// A tax on top of an amount, and another one in an amount that is spread over several accounts.
inline payments::PaymentForm& enter_misc_payment(DeskOfUser& user) {
    using controls::Refusal;
    user.ap.showform_APform_misc();
    auto& form = *user.ap.frm_misc;
    EXPECT_EQ(form.press(105), Refusal::none);
    EXPECT_EQ(form.txtremit.type("Harbour Stationers"), Refusal::none);
    EXPECT_EQ(form.cmbpayby.type("Cash"), Refusal::none);
    EXPECT_EQ(form.cmbcash.type("1000"), Refusal::none);
    type_misc_line(form, 0, {{"tax code", "STACK"}, {"amount", "100.00"}, {"account", "6300"}});
    type_misc_line(
        form, 1, {{"tax included", "True"}, {"tax code", "GST5"}, {"amount", "105.00"}, {"account", "5900"}});
    return form;
}

inline const std::vector<KindOfPayment>& kinds_of_payments() {
    static const std::vector<KindOfPayment> kKinds{
        {"Prepayment", enter_prepayment, change_prepayment, "Add new Prepayment PP-26-00001 complete",
         "Add new prepayment failed", "Prepayment PP-26-00001 is void.", "Void Prepayment failed",
         "Update complete."},
        {"CardPayment", enter_card_payment, nullptr, "Add new payment PC-26-00001 complete",
         "Add new payment failed", "Payment PC-26-00001 is void.", "Void Payment failed", nullptr},
        {"MiscPayment", enter_misc_payment,
         [](DeskOfUser& user) {
             EXPECT_EQ(user.ap.frm_misc->txtremark.type("by post"), controls::Refusal::none);
         },
         "Add new Payment MPY-26-00001 complete", "Add new payment failed", "Payment MPY-26-00001 is void.",
         "Void Payment failed", nullptr},
    };
    return kKinds;
}

}  // namespace brimley::testing
