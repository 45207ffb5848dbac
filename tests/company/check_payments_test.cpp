// Payments and what they say of items, on books broken in one place.
#include "company/books_fixture.h"

namespace brimley {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class CheckPayments : public testing::BooksTest {
  protected:
    // 1ip-1 was paid 40.00 with 5.00 discount and 1.00 written off, and 30.00 by a payment that is void, of
    // whose discount 2.00 are left.
    CheckPayments() {
        add_payment("1py-1", false);
        add_line("1py-1", 112.35, 40, 5, 1, false);
        add_payment("1py-2", true);
        add_line("1py-2", 66.35, 30, 2, 0, true);
        db().Execute("UPDATE AP_header_table SET paid = TRUE WHERE fkey = '1ip-1'");
        change(item(), {{"docno", "IP-1"},
                        {"open_amount", 66.35},
                        {"paid_amount", 48.0},
                        {"discount_taken", 5.0},
                        {"writeoff", 1.0}});
        change("SELECT * FROM Next_number_fkey_table WHERE doctype = 'py'", {{"fkeyno", 3}});
    }
    static const char* item() { return "SELECT * FROM AP_transaction_table WHERE fkey = '1ip-1'"; }
    void add_payment(const std::string& fkey, bool is_void) {
        add("Payment_header_table", {{"fkey", fkey},
                                     {"company", 1},
                                     {"doctype", "py"},
                                     {"void", is_void},
                                     {"GLFKEY", "1gl-9"},
                                     {"source_form", "APform_payment"}});
    }
    void add_line(const std::string& fkey, double open, double pay, double discount, double writeoff,
                  bool is_void) {
        add("Payment_transaction_table", {{"fkey", fkey},
                                          {"company", 1},
                                          {"ap_docno", "IP-1"},
                                          {"pay_item", 1},
                                          {"gross_amount", 112.35},
                                          {"open_amount", open},
                                          {"pay_amount", pay},
                                          {"discount_taken", discount},
                                          {"writeoff", writeoff},
                                          {"void", is_void}});
    }
    void change_payment(const std::string& fkey, company::FieldValues values) {
        change("SELECT * FROM Payment_header_table WHERE fkey = '" + fkey + "'", values);
    }
};

TEST_F(CheckPayments, ItemPaidInPartWithWhatAVoidLeavesAgrees) {
    // The void one has posted nothing that its GL document could take back.
    change_payment("1py-2", {{"GLFKEY", "1gl-3"}});
    change("SELECT * FROM GL_header_table WHERE fkey = '1gl-3'", {{"Reverse", true}});
    EXPECT_THAT(findings(), ElementsAre("Invoice 1vcn-1 is not void, but its GL document 1gl-3 is reversed"));
}

TEST_F(CheckPayments, VoidPaymentThatPostedNothingIsFound) {
    EXPECT_THAT(findings(), ElementsAre("Payment 1py-2 is void, but posted nothing that could be reversed"));
}

class CheckPaidItems : public CheckPayments {
  protected:
    CheckPaidItems() { db().Execute("UPDATE Payment_header_table SET source_form = 'other'"); }
};

TEST_F(CheckPaidItems, ItemAsItsPaymentsSayAgrees) { EXPECT_THAT(findings(), IsEmpty()); }

TEST_F(CheckPaidItems, EachAmountOfTheItemFollowsItsPayments) {
    change(item(), {{"open_amount", 60.0}});
    EXPECT_THAT(findings(),
                ElementsAre("Document IP-1, pay item 1: open_amount is 60.00, by its payments 66.35"));
    change(item(),
           {{"open_amount", 66.35}, {"paid_amount", 46.0}, {"discount_taken", 0.0}, {"writeoff", 2.0}});
    EXPECT_THAT(findings(),
                ElementsAre("Document IP-1, pay item 1: paid_amount is 46.00, by its payments 48.00",
                            "Document IP-1, pay item 1: discount_taken is 0.00, by its payments 5.00",
                            "Document IP-1, pay item 1: writeoff is 2.00, by its payments 1.00"));
}

TEST_F(CheckPaidItems, ItemOfADocumentThatWasEditedIsNotJudged) {
    change(item(), {{"open_amount", 112.35}, {"paid_amount", {}}, {"discount_taken", {}}, {"writeoff", {}}});
    EXPECT_EQ(findings().size(), 4U);
    change("SELECT * FROM GL_header_table WHERE fkey = '1gl-3'",
           {{"Reverse", true}, {"Source", "AP-INVOICE"}, {"source_docno", "IP-1"}});
    for (const std::string& finding : findings())
        EXPECT_EQ(finding.find("by its payments"), std::string::npos) << finding;
}

TEST_F(CheckPaidItems, WhatWasPaidBeforeTheFirstPaymentIsTakenAsItStands) {
    change("SELECT * FROM Payment_transaction_table WHERE fkey = '1py-1'", {{"open_amount", 100.0}});
    change(item(), {{"open_amount", 54.0}});
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(CheckPaidItems, LinesBelongToAHeaderAndAreVoidWithIt) {
    change_payment("1py-1", {{"void", true}});
    EXPECT_THAT(findings(), ElementsAre("Payment 1py-1 is void, but not all its lines are"));
    db().Execute("DELETE * FROM Payment_header_table WHERE fkey = '1py-1'");
    EXPECT_THAT(findings(), ElementsAre("Payment 1py-1 has a line but no header"));
}

TEST_F(CheckPaidItems, PaymentOfTheFormNamesAGlDocumentThatIsAsVoidAsItself) {
    change_payment("1py-1", {{"source_form", "APform_payment"}, {"GLFKEY", ""}});
    EXPECT_THAT(findings(), ElementsAre("Payment 1py-1 names no GL document"));
    change_payment("1py-1", {{"GLFKEY", "1gl-3"}});
    EXPECT_THAT(findings(), IsEmpty());
    change_payment("1py-2", {{"source_form", "APform_payment"}, {"GLFKEY", "1gl-3"}});
    EXPECT_THAT(findings(), ElementsAre("Payment 1py-2 is void, but its GL document 1gl-3 is not reversed"));
}

TEST_F(CheckPaidItems, ReversedGlDocumentOfAPaymentLeavesNothing) {
    change("SELECT * FROM GL_header_table WHERE fkey = '1gl-3'",
           {{"Source", "AP-PAYMENT"}, {"Reverse", true}});
    EXPECT_EQ(findings().size(), 3U);  // two accounts, and the document that is not void
}

}  // namespace
}  // namespace brimley
