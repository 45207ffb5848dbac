// Miscellaneous payments with their lines, taxes and GL documents, on books broken in one place.
#include "company/paid_books_fixture.h"

namespace brimley {
namespace {

using store::Value;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// The books of PaidBooksTest, and two miscellaneous payments in cash:
//   1mpy-1  100.00 with a tax of 10.00 in it that comes back, and 50.00 with 5.00 of tax on top, half of
//   which
//           comes back; GL document 1gl-6, period 1
//   1mpy-2  7.00, void; GL document 1gl-7 with its reverse, period 1
class CheckMiscPayments : public testing::PaidBooksTest {
  protected:
    CheckMiscPayments() {
        in_transaction([&](store::Database&) {
            add_misc_payment("1mpy-1", "1gl-6", 155, false);
            add_misc_line("1mpy-1", 1, "6300", 100, true, {10, 10, 0});
            add_misc_line("1mpy-1", 2, "6400", 50, false, {5, 2.5, 2.5});
            post_first_misc_payment();
            add_misc_payment("1mpy-2", "1gl-7", 7, true);
            add_misc_line("1mpy-2", 1, "6300", 7, false, {0, 0, 0});
            post_void_misc_payment();
            for (const auto& [doctype, next] : {std::pair("mpy", 3), std::pair("gl", 8)}) {
                const std::string kind = std::string(" WHERE doctype = '") + doctype + "'";
                change("SELECT * FROM Next_number_fkey_table" + kind, {{"fkeyno", next}});
                change("SELECT * FROM Docno_master_table" + kind + " AND fiscalyear = '2026'",
                       {{"nextdocno", next}});
            }
        });
    }

    static std::string misc_line(const std::string& fkey, int pay_item) {
        return "SELECT * FROM Payment_misc_transaction_table WHERE fkey = '" + fkey +
               "' AND pay_item = " + std::to_string(pay_item);
    }
    // Takes an amount from one account of a GL document to another one.
    void move(const std::string& gl_fkey, const std::string& from, const std::string& to, double amount) {
        const auto line = [&](const std::string& accno) {
            return "SELECT * FROM GL_transaction_table WHERE fkey = '" + gl_fkey + "' AND accno = '" + accno +
                   "'";
        };
        for (const auto& [accno, moved] : {std::pair(from, -amount), std::pair(to, amount)}) {
            raise(line(accno), "amount", moved);
            raise(line(accno), "base_amount", moved);
            move_base_ledger(accno, 1, moved);
        }
    }

