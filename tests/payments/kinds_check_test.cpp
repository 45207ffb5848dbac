// What the check of the books says of prepayments and card payments, on books that their forms have made and
// that were broken in one place.
#include <gmock/gmock.h>

#include "company/check.h"
#include "kinds_of_payments.h"

namespace brimley::testing {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class CheckKinds : public ::testing::Test {
  protected:
    void save(payments::PaymentForm& form) { EXPECT_EQ(form.press(101), controls::Refusal::none); }
    void agree(payments::PaymentForm& form, int id) {
        user.desk.answers = {true};
        EXPECT_EQ(form.press(id), controls::Refusal::none);
    }
    void sql(const std::string& statement) { company.db().Execute(statement); }
    std::vector<std::string> notes() { return company::books_notes(company.db()); }
    std::vector<std::string> findings() { return company::check_sums(company.db()); }
    // The findings after a value of the only prepayment or card payment was changed.
    std::vector<std::string> after(const std::string& statement) {
        sql(statement);
        return findings();
    }

    CompanyCopy company{sample_original()};
    DeskOfUser user{company.open()};
};

class CheckPrepayments : public CheckKinds {
  protected:
    CheckPrepayments() { save(form); }
    payments::PaymentForm& form = enter_prepayment(user);
};

TEST_F(CheckPrepayments, AgreeAsSavedAndAsVoided) {
    EXPECT_THAT(findings(), IsEmpty());
    EXPECT_THAT(notes(), IsEmpty());
    agree(form, 133);
    EXPECT_THAT(findings(), IsEmpty());
    EXPECT_THAT(notes(), ElementsAre("Prepayment 1pp-1 is void, though its item is open with -250.00"));
}

TEST_F(CheckPrepayments, EditedAmountIsNamed) {
    EXPECT_EQ(form.press(106), controls::Refusal::none);
    change_prepayment(user);
    save(form);
    EXPECT_THAT(findings(), IsEmpty());
    EXPECT_THAT(notes(),
                ElementsAre("Prepayment 1pp-1 was edited to 300.00; its line and what vendor V1001 is "
                            "owed know of 250.00"));
    agree(form, 133);
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(CheckPrepayments, EditPostsToTheVendorsAccountOfTodayAndSaysSo) {
    sql("UPDATE Vendor_table SET prepayment_accno = '1120' WHERE vendor_no = 'V1001'");
    EXPECT_EQ(form.press(106), controls::Refusal::none);
    change_prepayment(user);
    save(form);
    EXPECT_THAT(findings(), IsEmpty());
    EXPECT_EQ(company.list("SELECT prepayment_accno FROM Payment_header_table"), "1120");
}

TEST_F(CheckPrepayments, HasOneLineAndOneItem) {
    EXPECT_THAT(after("DELETE * FROM AP_transaction_table"),
                ElementsAre("Prepayment 1pp-1: it has 0 open items instead of one"));
    EXPECT_THAT(after("DELETE * FROM Payment_transaction_table"),
                ElementsAre("Prepayment 1pp-1: it has 0 lines instead of one"));
}

TEST_F(CheckPrepayments, AmountOfTheItemIsFound) {
    EXPECT_THAT(after("UPDATE AP_transaction_table SET gross_amount = -240, open_amount = -240"),
                ElementsAre("Prepayment 1pp-1: gross amount of its item is -240.00, expected -250.00"));
}

TEST_F(CheckPrepayments, ItemOfAnotherVendorIsFound) {
    EXPECT_THAT(after("UPDATE AP_transaction_table SET vendor_no = 'V1002'"),
                ElementsAre("Prepayment 1pp-1: number, vendor or currency of its item is another one"));
}

TEST_F(CheckPrepayments, VoidItemIsFound) {
    EXPECT_THAT(after("UPDATE AP_transaction_table SET void = TRUE"),
                ElementsAre("Prepayment 1pp-1: its item is void"));
}

TEST_F(CheckPrepayments, AmountsOfTheLineAreFound) {
    EXPECT_THAT(after("UPDATE Payment_transaction_table SET gross_amount = 1, open_amount = 2, balance = 3"),
                ElementsAre("Prepayment 1pp-1: gross amount of its line is 1.00, expected 250.00",
                            "Prepayment 1pp-1: open amount of its line is 2.00, expected 250.00",
                            "Prepayment 1pp-1: balance of its line is 3.00, expected 0.00"));
}

TEST_F(CheckPrepayments, LineOfAnotherAmountIsFoundWithoutAnEdit) {
    sql("UPDATE Payment_transaction_table SET gross_amount = 9, open_amount = 9, pay_amount = 9");
    sql("UPDATE Vendor_table SET owing_balance = -9 WHERE vendor_no = 'V1001'");
    EXPECT_THAT(findings(), ElementsAre("Prepayment 1pp-1: amount of its line is 9.00, expected 250.00"));
}

TEST_F(CheckPrepayments, LineThatNamesAnotherItemIsFound) {
    EXPECT_THAT(after("UPDATE Payment_transaction_table SET ap_docno = 'PP-26-00009'"),
                ElementsAre("Prepayment 1pp-1: its line names another item"));
}

TEST_F(CheckPrepayments, AmountOfTheHeaderIsFound) {
    EXPECT_THAT(after("UPDATE Payment_header_table SET payment_amount = 260"),
                ElementsAre("Prepayment 1pp-1: gross amount of its item is -250.00, expected -260.00",
                            "Prepayment 1pp-1: amount of its line is 250.00, expected 260.00",
                            "Prepayment 1pp-1: amount that waits for its order is 250.00, expected 260.00",
                            "Prepayment 1pp-1: 250.00 was posted to its prepayment account 1400, expected "
                            "260.00",
                            "Prepayment 1pp-1: -250.00 was posted to its cash account 1000, expected "
                            "-260.00"));
}

TEST_F(CheckPrepayments, AccountThatWasNotPostedToIsFound) {
    EXPECT_THAT(after("UPDATE Payment_header_table SET prepayment_accno = '1410'"),
                ElementsAre("Prepayment 1pp-1: 0.00 was posted to its prepayment account 1410, expected "
                            "250.00"));
}

TEST_F(CheckPrepayments, OrderWaitsExactlyWhileItIsOpen) {
    EXPECT_THAT(after("UPDATE Prepayment_waiting_PO_table SET po_no = 'PO-26-00044'"),
                ElementsAre("Prepayment 1pp-1: another order waits for it"));
    EXPECT_THAT(after("DELETE * FROM Prepayment_waiting_PO_table"),
                ElementsAre("Prepayment 1pp-1: 0 rows wait for its order instead of one"));
    EXPECT_THAT(after("UPDATE Payment_header_table SET po_no = ''"), IsEmpty());
}

TEST_F(CheckPrepayments, OrderThatWaitsForNobodyIsFound) {
    EXPECT_THAT(after("UPDATE Prepayment_waiting_PO_table SET prepayment_fkey = '1pp-9'"),
                ElementsAre("Prepayment 1pp-1: 0 rows wait for its order instead of one",
                            "Order PO-26-00031 waits for prepayment 1pp-9, which there is not"));
}

TEST_F(CheckPrepayments, AppliedExactlyWhenAPaymentAppliesIt) {
    sql("DELETE * FROM Prepayment_waiting_PO_table");
    EXPECT_THAT(after("UPDATE Payment_header_table SET invoiced = TRUE, po_no = ''"),
                ElementsAre("Prepayment 1pp-1: it counts as applied, and no payment applies it"));
}

TEST_F(CheckPrepayments, NumberThatRepeatsDoesNotSayWhichIsApplied) {
    EXPECT_EQ(form.press(105), controls::Refusal::none);
    EXPECT_EQ(user.ap.frm_prepayment->txtprepay.type("250.00"), controls::Refusal::none);
    EXPECT_EQ(form.cmbcash.type("1000"), controls::Refusal::none);
    save(form);
    sql("UPDATE Payment_header_table SET docno = 'PP-26-00001', po_no = '', invoiced = TRUE WHERE fkey = "
        "'1pp-2'");
    sql("UPDATE AP_transaction_table SET docno = 'PP-26-00001' WHERE fkey = '1pp-2'");
    sql("UPDATE Payment_transaction_table SET docno = 'PP-26-00001', ap_docno = 'PP-26-00001' WHERE fkey = "
        "'1pp-2'");
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(CheckPrepayments, NamesAGlDocumentThatIsNotReversed) {
    EXPECT_THAT(after("UPDATE GL_header_table SET Reverse = TRUE"),
                ElementsAre("GL document 1gl-1 is reversed, but -250.00 is left on account 1000",
                            "GL document 1gl-1 is reversed, but 250.00 is left on account 1400",
                            "Payment 1pp-1 is not void, but its GL document 1gl-1 is reversed"));
    EXPECT_THAT(after("UPDATE Payment_header_table SET GLFKEY = NULL"),
                ElementsAre("GL document 1gl-1 is reversed, but -250.00 is left on account 1000",
                            "GL document 1gl-1 is reversed, but 250.00 is left on account 1400",
                            "Payment 1pp-1 names no GL document"));
}

TEST_F(CheckPrepayments, WhatIsOwedIsFound) {
    EXPECT_THAT(after("UPDATE Vendor_table SET owing_balance = 0 WHERE vendor_no = 'V1001'"),
                ElementsAre("Vendor V1001: owing_balance is 0.00, by its documents -250.00"));
}

class CheckCardPayments : public CheckKinds {
  protected:
    CheckCardPayments() { save(enter_card_payment(user)); }
};

TEST_F(CheckCardPayments, AgreeAsSavedAndAsVoided) {
    EXPECT_THAT(findings(), IsEmpty());
    agree(*user.ap.frm_creditcard, 133);
    EXPECT_THAT(findings(), IsEmpty());
    EXPECT_THAT(notes(), IsEmpty());
}

TEST_F(CheckCardPayments, LineFollowsBalanceAmountAndFee) {
    EXPECT_THAT(after("UPDATE Payment_header_table SET card_balance = 400"),
                ElementsAre("Card payment 1pc-1: gross amount of its line is 500.00, expected 400.00",
                            "Card payment 1pc-1: open amount of its line is 500.00, expected 400.00",
                            "Card payment 1pc-1: balance of its line is 0.00, expected -100.00"));
    EXPECT_THAT(after("UPDATE Payment_header_table SET card_balance = 500, payment_amount = 600"),
                ElementsAre("Card payment 1pc-1: amount of its line is 510.00, expected 600.00",
                            "Card payment 1pc-1: balance of its line is 0.00, expected -90.00"));
}

TEST_F(CheckCardPayments, FeeIsPostedToItsAccount) {
    EXPECT_THAT(
        after("UPDATE Payment_header_table SET expense_accno = '6510'"),
        ElementsAre("Card payment 1pc-1: 0.00 was posted to its expense account 6510, expected 10.00"));
    EXPECT_THAT(after("UPDATE Payment_header_table SET expense_accno = NULL"),
                ElementsAre("Card payment 1pc-1: its fee has no account"));
}

TEST_F(CheckCardPayments, NameAGlDocument) {
    EXPECT_THAT(after("UPDATE Payment_header_table SET GLFKEY = '1gl-9'"),
                ElementsAre("GL document 1gl-2 is not reversed, but no invoice or payment names it",
                            "Payment 1pc-1: its GL document 1gl-9 does not exist",
                            "Card payment 1pc-1: 0.00 was posted to its expense account 6520, expected "
                            "10.00"));
}

}  // namespace brimley::testing
