// Void invoices and reversed GL documents, on books broken in one place.
#include "company/books_fixture.h"

namespace brimley {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class CheckReversals : public testing::BooksTest {
  protected:
    CheckReversals() { change(gl_header("1gl-1"), {{"Source", "AP-INVOICE"}}); }

    void void_first_invoice() {
        db().Execute("UPDATE AP_header_table SET void = TRUE WHERE fkey = '1ip-1'");
        db().Execute("UPDATE AP_transaction_table SET void = TRUE WHERE fkey = '1ip-1'");
        change(gl_header("1gl-1"), {{"Reverse", true}});
    }
    // The reverse of 1gl-1 in period 1, after line `after` of a document.
    void reverse_lines(const std::string& fkey, int after) {
        add_gl_line(fkey, after + 1, "1300", -5, -5, "1");
        add_gl_line(fkey, after + 2, "2000", -112.35, -112.35, "1");
        add_gl_line(fkey, after + 3, "5000", -107.35, -107.35, "1");
        move_base_ledger("1300", 1, -5);
        move_base_ledger("2000", 1, -112.35);
        move_base_ledger("5000", 1, -107.35);
        raise(balance("3900"), "amount", 107.35);
        move_period(year("3900"), "", 1, 107.35);
        move_period(year("3900"), "e_", 1, 107.35);
    }
    void reverse_in_document_of_its_own() {
        change("SELECT * FROM Next_number_fkey_table WHERE doctype = 'gl'", {{"fkeyno", 5}});
        change("SELECT * FROM Docno_master_table WHERE doctype = 'gl' AND fiscalyear = '2026'",
               {{"nextdocno", 5}});
        add("GL_header_table", {{"company", 1},
                                {"doctype", "gl"},
                                {"fkey", "1gl-4"},
                                {"fyear", "2026"},
                                {"docno", "GL-26-00004"},
                                {"Source", "AP-INVOICE"},
                                {"remark", "Reverse GL GL-26-00001"}});
        change(gl_header("1gl-1"), {{"remark", "Reversed by GL-26-00004"}});
        reverse_lines("1gl-4", 0);
    }
};

TEST_F(CheckReversals, VoidInvoiceReversedInItsOwnGlDocumentAgrees) {
    void_first_invoice();
    reverse_lines("1gl-1", 3);
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(CheckReversals, VoidInvoiceReversedInAnotherGlDocumentAgrees) {
    void_first_invoice();
    reverse_in_document_of_its_own();
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(CheckReversals, VoidInvoiceWithoutAReversalIsFound) {
    void_first_invoice();
    EXPECT_THAT(findings(), ElementsAre("GL document 1gl-1 is reversed, but 5.00 is left on account 1300",
                                        "GL document 1gl-1 is reversed, but 112.35 is left on account 2000",
                                        "GL document 1gl-1 is reversed, but 107.35 is left on account 5000"));
    change(gl_header("1gl-1"), {{"Reverse", false}});
    EXPECT_THAT(findings(), ElementsAre("Invoice 1ip-1 is void, but its GL document 1gl-1 is not reversed"));
}

TEST_F(CheckReversals, ReversalInADocumentThatNobodyNamesIsFound) {
    void_first_invoice();
    reverse_in_document_of_its_own();
    change(gl_header("1gl-4"), {{"remark", "something else"}});
    EXPECT_THAT(findings(),
                ElementsAre("GL document 1gl-1 is reversed, but 5.00 is left on account 1300",
                            "GL document 1gl-1 is reversed, but 112.35 is left on account 2000",
                            "GL document 1gl-1 is reversed, but 107.35 is left on account 5000",
                            "GL document 1gl-4 is not reversed, but no invoice or payment names it"));
}

TEST_F(CheckReversals, NumberThatCameAgainInAnotherYearIsToldApartByWhatItTakesBack) {
    void_first_invoice();
    reverse_in_document_of_its_own();
    for (const char* fkey : {"1gl5", "1gl6"}) {
        add("GL_header_table", {{"company", 1},
                                {"doctype", "gl"},
                                {"fkey", fkey},
                                {"docno", "GL-26-00004"},
                                {"Source", "AP-INVOICE"},
                                {"remark", "Reverse GL GL-26-00001"}});
    }
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(CheckReversals, InvoiceThatIsNotVoidAndNamesAReversedGlDocumentIsFound) {
    void_first_invoice();
    reverse_lines("1gl-1", 3);
    db().Execute("UPDATE AP_header_table SET void = FALSE WHERE fkey = '1ip-1'");
    db().Execute("UPDATE AP_transaction_table SET void = FALSE WHERE fkey = '1ip-1'");
    EXPECT_THAT(findings(), ElementsAre("Invoice 1ip-1 is not void, but its GL document 1gl-1 is reversed"));
}

TEST_F(CheckReversals, ReversalsOfOtherModulesAreNotJudged) {
    change(gl_header("1gl-3"), {{"Source", "GL-ENTRY"}, {"Reverse", true}});
    db().Execute("UPDATE AP_header_table SET GLFKEY = NULL, Source = 'PO-BILL' WHERE fkey = '1vcn-1'");
    EXPECT_THAT(findings(), IsEmpty());
}

}  // namespace
}  // namespace brimley