  private:
    struct Tax {
        double tax, recoverable, allocated;
    };
    void add_misc_payment(const std::string& fkey, const std::string& gl_fkey, double amount, bool is_void) {
        add("Payment_header_table", {{"fkey", fkey},
                                     {"docno", "MPY-26-0000" + fkey.substr(5)},
                                     {"company", 1},
                                     {"doctype", "mpy"},
                                     {"remit_to", "Harbour Stationers"},
                                     {"Currency", "USD"},
                                     {"payby", "Cash"},
                                     {"cash_accno", "1000"},
                                     {"payment_amount", amount},
                                     {"fyear", "2026"},
                                     {"source_form", "APform_misc_payment"},
                                     {"GLFKEY", gl_fkey},
                                     {"void", is_void}});
    }
    void add_misc_line(const std::string& fkey, int pay_item, const std::string& account, double amount,
                       bool included, const Tax& tax) {
        add("Payment_misc_transaction_table", {{"fkey", fkey},
                                               {"docno", "MPY-26-0000" + fkey.substr(5)},
                                               {"company", 1},
                                               {"pay_item", pay_item},
                                               {"pay_amount", amount},
                                               {"account", account},
                                               {"include_tax", included},
                                               {"tax_amount", tax.tax},
                                               {"tax_authority1", "GST"},
                                               {"tax_amount1", tax.tax},
                                               {"tax_recoverable1", tax.recoverable},
                                               {"tax_allocated1", tax.allocated},
                                               {"tax_expensed1", 0.0},
                                               {"void", fkey == "1mpy-2"}});
    }
    void post_first_misc_payment() {
        add_gl_header("1gl-6", "AP-MISCPAY");
        post("1gl-6", 1, "1000", -155);
        post("1gl-6", 2, "1300", 12.5);
        post("1gl-6", 3, "6300", 90);
        post("1gl-6", 4, "6400", 52.5);
        move_earnings(-142.5);
    }
    void post_void_misc_payment() {
        add_gl_header("1gl-7", "AP-MISCPAY", true);
        int number = 0;
        for (const double side : {1.0, -1.0}) {
            add_gl_line("1gl-7", ++number, "1000", side * -7, side * -7, "1");
            add_gl_line("1gl-7", ++number, "6300", side * 7, side * 7, "1");
        }
    }
};

TEST_F(CheckMiscPayments, BooksWithMiscellaneousPaymentsAgree) { EXPECT_THAT(findings(), IsEmpty()); }

TEST_F(CheckMiscPayments, HeaderIsTheSumOfItsLinesAndTheTaxesOnTop) {
    change(misc_line("1mpy-1", 2), {{"include_tax", true}});
    EXPECT_THAT(findings(), ElementsAre("Payment 1mpy-1: payment_amount is 155.00, its lines come to 150.00",
                                        "Payment 1mpy-1: 52.50 was posted to account 6400, expected 47.50"));
    change(misc_line("1mpy-1", 2), {{"include_tax", false}});
    change(payment("1mpy-2"), {{"payment_amount", 7.01}});
    EXPECT_THAT(findings(), ElementsAre("Payment 1mpy-2: payment_amount is 7.01, its lines come to 7.00",
                                        "Payment 1mpy-2: -7.00 was posted to account 1000, expected -7.01"));
}

TEST_F(CheckMiscPayments, LineMayHoldHalfACentMoreThanTheTotalShows) {
    change(misc_line("1mpy-1", 1), {{"pay_amount", 100.005}});
    EXPECT_THAT(findings(), IsEmpty());
    change(misc_line("1mpy-1", 1), {{"pay_amount", 99.995}});
    EXPECT_THAT(findings(), IsEmpty());
    change(misc_line("1mpy-1", 1), {{"pay_amount", 100.0051}});
    EXPECT_THAT(findings(), ElementsAre("Payment 1mpy-1: payment_amount is 155.00, its lines come to 155.01",
                                        "Payment 1mpy-1: 90.00 was posted to account 6300, expected 90.01"));
}

TEST_F(CheckMiscPayments, TaxOfALineIsThatOfItsElements) {
    change(misc_line("1mpy-1", 1), {{"tax_amount1", 9.0}, {"tax_recoverable1", 9.0}});
    EXPECT_THAT(findings(),
                ElementsAre("Payment 1mpy-1, pay item 1: tax_amount is 10.00, its elements come to 9.00"));
}

TEST_F(CheckMiscPayments, LineWithFiveElementsMayHaveHadASixth) {
    change(misc_line("1mpy-1", 1), {{"tax_authority2", "A"},
                                    {"tax_authority3", "B"},
                                    {"tax_authority4", "C"},
                                    {"tax_authority5", "D"},
                                    {"tax_amount1", 9.0},
                                    {"tax_recoverable1", 9.0}});
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(CheckMiscPayments, LinesAreVoidWithTheirHeader) {
    change(misc_line("1mpy-2", 1), {{"void", false}});
    EXPECT_THAT(findings(), ElementsAre("Payment 1mpy-2 is void, but not all its lines are"));
    change(misc_line("1mpy-2", 1), {{"void", true}});
    change(misc_line("1mpy-1", 2), {{"void", true}});
    EXPECT_THAT(findings(), ElementsAre("Payment 1mpy-1 is not void, but not all its lines are"));
}

TEST_F(CheckMiscPayments, HeaderHasLinesAndALineHasAHeader) {
    db().Execute("UPDATE Payment_misc_transaction_table SET fkey = '1mpy-9' WHERE fkey = '1mpy-2'");
    EXPECT_THAT(findings(),
                ElementsAre("Payment 1mpy-2 has no lines", "Payment 1mpy-9 has a line but no header"));
}

TEST_F(CheckMiscPayments, GlDocumentIsThereAndReversedExactlyWhenThePaymentIsVoid) {
    change(gl_header("1gl-7"), {{"Reverse", false}});
    EXPECT_THAT(findings(), ElementsAre("Payment 1mpy-2 is void, but its GL document 1gl-7 is not reversed"));
    change(gl_header("1gl-7"), {{"Reverse", true}});
    change(payment("1mpy-1"), {{"GLFKEY", "1gl-77"}});
    EXPECT_THAT(findings(),
                ElementsAre("GL document 1gl-6 is not reversed, but no invoice or payment names it",
                            "Payment 1mpy-1: its GL document 1gl-77 does not exist"));
    change(payment("1mpy-1"), {{"GLFKEY", Value()}});
    EXPECT_THAT(findings(),
                ElementsAre("GL document 1gl-6 is not reversed, but no invoice or payment names it",
                            "Payment 1mpy-1 names no GL document"));
}

TEST_F(CheckMiscPayments, ReversedGlDocumentLeavesNothing) {
    move("1gl-6", "6300", "6400", 0);  // nothing moved: nothing found
    EXPECT_THAT(findings(), IsEmpty());
    db().Execute(
        "UPDATE GL_transaction_table SET amount = -8, base_amount = -8 WHERE fkey = '1gl-7' AND "
        "lineno = 4");
    move_base_ledger("6300", 1, -1);
    move_earnings(1);
    EXPECT_THAT(findings(), ElementsAre("GL document 1gl-7 does not balance: debit less credit is -1.00",
                                        "GL document 1gl-7 is reversed, but -1.00 is left on account 6300"));
}

TEST_F(CheckMiscPayments, LinesHavePostedToTheirAccounts) {
    move("1gl-6", "6300", "6400", 3);
    EXPECT_THAT(findings(), ElementsAre("Payment 1mpy-1: 87.00 was posted to account 6300, expected 90.00",
                                        "Payment 1mpy-1: 55.50 was posted to account 6400, expected 52.50"));
}

TEST_F(CheckMiscPayments, LinesOfAVoidPaymentHadPostedToTheirAccounts) {
    change(misc_line("1mpy-2", 1), {{"account", "6400"}});
    EXPECT_THAT(findings(), ElementsAre("Payment 1mpy-2: 0.00 was posted to account 6400, expected 7.00"));
}

// Half a cent on top of 52.51 is rounded to the even cent once it has been added.
TEST_F(CheckMiscPayments, HalfACentOfALineJoinsWhatItsAccountHas) {
    change(misc_line("1mpy-1", 2), {{"pay_amount", 50.015}});
    EXPECT_THAT(findings(), ElementsAre("Payment 1mpy-1: payment_amount is 155.00, its lines come to 155.01",
                                        "Payment 1mpy-1: 52.50 was posted to account 6400, expected 52.52"));
    change(misc_line("1mpy-1", 2), {{"account", "6300"}, {"pay_amount", 50.005}});
    move("1gl-6", "6400", "6300", 52.5);
    EXPECT_THAT(findings(), IsEmpty());
    change(misc_line("1mpy-1", 1), {{"pay_amount", 100.01}});
    EXPECT_THAT(findings(),
                ElementsAre("Payment 1mpy-1: payment_amount is 155.00, its lines come to 155.02",
                            "Payment 1mpy-1: 142.50 was posted to account 6300, expected 142.52"));
}

TEST_F(CheckMiscPayments, CashAccountHasLostTheTotal) {
    move("1gl-6", "1000", "1300", -2);
    EXPECT_THAT(findings(),
                ElementsAre("Payment 1mpy-1: -153.00 was posted to account 1000, expected -155.00"));
}

TEST_F(CheckMiscPayments, AccountThatTaxesUseIsNotJudged) {
    change("SELECT * FROM Tax_authority_table WHERE tax_authority = 'GST'", {{"acc_expense", "6300"}});
    move("1gl-6", "6300", "1300", 3);
    move_earnings(3);
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(CheckMiscPayments, ForeignPaymentHasPostedAtItsRate) {
    change(payment("1mpy-1"), {{"Currency", "EUR"}, {"exchange_rate", 1.0}});
    EXPECT_THAT(findings(), IsEmpty());
    change(payment("1mpy-1"), {{"exchange_rate", 1.1}});
    EXPECT_THAT(findings(),
                ElementsAre("Payment 1mpy-1: -155.00 was posted to account 1000, expected -170.50",
                            "Payment 1mpy-1: 90.00 was posted to account 6300, expected 99.00",
                            "Payment 1mpy-1: 52.50 was posted to account 6400, expected 57.75"));
}

}  // namespace
}  // namespace brimley
