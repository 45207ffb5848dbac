// What the void of a check in the list of checks leaves behind, and void prepayments: the check of the books
// expects it, and notes say so.
#include "company/paid_books_fixture.h"

namespace brimley {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class CheckVoidNotes : public testing::PaidBooksTest {
  protected:
    // 1py-2, 30.00 with 2.00 discount, was voided in the list of checks.
    void void_in_the_list(const std::string& gl_docno) {
        db().Execute(
            "UPDATE GL_transaction_table SET docno = '" + gl_docno +
            "', source_docno = 'PY-26-00002', source_form = 'APform_void_check' WHERE fkey = '1gl-5' "
            "AND lineno > 3");
    }
    void owe(double owing_balance) { change(vendor("V1001"), {{"owing_balance", owing_balance}}); }

    void add_prepayment(bool is_void, bool invoiced, double open) {
        add("Payment_header_table", {{"fkey", "1pp-1"},
                                     {"docno", "PP-26-00001"},
                                     {"company", 1},
                                     {"doctype", "pp"},
                                     {"vendor_no", "V1001"},
                                     {"payment_amount", 20},
                                     {"fyear", "2026"},
                                     {"invoiced", invoiced},
                                     {"void", is_void}});
        add("AP_transaction_table", {{"fkey", "1pp-1"},
                                     {"docno", "PP-26-00001"},
                                     {"company", "1"},
                                     {"doctype", "pp"},
                                     {"vendor_no", "V1001"},
                                     {"Source", "AP-PREPAY"},
                                     {"pay_item", "1"},
                                     {"gross_amount", -20},
                                     {"open_amount", open},
                                     {"paid", open == 0}});
        for (const char* counter : {"Next_number_fkey_table", "Docno_master_table"}) {
            const bool keys = std::string(counter) == "Next_number_fkey_table";
            change(std::string("SELECT * FROM ") + counter + " WHERE doctype = 'pp'" +
                       (keys ? "" : " AND fiscalyear = '2026'"),
                   {{keys ? "fkeyno" : "nextdocno", 2}});
        }
    }
    void apply_prepayment() {
        change(payment_line("1py-1"), {{"ap_docno", "PP-26-00001"}, {"ap_doctype", "pp"}});
    }
};

TEST_F(CheckVoidNotes, VoidInTheOwnFormIsNotNoted) { EXPECT_THAT(notes(), IsEmpty()); }

TEST_F(CheckVoidNotes, VoidedCheckLowersWhatIsOwedOnceMore) {
    void_in_the_list("GL-26-00005");
    EXPECT_THAT(findings(), ElementsAre("Vendor V1001: owing_balance is 66.35, by its documents 2.35"));
    owe(2.35);
    EXPECT_THAT(findings(), IsEmpty());
    EXPECT_THAT(notes(), ElementsAre("Payment 1py-2 was voided in the list of checks, which lowered what "
                                     "vendor V1001 is owed by another 32.00"));
}

TEST_F(CheckVoidNotes, ReverseOfAVoidedCheckMayStandInADocumentOfItsOwn) {
    void_in_the_list("GL-26-00008");
    EXPECT_THAT(findings(), IsEmpty());  // it reverses another document
    change(gl_header("1gl-5"), {{"remark", "Reversed by GL-26-00008"}});
    owe(2.35);
    EXPECT_THAT(findings(), IsEmpty());
    EXPECT_EQ(notes().size(), 1U);
}

TEST_F(CheckVoidNotes, PaymentThatIsNotVoidIsNoVoidedCheck) {
    db().Execute(
        "UPDATE GL_transaction_table SET docno = 'GL-26-00004', source_docno = 'PY-26-00001', source_form = "
        "'APform_void_check' WHERE fkey = '1gl-4'");
    EXPECT_THAT(findings(), IsEmpty());
    EXPECT_THAT(notes(), IsEmpty());
}

TEST_F(CheckVoidNotes, PrepaymentVoidedAsACheckStaysInWhatIsOwed) {
    add_prepayment(true, false, -20);
    owe(66.35);
    EXPECT_THAT(findings(), IsEmpty());
    EXPECT_THAT(notes(), ElementsAre("Prepayment 1pp-1 is void, though its item is open with -20.00"));
    change(payment("1pp-1"), {{"GLFKEY", "1gl-5"}});
    db().Execute(
        "UPDATE GL_transaction_table SET docno = 'GL-26-00005', source_docno = 'PP-26-00001', source_form = "
        "'APform_void_check' WHERE fkey = '1gl-5'");
    owe(46.35);
    EXPECT_THAT(findings(), IsEmpty());
    EXPECT_THAT(notes(), ElementsAre("Prepayment 1pp-1 was voided in the list of checks, which left what "
                                     "vendor V1001 is owed lower by 20.00",
                                     "Prepayment 1pp-1 is void, though its item is open with -20.00"));
    owe(56.35);
    EXPECT_THAT(findings(), ElementsAre("Vendor V1001: owing_balance is 56.35, by its documents 46.35"));
}

TEST_F(CheckVoidNotes, AppliedPrepaymentThatIsVoidIsNoted) {
    add_prepayment(true, true, 0);
    apply_prepayment();
    EXPECT_THAT(notes(), ElementsAre("Prepayment 1pp-1 is void, though payment 1py-1 applies it"));
    change(payment("1pp-1"), {{"void", false}});
    EXPECT_THAT(notes(), IsEmpty());
}

TEST_F(CheckVoidNotes, PrepaymentThatStayedAppliedIsNoted) {
    add_prepayment(false, true, -20);
    EXPECT_THAT(notes(), ElementsAre("Prepayment 1pp-1 counts as applied, though no payment applies it"));
    apply_prepayment();
    change(payment_line("1py-1"), {{"void", true}});
    EXPECT_THAT(notes(), ElementsAre("Prepayment 1pp-1 counts as applied, though no payment applies it"));
}

}  // namespace
}  // namespace brimley
