// What the list of checks does where no console script can look or reach.
#include <gmock/gmock.h>

#include "payment_entry.h"
#include "payments/void_check/apform_void_check.h"

namespace brimley::testing {

using ::testing::ElementsAre;

class VoidChecks : public ::testing::Test {
  protected:
    VoidChecks() {
        save_invoice(user, {"Invoice", "V1001", "USD", "", {{"5000", "NOTAX", "gross amount", "100.00"}}});
        user.ap.showform_APform_payment();
        begin_payment(*user.ap.frm_payment, "V1001");
        EXPECT_EQ(user.ap.frm_payment->cmbpayby.type("Check"), controls::Refusal::none);
        EXPECT_EQ(user.ap.frm_payment->cmbbank.type("MAIN"), controls::Refusal::none);
        EXPECT_EQ(user.ap.frm_payment->txtcheck.type("901"), controls::Refusal::none);
        EXPECT_EQ(user.ap.frm_payment->txtcheckdate.type("16/03/2026"), controls::Refusal::none);
        edit_item_cell(*user.ap.frm_payment, 0, "pay amount", "100.00");
        pay_total(*user.ap.frm_payment);
        EXPECT_EQ(user.ap.frm_payment->press(101), controls::Refusal::none);
        user.ap.showform_APform_void_check();
        static_cast<void>(user.messages());
    }
    payments::APform_void_check& form() { return *user.ap.frm_void_check; }
    void press(int id) { EXPECT_EQ(form().press(id), controls::Refusal::none); }
    void list_and_pick() {
        press(104);
        EXPECT_EQ(form().dbgrid1.double_click(0), controls::Refusal::none);
    }
    void void_the_check() {
        list_and_pick();
        user.desk.answers = {true};
        press(101);
        EXPECT_THAT(user.messages(), ElementsAre("Check 901 is void."));
    }
    std::string owing_balance() {
        return company.list("SELECT owing_balance FROM Vendor_table WHERE vendor_no = 'V1001'");
    }

    CompanyCopy company{sample_original()};
    DeskOfUser user{company.open()};
};

TEST_F(VoidChecks, UnknownOwingBalanceStaysUnknown) {
    company.db().Execute("UPDATE Vendor_table SET owing_balance = NULL WHERE vendor_no = 'V1001'");
    void_the_check();
    EXPECT_EQ(owing_balance(), "-");
}

TEST_F(VoidChecks, OwingBalanceIsNotRounded) {
    company.db().Execute("UPDATE Vendor_table SET owing_balance = 0.125 WHERE vendor_no = 'V1001'");
    void_the_check();
    EXPECT_EQ(owing_balance(), "-99.875");
}

TEST_F(VoidChecks, OwingBalanceGoesDownByDiscountAndWriteOffToo) {
    company.db().Execute(
        "UPDATE Payment_transaction_table SET pay_amount = 90, discount_taken = 7, writeoff = 3");
    void_the_check();
    EXPECT_EQ(owing_balance(), "-100");
}

// The same day is stored either way.
TEST_F(VoidChecks, VoidOfAPrepaymentAloneIsDatedInDigits) {
    using payments::VoidDate;
    EXPECT_EQ(payments::check_kind_of("pp").void_date, VoidDate::as_digits);
    for (const char* doctype : {"py", "pc", "mpy"})
        EXPECT_EQ(payments::check_kind_of(doctype).void_date, VoidDate::as_date) << doctype;
}

TEST_F(VoidChecks, PrepaymentAccountIsReadAtLoad) { EXPECT_EQ(form().prepayment_accno, "1400"); }

// Four kinds of payments share the table, and numbers start again in other years.
TEST_F(VoidChecks, PickedCheckIsMeantAmongPaymentsOfTheSameNumber) {
    list_and_pick();
    company.db().Execute("UPDATE Payment_header_table SET fyear = '2025'");
    user.desk.answers = {true};
    press(101);
    EXPECT_THAT(user.messages(), ElementsAre("Void check failed"));
    company.db().Execute("UPDATE Payment_header_table SET fyear = '2026', doctype = 'pc'");
    user.desk.answers = {true};
    press(101);
    EXPECT_THAT(user.messages(), ElementsAre("Void check failed"));
    company.db().Execute("UPDATE Payment_header_table SET doctype = 'py', payby = 'Cash'");
    user.desk.answers = {true};
    press(101);
    EXPECT_THAT(user.messages(), ElementsAre("Void check failed"));
    EXPECT_EQ(company.list("SELECT void FROM Payment_header_table"), "FALSE");
}

TEST_F(VoidChecks, VendorWithAQuoteListsNothing) {
    press(104);
    EXPECT_EQ(form().dbgrid1.array.used_rows(), 1);
    form().cmbvendor.set("O'Hara");
    press(104);
    EXPECT_EQ(form().dbgrid1.array.used_rows(), 0);
    EXPECT_TRUE(user.messages().empty());
}

}  // namespace brimley::testing
