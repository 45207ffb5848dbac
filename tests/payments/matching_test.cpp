// What stands in the payment form and is called by nothing, and the styles of rows.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "payment_entry.h"

namespace brimley::testing {

using ::testing::ElementsAre;

// An invoice of 300.00 in two items, a prepayment of 120.00, and a payment of the rest being entered.
class PaymentMatching : public ::testing::Test {
  protected:
    PaymentMatching() {
        save_invoice(user, {"Invoice",
                            "V1001",
                            "USD",
                            "",
                            {{"5000", "NOTAX", "gross amount", "100.00"},
                             {"5000", "NOTAX", "gross amount", "200.00"}}});
        static_cast<void>(user.messages());
        company.db().Execute("UPDATE AP_transaction_table SET early_discount = 0");
        company.add("AP_transaction_table", {{"fkey", "1pp-1"},
                                             {"docno", "PP-1"},
                                             {"doctype", "pp"},
                                             {"company", "1"},
                                             {"vendor_no", "V1001"},
                                             {"Currency", "USD"},
                                             {"pay_item", "1"},
                                             {"gross_amount", -120.0},
                                             {"open_amount", -120.0}});
        user.ap.showform_APform_payment();
        begin_payment(form(), "V1001");
        edit_item_cell(form(), 0, "write-off", "10.00");
        edit_item_cell(form(), 0, "pay amount", "90.00");
        edit_item_cell(form(), 1, "pay amount", "150.00");
        edit_item_cell(form(), 2, "pay amount", "-120.00");
    }
    void add_counter(double next) {
        company.add("Docno_master_table", {{"company", "1"},
                                           {"doctype", "mp"},
                                           {"fiscalyear", form().cmbfyear.text()},
                                           {"nextdocno", next}});
    }
    payments::APform_payment& form() { return *user.ap.frm_payment; }
    std::string items() {
        return company.list(
            "SELECT docno, pay_item, open_amount, paid_amount, paid FROM AP_transaction_table ORDER BY "
            "docno, "
            "pay_item");
    }

    CompanyCopy company{sample_original()};
    DeskOfUser user{company.open()};
};

TEST_F(PaymentMatching, PairsPrepaymentsFirstAndThenThePayment) {
    add_counter(4);
    EXPECT_TRUE(form().matching());
    // The prepayment pays the first item and 30.00 of the second, the payment the rest of 120.00.
    EXPECT_EQ(company.list("SELECT lineno, invoice_no, pay_item, invoice_open, invoice_pay, invoice_balance, "
                           "writeoff, writeoff_account FROM AP_matching_table ORDER BY lineno"),
              "1 IP-26-00001 1 90 90 0 10 7100 | 2 IP-26-00001 2 200 30 170 - - | "
              "3 IP-26-00001 2 170 120 50 - -");
    EXPECT_EQ(company.list("SELECT deposit_no, deposit_payitem, deposit_gross, deposit_open, deposit_pay, "
                           "deposit_balance FROM AP_matching_table ORDER BY lineno"),
              "PP-1 1 -120 -120 -90 -30 | PP-1 1 -120 -30 -30 0 | - - - - - -");
    EXPECT_EQ(company.list("SELECT receipt_no, receipt_open, receipt_pay, receipt_balance FROM "
                           "AP_matching_table WHERE lineno = 3"),
              "** New ** -120 -120 0");
    EXPECT_EQ(items(), "IP-26-00001 1 0 90 TRUE | IP-26-00001 2 50 150 FALSE | PP-1 1 0 -120 TRUE");
    EXPECT_EQ(company.list("SELECT paid, fully_paid FROM AP_header_table"), "TRUE FALSE");
    EXPECT_EQ(company.list("SELECT nextdocno FROM Docno_master_table WHERE doctype = 'mp'"), "5");
}

TEST_F(PaymentMatching, YearWithoutANumberForItIsToldAndNothingIsDone) {
    const std::string before = items();
    EXPECT_FALSE(form().matching());
    EXPECT_THAT(user.messages(), ElementsAre("Next number of document type mp for fiscal year " +
                                             form().cmbfyear.text() + " is missing."));
    EXPECT_EQ(items(), before);
    EXPECT_EQ(company.list("SELECT lineno FROM AP_matching_table"), "");
}

TEST_F(PaymentMatching, RoutinesThatNothingCallsDoAsTheySay) {
    for (const char* docno : {"ar1", "dp1", "dp2", "ar2"})
        company.add("AR_transaction_table", {{"docno", docno}, {"open_amount", 1.0}});
    form().set_invoice();
    EXPECT_EQ(company.list("SELECT docno, open_amount FROM AR_transaction_table ORDER BY docno"),
              "ar1 760 | ar2 1 | dp1 -250 | dp2 -250");
    form().update_discount_taken("IP-26-00001", "2", 3.25);
    form().update_discount_taken("IP-26-00001", "2", 1);
    EXPECT_EQ(company.list("SELECT discount_taken FROM AP_transaction_table WHERE pay_item = '2'"), "4.25");
    EXPECT_EQ(form().txttotal.text(), "120.00");
    form().chkselect_click(true);
    EXPECT_EQ(form().dbgrid1.array.used_rows(), 0);
    EXPECT_EQ(form().txttotal.text(), "0.00");
    form().chkselect_click(false);
    EXPECT_EQ(form().dbgrid1.array.used_rows(), 3);
}

TEST_F(PaymentMatching, CreditsOfTheVendorStandOutInTheList) {
    EXPECT_EQ(form().dbgrid1.on_fetch_row_style(0), std::nullopt);
    EXPECT_EQ(form().dbgrid1.on_fetch_row_style(2), form().Deposit_style);
    form().dbgrid1.set_cell(1, "document type", "vcn");
    EXPECT_EQ(form().dbgrid1.on_fetch_row_style(1), form().Deposit_style);
}

}  // namespace brimley::testing
