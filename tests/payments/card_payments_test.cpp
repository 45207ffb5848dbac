// The edit of a card payment, which no command reaches.
#include <gmock/gmock.h>

#include "kinds_of_payments.h"

namespace brimley::testing {

using ::testing::ElementsAre;

class CardPayments : public ::testing::Test {
  protected:
    CardPayments() {
        EXPECT_EQ(enter_card_payment(user).press(101), controls::Refusal::none);
        static_cast<void>(user.messages());
    }
    payments::APform_creditcard_payment& form() { return *user.ap.frm_creditcard; }
    std::string header() {
        return company.list(
            "SELECT payby, payment_amount, bank_accno, check_no, check_date, remark, GLFKEY FROM "
            "Payment_header_table");
    }
    std::string ledger() {
        return company.list(
            "SELECT fkey, accno, amount FROM GL_transaction_table WHERE Source = 'AP-CARD' ORDER BY fkey, "
            "lineno");
    }

    CompanyCopy company{sample_original()};
    DeskOfUser user{company.open()};
};

TEST_F(CardPayments, HaveNoEditCommand) { EXPECT_EQ(form().CommandBars1().find(106), nullptr); }

TEST_F(CardPayments, FirstEditOfACheckPostsAnewBecauseNoSaveStoresTheBanksAccount) {
    form().txtcheck.set("4009");
    form().txtremark.set("sent by post");
    EXPECT_TRUE(form().Update_record());
    EXPECT_THAT(user.messages(), ElementsAre("Update complete."));
    EXPECT_EQ(header(), "Check 510 1050 4009 2026-03-16 sent by post 1gl-3");
    EXPECT_EQ(ledger(),
              "1gl-2 1050 -510 | 1gl-2 2220 500 | 1gl-2 6520 10 | 1gl-2 1050 510 | 1gl-2 2220 -500 | "
              "1gl-2 6520 -10 | 1gl-3 1050 -510 | 1gl-3 2220 500 | 1gl-3 6520 10");
    form().txtremark.set("sent by hand");
    EXPECT_TRUE(form().Update_record());
    EXPECT_EQ(header(), "Check 510 1050 4009 2026-03-16 sent by hand 1gl-3");
}

TEST_F(CardPayments, EditThatNoCommandReachesPostsAnotherAmountAndDoesNotWriteIt) {
    form().txtpayment.set("300.00");
    form().cmbpayby.set("Cash");
    form().cmbcash.set("1000");
    EXPECT_TRUE(form().Update_record());
    EXPECT_EQ(header(), "Check 510 - - -  1gl-3");
    EXPECT_EQ(
        company.list("SELECT accno, amount FROM GL_transaction_table WHERE fkey = '1gl-3' ORDER BY lineno"),
        "1000 -300 | 2220 290 | 6520 10");
}

TEST_F(CardPayments, EditGoesThroughTheChecksOfASave) {
    form().txtpayment.set("");
    EXPECT_FALSE(form().Update_record());
    EXPECT_THAT(user.messages(), ElementsAre("please specify Payment amount"));
}

TEST_F(CardPayments, FailedEditLeavesTheLedgerDocumentOfThePayment) {
    form().txtpayment.set("300.00");
    company.db().Execute("DELETE * FROM Docno_master_table WHERE doctype = 'gl'");
    EXPECT_FALSE(form().Update_record());
    EXPECT_EQ(user.messages().back(), "Update failed.");
    EXPECT_EQ(form().txtglfkey.text(), "1gl-2");
    EXPECT_EQ(header(), "Check 510 - 4001 2026-03-16  1gl-2");
}

}  // namespace brimley::testing
