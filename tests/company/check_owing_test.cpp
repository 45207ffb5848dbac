// Payable accounts and what is owed to vendors, on books broken in one place.
#include <fmt/format.h>

#include "company/paid_books_fixture.h"

namespace brimley {
namespace {

using store::Value;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class CheckPayables : public testing::PaidBooksTest {
  protected:
    // Moves an amount from one line of a GL document to another, with the balances of both.
    void move_between_lines(const std::string& gl_fkey, const std::string& from, const std::string& to) {
        for (const auto& [accno, amount] : {std::pair(from, -1.0), std::pair(to, 1.0)}) {
            const std::string line = "SELECT * FROM GL_transaction_table WHERE fkey = '" + gl_fkey +
                                     "' AND accno = '" + accno + "'";
            raise(line, "amount", amount);
            raise(line, "base_amount", amount);
            move_base_ledger(accno, 1, amount);
        }
    }
};

// 5.00 of discount posted to 2000 and 7000 stand on the same side.
TEST_F(CheckPayables, PaymentPostsWhatItsLinesTakeOff) {
    move_between_lines("1gl-4", "7000", "2000");
    move_earnings(-1);
    EXPECT_THAT(findings(),
                ElementsAre("Payment 1py-1: -45.00 was posted to payable accounts, by its lines -46.00"));
}

class CheckInvoicePayables : public CheckPayables {
  protected:
    // The invoice has a third account on its credit side, and 1.00 of its payable went there.
    void post_part_elsewhere() {
        post("1gl-1", 4, "2050", 1);
        change("SELECT * FROM GL_transaction_table WHERE fkey = '1gl-1' AND accno = '2000'",
               {{"amount", 111.35}, {"base_amount", 111.35}});
        move_base_ledger("2000", 1, -1);
    }
};

TEST_F(CheckInvoicePayables, InvoicePostsTheGrossOfItsLines) {
    post_part_elsewhere();
    EXPECT_THAT(findings(),
                ElementsAre("Invoice 1ip-1: 111.35 was posted to payable accounts, by its lines 112.35"));
}

TEST_F(CheckInvoicePayables, PurchaseOnAPayableAccountIsNotJudged) {
    post_part_elsewhere();
    change(item(), {{"po_accno", "2010"}});
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(CheckInvoicePayables, AccountThatTaxesUseIsNotJudged) {
    post_part_elsewhere();
    db().Execute("UPDATE Tax_authority_table SET acc_expense = '2000' WHERE tax_authority = 'EXP'");
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(CheckInvoicePayables, ForeignInvoicePostsItsGrossAtItsRate) {
    change("SELECT * FROM AP_header_table WHERE fkey = '1ip-2'",
           {{"Currency", "EUR"}, {"exchange_rate", 1.25}});
    change("SELECT * FROM AP_transaction_table WHERE fkey = '1ip-2'",
           {{"ap_accno", "2010"}, {"po_accno", "1200"}});
    EXPECT_THAT(findings(), IsEmpty());
    change("SELECT * FROM AP_header_table WHERE fkey = '1ip-2'", {{"exchange_rate", 1.3}});
    EXPECT_THAT(findings(),
                ElementsAre("Invoice 1ip-2: 125.00 was posted to payable accounts, by its lines 130.00"));
}

class CheckOwing : public testing::PaidBooksTest {
  protected:
    void expect_owing(double owing_balance, const std::string& by_documents) {
        change(vendor("V1001"), {{"owing_balance", owing_balance}});
        EXPECT_THAT(findings(), IsEmpty());
        change(vendor("V1001"), {{"owing_balance", owing_balance + 0.01}});
        EXPECT_THAT(findings(),
                    ElementsAre(fmt::format("Vendor V1001: owing_balance is {:.2f}, by its documents {}",
                                            owing_balance + 0.01, by_documents)));
    }
    void expect_note(double owing_balance, const std::string& note) {
        change(vendor("V1001"), {{"owing_balance", owing_balance}});
        EXPECT_THAT(findings(), IsEmpty());
        EXPECT_THAT(notes(), ElementsAre(note));
    }
    // One line of 10.00; the number is that of the next invoice.
    void add_invoice(int number, const std::string& invoice_no) {
        const std::string fkey = fmt::format("1ip-{}", number);
        const std::string docno = fmt::format("IP-26-{:05}", number);
        add("AP_transaction_table", {{"fkey", fkey},
                                     {"docno", docno},
                                     {"doctype", "ip"},
                                     {"vendor_no", "V1001"},
                                     {"invoice_no", invoice_no},
                                     {"Source", "AP-INVOICE"},
                                     {"pay_item", "1"},
                                     {"gross_amount", 10.0},
                                     {"open_amount", 10.0},
                                     {"taxable_amount", 10.0}});
        add("AP_header_table", {{"fkey", fkey},
                                {"docno", docno},
                                {"company", "1"},
                                {"doctype", "ip"},
                                {"Source", "AP"},
                                {"fyear", "2026"}});
        change("SELECT * FROM Docno_master_table WHERE doctype = 'ip' AND fiscalyear = '2026'",
               {{"nextdocno", number + 1}});
        change("SELECT * FROM Next_number_fkey_table WHERE doctype = 'ip'", {{"fkeyno", number + 1}});
    }
    // The invoice comes from another module.
    void take_over_from_purchasing() {
        change("SELECT * FROM AP_header_table WHERE fkey = '1ip-1'", {{"Source", "PO-BILL"}});
        change(item(), {{"Source", "PO-BILL"}});
    }
};

TEST_F(CheckOwing, InvoicesAddAndPaymentsTakeOff) { expect_owing(66.35, "66.35"); }

TEST_F(CheckOwing, CreditNoteTakesItsTotalOff) {
    change("SELECT * FROM AP_transaction_table WHERE fkey = '1vcn-1'",
           {{"vendor_no", "V1001"}, {"Source", "AP-INVOICE"}, {"taxable_amount", 40.0}});
    expect_owing(26.35, "26.35");
}

TEST_F(CheckOwing, AmountsOfSeveralCurrenciesAreAddedAsTheyAre) {
    change("SELECT * FROM AP_transaction_table WHERE fkey = '1ip-2'",
           {{"vendor_no", "V1001"}, {"Source", "AP-INVOICE"}, {"taxable_amount", 100.0}});
    expect_owing(166.35, "166.35");
}

TEST_F(CheckOwing, VoidTakesLinesBelowNothingOffAsTheyAreShown) {
    // 10.00 and -3.00 were owed with 7.00 and are taken off with 13.00.
    for (const auto& [pay_item, amount] : {std::pair("1", 10.0), std::pair("2", -3.0)}) {
        add("AP_transaction_table", {{"fkey", "1ip-3"},
                                     {"docno", "IP-26-00003"},
                                     {"doctype", "ip"},
                                     {"vendor_no", "V1001"},
                                     {"Source", "AP-INVOICE"},
                                     {"pay_item", pay_item},
                                     {"gross_amount", amount},
                                     {"open_amount", amount},
                                     {"taxable_amount", amount},
                                     {"void", true}});
    }
    change("SELECT * FROM Docno_master_table WHERE doctype = 'ip' AND fiscalyear = '2026'",
           {{"nextdocno", 4}});
    add("AP_header_table", {{"fkey", "1ip-3"},
                            {"docno", "IP-26-00003"},
                            {"company", "1"},
                            {"doctype", "ip"},
                            {"Source", "AP"},
                            {"fyear", "2026"},
                            {"void", true}});
    expect_owing(60.35, "60.35");
}

TEST_F(CheckOwing, DocumentOfAnotherModuleWasCountedOrNot) {
    take_over_from_purchasing();
    expect_owing(66.35, "66.35");
    expect_owing(-46, "66.35");
}

TEST_F(CheckOwing, VendorWithoutABalanceOwesTheFirstPayment) {
    take_over_from_purchasing();
    expect_owing(46, "66.35");
}

TEST_F(CheckOwing, FirstPaymentOfAnInvoiceMadeHereIsTakenOff) {
    change(vendor("V1001"), {{"owing_balance", 46.0}});
    EXPECT_THAT(findings(), ElementsAre("Vendor V1001: owing_balance is 46.00, by its documents 66.35"));
}

constexpr const char* kFromTheScreen =
    " (a document that was saved once more is not added again, and a credit note under another word like an "
    "invoice)";

// It stood on the screen, so that its total counted as owed already.
TEST_F(CheckOwing, InvoiceThatWasSavedOnceMoreIsNotAddedAgain) {
    add_invoice(3, "B-7");
    add_invoice(4, "B-7");
    expect_owing(86.35, "86.35");
    expect_note(
        76.35, fmt::format("Vendor V1001: owing_balance is 76.35, by its documents 86.35{}", kFromTheScreen));
    change("SELECT * FROM AP_transaction_table WHERE fkey = '1ip-4'", {{"invoice_no", "B-8"}});
    EXPECT_THAT(findings(), ElementsAre("Vendor V1001: owing_balance is 76.35, by its documents 86.35"));
}

TEST_F(CheckOwing, CreditNoteUnderAnotherWordIsOwedLikeAnInvoice) {
    change("SELECT * FROM AP_transaction_table WHERE fkey = '1vcn-1'",
           {{"vendor_no", "V1001"}, {"Source", "AP-INVOICE"}, {"taxable_amount", 40.0}});
    expect_note(106.35, fmt::format("Vendor V1001: owing_balance is 106.35, by its documents 26.35{}",
                                    kFromTheScreen));
    change(vendor("V1001"), {{"owing_balance", 106.36}});
    EXPECT_THAT(findings(), ElementsAre("Vendor V1001: owing_balance is 106.36, by its documents 26.35"));
}

TEST_F(CheckOwing, EditOfADocumentFromTemplatesAddsWhatWasTyped) {
    take_over_from_purchasing();
    change(vendor("V1001"), {{"owing_balance", 69.35}});
    EXPECT_THAT(findings(), ElementsAre("Vendor V1001: owing_balance is 69.35, by its documents 66.35"));
    change("SELECT * FROM AP_header_table WHERE fkey = '1ip-1'", {{"Source", "AP-RECUR"}});
    change(item(), {{"Source", "AP-RECUR"}});
    expect_note(
        69.35,
        "Vendor V1001: owing_balance is 69.35, by its documents 66.35 (an edit of a document from AP-RECUR "
        "adds what was typed, and does not store it)");
}

// Posted once more, by another document.
class CheckOwingOfEdited : public CheckOwing {
  protected:
    void post_again() {
        add_gl_header("1gl-6", "AP-INVOICE", true);
        db().Execute("UPDATE Next_number_fkey_table SET fkeyno = 7 WHERE doctype = 'gl'");
        db().Execute("UPDATE Docno_master_table SET nextdocno = 7 WHERE doctype = 'gl'");
        for (const char* fkey : {"1gl-1", "1gl-6"})
            change(gl_header(fkey), {{"Source", "AP-INVOICE"}, {"source_docno", "IP-26-00001"}});
    }
};

TEST_F(CheckOwingOfEdited, InvoiceMayBeOwedWithLess) {
    change(vendor("V1001"), {{"owing_balance", 60.35}});
    EXPECT_THAT(findings(), ElementsAre("Vendor V1001: owing_balance is 60.35, by its documents 66.35"));
    post_again();
    EXPECT_THAT(findings(), IsEmpty());
    EXPECT_THAT(notes(), ElementsAre("Vendor V1001: owing_balance is 60.35, by its documents 66.35 (an "
                                     "edit takes lines below nothing off as lines above it)"));
    for (const double owing : {66.34, 66.36}) {
        change(vendor("V1001"), {{"owing_balance", owing}});
        EXPECT_THAT(findings(), ElementsAre(fmt::format(
                                    "Vendor V1001: owing_balance is {:.2f}, by its documents 66.35", owing)));
        EXPECT_THAT(notes(), IsEmpty());
    }
}

TEST_F(CheckOwingOfEdited, InvoiceMayHaveWhatIsTaxedWithoutItsSign) {
    using ::testing::Contains;
    using ::testing::HasSubstr;
    using ::testing::Not;
    const auto told =
        HasSubstr("Invoice 1ip-1: its lines come to -87.65, what is taxed and the taxes to 112.35");
    change(item(), {{"gross_amount", -87.65}});
    EXPECT_THAT(findings(), Contains(told));
    EXPECT_THAT(notes(), Not(Contains(told)));
    post_again();
    EXPECT_THAT(findings(), Not(Contains(told)));
    EXPECT_THAT(notes(),
                Contains("Invoice 1ip-1: its lines come to -87.65, what is taxed and the taxes to 112.35 (an "
                         "edit stores what is taxed without its sign)"));
    // Something else does not go through with it.
    change(item(), {{"gross_amount", -87.60}});
    EXPECT_THAT(findings(), Contains(HasSubstr("Invoice 1ip-1: its lines come to -87.60")));
    EXPECT_THAT(notes(), Not(Contains(HasSubstr("its lines come to"))));
}

TEST_F(CheckOwingOfEdited, CreditNoteMayBeOwedWithMore) {
    post_again();
    change(item(), {{"doctype", "vcn"}});
    change(vendor("V1001"), {{"owing_balance", -158.33}});
    EXPECT_THAT(findings(), IsEmpty());
    EXPECT_THAT(notes(), ElementsAre("Vendor V1001: owing_balance is -158.33, by its documents -158.35 (an "
                                     "edit takes lines below nothing off as lines above it)"));
    change(vendor("V1001"), {{"owing_balance", -158.36}});
    EXPECT_THAT(findings(), ElementsAre("Vendor V1001: owing_balance is -158.36, by its documents -158.35"));
}

TEST_F(CheckOwingOfEdited, ReverseIsNoEdit) {
    post_again();
    change(gl_header("1gl-6"), {{"remark", "Reverse GL GL-26-00001"}});
    change(vendor("V1001"), {{"owing_balance", 60.35}});
    EXPECT_THAT(findings(), Contains("Vendor V1001: owing_balance is 60.35, by its documents 66.35"));
}

// The first two of three rows were too small to be stored.
TEST_F(CheckOwing, RowsThatAreNotStoredAreOwedWithTheirCents) {
    db().Execute("UPDATE AP_transaction_table SET pay_item = 3 WHERE fkey = '1ip-1'");
    db().Execute("UPDATE Payment_transaction_table SET pay_item = 3 WHERE ap_docno = 'IP-26-00001'");
    for (const double owing : {66.34, 66.36}) {
        change(vendor("V1001"), {{"owing_balance", owing}});
        EXPECT_THAT(findings(), IsEmpty());
        EXPECT_THAT(notes(),
                    ElementsAre(fmt::format("Vendor V1001: owing_balance is {:.2f}, by its documents "
                                            "66.35 without rows of less than a cent",
                                            owing)));
    }
    change(vendor("V1001"), {{"owing_balance", 66.37}});
    EXPECT_THAT(findings(), ElementsAre("Vendor V1001: owing_balance is 66.37, by its documents 66.35"));
}

TEST_F(CheckOwing, VendorWithoutDocumentsIsNotJudged) {
    change(vendor("V1004"), {{"owing_balance", 12.0}});
    EXPECT_THAT(findings(), IsEmpty());
}

}  // namespace
}  // namespace brimley
