// A user at the payment form of a company with open invoices.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "payments/invoice_payment/apform_payment.h"
#include "support/sample_host.h"

namespace brimley::testing {

inline void save_invoice(DeskOfUser& user, const EnteredInvoice& invoice) {
    if (!user.ap.frm_invoice) user.ap.showform_APform_invoice();
    enter(*user.ap.frm_invoice, invoice);
    EXPECT_EQ(user.ap.frm_invoice->press(101), controls::Refusal::none);
}

inline void edit_item_cell(payments::APform_payment& form, int row, const char* caption, const char* text) {
    EXPECT_EQ(form.dbgrid1.edit_cell(row, form.dbgrid1.get_column(caption), text), controls::Refusal::none)
        << caption;
}

// Presses New and chooses vendor, currency and a cash account; nothing is paid yet.
inline void begin_payment(payments::APform_payment& form, const char* vendor, const char* currency = "USD",
                          const char* rate = "") {
    using controls::Refusal;
    EXPECT_EQ(form.press(105), Refusal::none);
    EXPECT_EQ(form.cmbvendor.type(vendor), Refusal::none);
    EXPECT_EQ(form.cmbcurrency.type(currency), Refusal::none);
    if (*rate != '\0') {
        EXPECT_EQ(form.cmbexrate.type(rate), Refusal::none);
    }
    EXPECT_EQ(form.cmbpayby.type("Cash"), Refusal::none);
    EXPECT_EQ(form.cmbcash.type("1000"), Refusal::none);
}

// As much as the lines come to.
inline void pay_total(payments::APform_payment& form) {
    EXPECT_EQ(form.txtpayment.type(form.txttotal.text()), controls::Refusal::none);
}

}  // namespace brimley::testing
