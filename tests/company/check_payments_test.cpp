// Payments with their lines, amounts and GL documents, on books broken in one place.
#include "company/paid_books_fixture.h"

namespace brimley {
namespace {

using store::Value;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class CheckPayments : public testing::PaidBooksTest {};

TEST_F(CheckPayments, BooksWithPaymentsAgree) { EXPECT_THAT(findings(), IsEmpty()); }

TEST_F(CheckPayments, VoidPaymentThatPostedNothingIsFound) {
    db().Execute("DELETE * FROM GL_transaction_table WHERE fkey = '1gl-5'");
    EXPECT_THAT(findings(), ElementsAre("Payment 1py-2 is void, but posted nothing that could be reversed"));
}

TEST_F(CheckPayments, LineBelongsToAHeader) {
    add_line("1py-7", 66.35, 0, 0, 0, false);
    EXPECT_THAT(findings(), ElementsAre("Payment 1py-7 has a line but no header"));
}

TEST_F(CheckPayments, LinesAreVoidWithTheirHeader) {
    change(payment("1py-1"), {{"void", true}, {"source_form", "other"}});
    db().Execute("UPDATE Vendor_table SET owing_balance = 112.35 WHERE vendor_no = 'V1001'");
    EXPECT_THAT(findings(), ElementsAre("Payment 1py-1 is void, but not all its lines are"));
}

TEST_F(CheckPayments, PaymentThatNamesNoGlDocumentIsFound) {
    change(payment("1py-1"), {{"GLFKEY", Value()}});
    EXPECT_THAT(findings(),
                ElementsAre("GL document 1gl-4 is not reversed, but no invoice or payment names it",
                            "Payment 1py-1 names no GL document"));
}

TEST_F(CheckPayments, PaymentThatNamesAGlDocumentWhichIsNotThereIsFound) {
    change(payment("1py-1"), {{"GLFKEY", "1gl-77"}});
    EXPECT_THAT(findings(),
                ElementsAre("GL document 1gl-4 is not reversed, but no invoice or payment names it",
                            "Payment 1py-1: its GL document 1gl-77 does not exist"));
}

TEST_F(CheckPayments, GlDocumentIsReversedExactlyWhenItsPaymentIsVoid) {
    change(gl_header("1gl-5"), {{"Reverse", false}});
    EXPECT_THAT(findings(), ElementsAre("Payment 1py-2 is void, but its GL document 1gl-5 is not reversed"));
    change(payment("1py-1"), {{"GLFKEY", "1gl-5"}, {"vendor_no", Value()}});
    change(payment("1py-2"), {{"GLFKEY", "1gl-4"}});
    change(gl_header("1gl-5"), {{"Reverse", true}});
    db().Execute("UPDATE Vendor_table SET owing_balance = 112.35 WHERE vendor_no = 'V1001'");
    EXPECT_THAT(findings(), ElementsAre("Payment 1py-1 is not void, but its GL document 1gl-5 is reversed",
                                        "Payment 1py-2 is void, but its GL document 1gl-4 is not reversed"));
}

TEST_F(CheckPayments, ReversedGlDocumentOfAPaymentLeavesNothing) {
    db().Execute("DELETE * FROM GL_transaction_table WHERE fkey = '1gl-5' AND lineno = 6");
    raise(balance("7000"), "amount", 2);
    raise(balance("7000"), "base_amount", 2);
    move_period(year("7000"), "", 1, 2);
    move_period(year("7000"), "e_", 1, 2);
    move_earnings(2);
    EXPECT_THAT(findings(), ElementsAre("GL document 1gl-5 does not balance: debit less credit is -2.00",
                                        "GL document 1gl-5 is reversed, but 2.00 is left on account 7000"));
}

TEST_F(CheckPayments, GlDocumentThatNobodyNamesIsFound) {
    add_gl_header("1gl-6", "AP-PAYMENT");
    db().Execute("UPDATE Next_number_fkey_table SET fkeyno = 7 WHERE doctype = 'gl'");
    db().Execute("UPDATE Docno_master_table SET nextdocno = 7 WHERE doctype = 'gl'");
    EXPECT_THAT(findings(), IsEmpty());
    add_gl_line("1gl-6", 1, "1000", 0, 0, "1");
    EXPECT_THAT(findings(),
                ElementsAre("GL document 1gl-6 is not reversed, but no invoice or payment names it"));
    change(gl_header("1gl-6"), {{"Source", "GL-ENTRY"}});
    EXPECT_THAT(findings(), IsEmpty());
}

}  // namespace
}  // namespace brimley
