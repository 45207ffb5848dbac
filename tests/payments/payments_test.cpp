// What a payment does where no console script can look or reach.
#include <gmock/gmock.h>

#include "payment_entry.h"

namespace brimley::testing {

using ::testing::ElementsAre;

class Payments : public ::testing::Test {
  protected:
    Payments() {
        save_invoice(user, {"Invoice", "V1001", "USD", "", {{"5000", "NOTAX", "gross amount", "100.00"}}});
        save_invoice(user, {"Invoice", "V1001", "USD", "", {{"5000", "NOTAX", "gross amount", "60.00"}}});
        user.ap.showform_APform_payment();
        static_cast<void>(user.messages());
    }
    payments::APform_payment& form() { return *user.ap.frm_payment; }
    void pay_both() {
        begin_payment(form(), "V1001");
        edit_item_cell(form(), 0, "pay amount", "100.00");
        edit_item_cell(form(), 1, "pay amount", "60.00");
        pay_total(form());
        press(101);
        EXPECT_THAT(user.messages(), ElementsAre("Add new Payment PY-26-00001 complete"));
    }
    void press(int id) { EXPECT_EQ(form().press(id), controls::Refusal::none); }
    void press_and_agree(int id) {
        user.desk.answers = {true};
        press(id);
    }
    std::string remark() { return company.list("SELECT remark FROM Payment_header_table"); }

    CompanyCopy company{sample_original()};
    DeskOfUser user{company.open()};
};

TEST_F(Payments, CreditsOfTheVendorStandOutInTheList) {
    company.db().Execute("UPDATE AP_transaction_table SET doctype = 'pp' WHERE docno = 'IP-26-00001'");
    begin_payment(form(), "V1001");
    ASSERT_TRUE(form().dbgrid1.on_fetch_row_style);
    EXPECT_EQ(form().dbgrid1.on_fetch_row_style(0), form().Deposit_style);
    EXPECT_NE(form().Deposit_style, 0U);
    EXPECT_EQ(form().dbgrid1.on_fetch_row_style(1), std::nullopt);
    company.db().Execute("UPDATE AP_transaction_table SET doctype = 'vcn' WHERE docno = 'IP-26-00002'");
    form().list_vendor_invoice("V1001");
    EXPECT_EQ(form().dbgrid1.on_fetch_row_style(1), form().Deposit_style);
}

TEST_F(Payments, VoidPassesOverALineWhoseItemIsGone) {
    pay_both();
    company.db().Execute("DELETE * FROM AP_transaction_table WHERE docno = 'IP-26-00001'");
    press_and_agree(133);
    EXPECT_THAT(user.messages(), ElementsAre("PY-26-00001 is void."));
    EXPECT_EQ(company.list("SELECT open_amount FROM AP_transaction_table"), "60");
    EXPECT_EQ(company.list("SELECT fully_paid FROM AP_header_table ORDER BY docno"), "TRUE | FALSE");
}

TEST_F(Payments, SaveFailsForALineWhoseItemIsGone) {
    begin_payment(form(), "V1001");
    edit_item_cell(form(), 0, "pay amount", "100.00");
    pay_total(form());
    company.db().Execute("DELETE * FROM AP_transaction_table WHERE docno = 'IP-26-00001'");
    press(101);
    EXPECT_THAT(user.messages(), ElementsAre("IP-26-00001, pay item 1, has changed since it was listed.",
                                             "Add new payment failed"));
    EXPECT_EQ(company.list("SELECT docno FROM Payment_header_table"), "");
}

TEST_F(Payments, EditOfAPaymentThatWasVoidedMeanwhileChangesNothing) {
    pay_both();
    press(106);
    company.db().Execute("UPDATE Payment_header_table SET void = TRUE");
    EXPECT_EQ(form().txtremark.type("by post"), controls::Refusal::none);
    press(101);
    EXPECT_THAT(user.messages(), ElementsAre("PY-26-00001 was void", "Update failed."));
    EXPECT_EQ(form().mode(), frame::Mode::edit);
    EXPECT_EQ(remark(), "");
}

TEST_F(Payments, EditOfAPaymentThatIsGoneFails) {
    pay_both();
    press(106);
    company.db().Execute("DELETE * FROM Payment_header_table");
    press(101);
    EXPECT_THAT(user.messages(), ElementsAre("Update failed."));
}

}  // namespace brimley::testing
