// What items say was paid of them, against the lines of payments, on books broken in one place.
#include "company/paid_books_fixture.h"

namespace brimley {
namespace {

using store::DateTime;
using store::Value;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class CheckPaidItems : public testing::PaidBooksTest {
  protected:
    // The invoice was edited after both payments: its GL document is the youngest, its item open in full.
    // The payment that stands has been lost on the way, which is told of the vendor's balance alone.
    void edit_first_invoice(DateTime day) {
        db().Execute("UPDATE GL_transaction_table SET fkey = '1gl-6' WHERE fkey = '1gl-1'");
        change(gl_header("1gl-1"), {{"fkey", "1gl-6"}});
        change("SELECT * FROM AP_header_table WHERE fkey = '1ip-1'", {{"GLFKEY", "1gl-6"}, {"paid", false}});
        db().Execute("UPDATE Next_number_fkey_table SET fkeyno = 7 WHERE doctype = 'gl'");
        change(item(), {{"open_amount", 112.35},
                        {"paid_amount", Value()},
                        {"discount_taken", Value()},
                        {"writeoff", Value()},
                        {"date_created", day}});
    }
    static DateTime january(int day) { return *DateTime::from_ymd(2026, 1, day); }
};

TEST_F(CheckPaidItems, EachAmountOfTheItemFollowsItsPayments) {
    change(item(), {{"open_amount", 60.0}});
    EXPECT_THAT(findings(),
                ElementsAre("Document IP-26-00001, pay item 1: open_amount is 60.00, by its payments 66.35"));
    change(item(), {{"open_amount", 66.35}, {"paid_amount", 46.0}});
    EXPECT_THAT(findings(),
                ElementsAre("Document IP-26-00001, pay item 1: paid_amount is 46.00, by its payments 48.00"));
    change(item(), {{"paid_amount", 48.0}, {"discount_taken", 0.0}});
    EXPECT_THAT(findings(), ElementsAre("Document IP-26-00001, pay item 1: discount_taken is 0.00, by its "
                                        "payments 5.00"));
    change(item(), {{"discount_taken", 5.0}, {"writeoff", 2.0}});
    EXPECT_THAT(findings(),
                ElementsAre("Document IP-26-00001, pay item 1: writeoff is 2.00, by its payments 1.00"));
}

TEST_F(CheckPaidItems, ItemOfHalfACentIsPaidWithTheCentThatIsShown) {
    change(item(), {{"gross_amount", 112.335}, {"open_amount", 66.34}});
    EXPECT_THAT(findings(), Not(Contains(HasSubstr("open_amount"))));
    change(item(), {{"open_amount", 66.35}});
    EXPECT_THAT(findings(), Contains(HasSubstr("open_amount is 66.35")));
}

TEST_F(CheckPaidItems, LineThatNamesNoItemIsFoundOnceALine) {
    change(payment_line("1py-2"), {{"pay_item", 9}});
    change(item(), {{"paid_amount", 46.0}});
    EXPECT_THAT(findings(), ElementsAre("Payment 1py-2, line 1: there is no pay item 9 of document "
                                        "IP-26-00001"));
    change(payment_line("1py-2"), {{"ap_docno", "IP-26-00099"}});
    EXPECT_THAT(findings(), ElementsAre("Payment 1py-2, line 1: there is no pay item 9 of document "
                                        "IP-26-00099"));
}

TEST_F(CheckPaidItems, ItemThatALaterEditHasTakenOutIsNotMissed) {
    edit_first_invoice(january(25));
    change(payment_line("1py-2"), {{"pay_item", 9}});
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(CheckPaidItems, EditedItemKnowsNothingOfEarlierPayments) {
    edit_first_invoice(january(25));
    EXPECT_THAT(findings(), IsEmpty());
    // The void came before the edit: it has given this item nothing back.
    change(item(), {{"paid_amount", -30.0}, {"open_amount", 144.35}, {"discount_taken", -2.0}});
    EXPECT_THAT(findings(),
                ElementsAre("Invoice 1ip-1, pay item 1: open amount 144.35 is not between 0 and 112.35"));
}

TEST_F(CheckPaidItems, VoidAfterAnEditGivesBackWhatNeverCameOff) {
    edit_first_invoice(january(15));
    EXPECT_EQ(findings().size(), 3U);  // as if it had not been given back
    change(item(), {{"paid_amount", -30.0}, {"open_amount", 144.35}, {"discount_taken", -2.0}});
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(CheckPaidItems, VoidOnTheDayOfAnEditCameBeforeOrAfterIt) {
    edit_first_invoice(january(20));
    EXPECT_THAT(findings(), IsEmpty());
    change(item(), {{"paid_amount", -30.0}, {"open_amount", 144.35}, {"discount_taken", -2.0}});
    EXPECT_THAT(findings(), IsEmpty());
    change(item(), {{"open_amount", 144.36}});
    EXPECT_THAT(findings(), ElementsAre("Document IP-26-00001, pay item 1: open_amount is 144.36, by its "
                                        "payments 112.35",
                                        "Document IP-26-00001, pay item 1: paid_amount is -30.00, by its "
                                        "payments 0.00",
                                        "Document IP-26-00001, pay item 1: discount_taken is -2.00, by its "
                                        "payments 0.00"));
}

TEST_F(CheckPaidItems, PaymentAfterAnEditCounts) {
    edit_first_invoice(january(25));
    change(payment("1py-1"), {{"GLFKEY", "1gl-7"}});
    change(gl_header("1gl-4"), {{"fkey", "1gl-7"}});
    db().Execute("UPDATE GL_transaction_table SET fkey = '1gl-7' WHERE fkey = '1gl-4'");
    db().Execute("UPDATE Next_number_fkey_table SET fkeyno = 8 WHERE doctype = 'gl'");
    EXPECT_EQ(findings().size(), 4U);  // each amount of the item
    change(item(),
           {{"open_amount", 66.35}, {"paid_amount", 46.0}, {"discount_taken", 5.0}, {"writeoff", 1.0}});
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(CheckPaidItems, WhatAnotherModuleHasPaidBeforeIsTakenAsItStands) {
    change("SELECT * FROM AP_header_table WHERE fkey = '1ip-1'", {{"Source", "PO-BILL"}});
    change(item(), {{"Source", "PO-BILL"}, {"open_amount", 54.0}});
    change(payment_line("1py-1"), {{"open_amount", 100.0}, {"balance", 54.0}});
    EXPECT_THAT(findings(), IsEmpty());
    change(item(), {{"open_amount", 55.0}});
    EXPECT_THAT(findings(),
                ElementsAre("Document IP-26-00001, pay item 1: open_amount is 55.00, by its payments 54.00"));
}

TEST_F(CheckPaidItems, CreditWithADiscountIsOpenWithMoreThanItsGross) {
    change(item(), {{"gross_amount", -5.25}, {"open_amount", -51.25}});
    change(payment_line("1py-1"), {{"gross_amount", -5.25}, {"open_amount", -5.25}, {"balance", -51.25}});
    EXPECT_THAT(findings(),
                ElementsAre("Invoice 1ip-1: its lines come to -5.25, what is taxed and the taxes to 112.35",
                            "Invoice 1ip-1: 112.35 was posted to payable accounts, by its lines -5.25"));
}

TEST_F(CheckPaidItems, ItemWhoseNumberCameAgainIsNotJudged) {
    change(item(), {{"open_amount", 60.0}});
    EXPECT_EQ(findings().size(), 1U);
    change("SELECT * FROM AP_transaction_table WHERE fkey = '1ip-2'", {{"docno", "IP-26-00001"}});
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(CheckPaidItems, WhatPaymentsHavePaidMayComeToNothing) {
    // 2.00 came back with the one payment, and the other's void has left its discount of 2.00 in the amount
    // paid.
    change(payment_line("1py-1"),
           {{"pay_amount", -2.0}, {"discount_taken", 0.0}, {"writeoff", 0.0}, {"balance", 114.35}});
    change(item(),
           {{"open_amount", 114.35}, {"paid_amount", 0.0}, {"discount_taken", 0.0}, {"writeoff", 0.0}});
    EXPECT_THAT(findings(), ::testing::Not(::testing::Contains(::testing::HasSubstr("open"))));
}

TEST_F(CheckPaidItems, OwnLineOfAPrepaymentPaysNoItem) {
    change(payment("1py-1"), {{"doctype", "pp"}, {"source_form", "other"}});
    change(payment_line("1py-1"), {{"ap_docno", "PP-26-00001"}});
    change(item(),
           {{"open_amount", 112.35}, {"paid_amount", 2.0}, {"discount_taken", 0.0}, {"writeoff", 0.0}});
    change(vendor("V1001"), {{"owing_balance", 112.35}});
    EXPECT_THAT(findings(), IsEmpty());
}

}  // namespace
}  // namespace brimley
