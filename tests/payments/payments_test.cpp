// What a payment does where no console script can look or reach.
#include <gmock/gmock.h>

#include "payment_entry.h"
#include "support/faulty_engine.h"

namespace brimley::testing {

using ::testing::ElementsAre;

class Payments : public ::testing::Test {
  protected:
    Payments() {
        save_invoice(user, {"Invoice", "V1001", "USD", "", {{"5000", "NOTAX", "gross amount", "100.00"}}});
        save_invoice(user, {"Invoice", "V1001", "USD", "", {{"5000", "NOTAX", "gross amount", "60.00"}}});
        company.db().Execute("UPDATE AP_transaction_table SET early_discount = 0");
        user.ap.showform_APform_payment();
        static_cast<void>(user.messages());
    }
    payments::APform_payment& form() { return *user.ap.frm_payment; }
    void pay_both() {
        begin_payment(form(), "V1001");
        edit_item_cell(form(), 0, "pay amount", "100.00");
        edit_item_cell(form(), 1, "pay amount", "60.00");
        pay_total(form());
        press(101);
        EXPECT_THAT(user.messages(), ElementsAre("Add new Payment PY-26-00001 complete"));
    }
    void press(int id) { EXPECT_EQ(form().press(id), controls::Refusal::none); }
    void press_and_agree(int id) {
        user.desk.answers = {true};
        press(id);
    }
    void press_and_decline(int id) {
        user.desk.answers = {false};
        press(id);
    }
    std::string account_name(const std::string& accno) {
        return company.list("SELECT accname FROM Account_master_table WHERE accno = '" + accno + "'");
    }
    std::string accounts_of_payment() {
        return company.list(
            "SELECT accno, amount FROM GL_transaction_table WHERE Source = 'AP-PAYMENT' ORDER BY lineno");
    }
    std::string remark() { return company.list("SELECT remark FROM Payment_header_table"); }

    CompanyCopy company{sample_original()};
    DeskOfUser user{company.open()};
};

TEST_F(Payments, CreditsOfTheVendorStandOutInTheList) {
    company.db().Execute("UPDATE AP_transaction_table SET doctype = 'pp' WHERE docno = 'IP-26-00001'");
    begin_payment(form(), "V1001");
    ASSERT_TRUE(form().dbgrid1.on_fetch_row_style);
    EXPECT_EQ(form().dbgrid1.on_fetch_row_style(0), form().Deposit_style);
    EXPECT_NE(form().Deposit_style, 0U);
    EXPECT_EQ(form().dbgrid1.on_fetch_row_style(1), std::nullopt);
    company.db().Execute("UPDATE AP_transaction_table SET doctype = 'vcn' WHERE docno = 'IP-26-00002'");
    form().list_vendor_invoice("V1001");
    EXPECT_EQ(form().dbgrid1.on_fetch_row_style(1), form().Deposit_style);
}

// Two desks at two items of one document, the other one faster by a moment: here it takes a payment of the
// first item back while this one pays the second. Each sees its own change alone when it looks.
TEST_F(Payments, DocumentThatAnotherDeskReopensMeanwhileIsNotFullyPaid) {
    const std::string items =
        "UPDATE AP_transaction_table SET fkey = '1ip-1', docno = 'IP-26-00001', pay_item = ";
    company.db().Execute(items + "2 WHERE docno = 'IP-26-00002'");
    company.db().Execute("DELETE * FROM AP_header_table WHERE docno = 'IP-26-00002'");
    company.db().Execute("UPDATE AP_transaction_table SET paid = TRUE, open_amount = 0 WHERE pay_item = '1'");
    const auto other = company.second_user();
    const auto give_back = [&] {
        other.workspace->BeginTrans();
        other.database->Execute("UPDATE AP_transaction_table SET paid = FALSE WHERE pay_item = '1'");
        other.database->Execute("UPDATE AP_header_table SET fully_paid = FALSE");
        other.workspace->CommitTrans();
    };
    const auto moment = std::make_shared<Faults>();
    moment->only_statements_with = "UPDATE \"AP_header_table\"";
    moment->engine_fails_itself = true;
    bool refused = false;
    moment->on_fault = [&] {
        moment->disarm();
        try {
            give_back();
        } catch (const store::Error& error) {
            refused = error.kind() == store::ErrorKind::locked;
            other.workspace->Rollback();
        }
    };
    DeskOfUser slow{company.second_user(faulty(moment))};
    slow.ap.showform_APform_payment();
    begin_payment(*slow.ap.frm_payment, "V1001");
    edit_item_cell(*slow.ap.frm_payment, 0, "pay amount", "60.00");
    pay_total(*slow.ap.frm_payment);
    moment->arm(1, false);
    EXPECT_EQ(slow.ap.frm_payment->press(101), controls::Refusal::none);
    EXPECT_THAT(slow.messages(), ElementsAre("Add new Payment PY-26-00001 complete"));
    EXPECT_EQ(refused, place_of_tests() == CompanyPlace::file);  // where one desk writes at a time
    EXPECT_EQ(company.list("SELECT fully_paid FROM AP_header_table"), refused ? "TRUE" : "FALSE");
}

TEST_F(Payments, VoidPassesOverALineWhoseItemIsGone) {
    pay_both();
    company.db().Execute("DELETE * FROM AP_transaction_table WHERE docno = 'IP-26-00001'");
    press_and_agree(133);
    EXPECT_THAT(user.messages(), ElementsAre("PY-26-00001 is void."));
    EXPECT_EQ(company.list("SELECT open_amount FROM AP_transaction_table"), "60");
    EXPECT_EQ(company.list("SELECT fully_paid FROM AP_header_table ORDER BY docno"), "TRUE | FALSE");
}

TEST_F(Payments, SaveFailsForALineWhoseItemIsGone) {
    begin_payment(form(), "V1001");
    edit_item_cell(form(), 0, "pay amount", "100.00");
    pay_total(form());
    company.db().Execute("DELETE * FROM AP_transaction_table WHERE docno = 'IP-26-00001'");
    press(101);
    EXPECT_THAT(user.messages(), ElementsAre("IP-26-00001, pay item 1, has changed since it was listed.",
                                             "Add new payment failed"));
    EXPECT_EQ(company.list("SELECT docno FROM Payment_header_table"), "");
}

TEST_F(Payments, EditOfAPaymentThatWasVoidedMeanwhileChangesNothing) {
    pay_both();
    press(106);
    company.db().Execute("UPDATE Payment_header_table SET void = TRUE");
    EXPECT_EQ(form().txtremark.type("by post"), controls::Refusal::none);
    press(101);
    EXPECT_THAT(user.messages(), ElementsAre("PY-26-00001 was void", "Update failed."));
    EXPECT_EQ(form().mode(), frame::Mode::edit);
    EXPECT_EQ(remark(), "");
}

TEST_F(Payments, EditOfAPaymentThatIsGoneFails) {
    pay_both();
    press(106);
    company.db().Execute("DELETE * FROM Payment_header_table");
    press(101);
    EXPECT_THAT(user.messages(), ElementsAre("Update failed."));
}

// Two equal numbers of one vendor, as a format without the year gives them: the void finds the one it paid.
TEST_F(Payments, VoidOfOneOfTwoEqualNumbersGivesBackToTheOneThatWasPaid) {
    company.db().Execute("UPDATE AP_transaction_table SET docno = 'IP-00001'");
    begin_payment(form(), "V1001");
    edit_item_cell(form(), 1, "pay amount", "60.00");
    pay_total(form());
    press(101);
    EXPECT_EQ(company.list("SELECT open_amount FROM AP_transaction_table ORDER BY gross_amount"), "0 | 100");
    press_and_agree(133);
    EXPECT_EQ(
        company.list("SELECT open_amount, paid_amount, paid FROM AP_transaction_table ORDER BY gross_amount"),
        "60 0 FALSE | 100 - FALSE");
}

TEST_F(Payments, VoidIsRefusedAtOnceWhileAnotherDeskSaves) {
    pay_both();
    const store::OpenCompany other = company.second_user();
    other.workspace->BeginTrans();
    other.database->Execute("UPDATE Vendor_table SET vendor_group = 'X' WHERE vendor_no = 'V1002'");
    press_and_agree(133);
    EXPECT_THAT(user.messages(), ElementsAre("Void Payment failed"));
    EXPECT_TRUE(user.desk.waits.empty());
    other.workspace->Rollback();
    press_and_agree(133);
    EXPECT_THAT(user.messages(), ElementsAre("PY-26-00001 is void."));
}

TEST_F(Payments, RatesOfTheCurrencyBeforeAreNotOfferedForAnother) {
    begin_payment(form(), "V3001", "THB", "0.03");
    EXPECT_FALSE(form().cmbexrate.items().empty());
    user.desk.answers = {false};
    press(105);
    user.ap.pay_this_invoice("IP-26-00001", "V2001");
    EXPECT_EQ(form().cmbcurrency.text(), "EUR");
    EXPECT_TRUE(form().cmbexrate.items().empty());
}

// The last row that a discount or write-off alone is taken of: pay amount 0 is stored with them.
TEST_F(Payments, LineWithNothingPaidIsStoredForItsWriteOff) {
    begin_payment(form(), "V1001");
    edit_item_cell(form(), 0, "pay amount", "10.00");
    edit_item_cell(form(), 1, "write-off", "7.00");
    pay_total(form());
    press(101);
    EXPECT_EQ(
        company.list(
            "SELECT item_no, pay_amount, writeoff, balance FROM Payment_transaction_table ORDER BY item_no"),
        "1 10 0 90 | 2 0 7 53");
}

TEST_F(Payments, AnyWordPaysWhatIsOpenOfAPartlyPaidItem) {
    begin_payment(form(), "V1001");
    edit_item_cell(form(), 0, "pay amount", "60.00");
    pay_total(form());
    press(101);
    begin_payment(form(), "V1001");
    EXPECT_EQ(form().dbgrid1.cell(0, "open amount"), "40.00");
    edit_item_cell(form(), 0, "pay amount", "x");
    EXPECT_EQ(form().dbgrid1.cell(0, "pay amount"), "40.00");
    EXPECT_EQ(form().dbgrid1.cell(0, "net balance"), "0.00");
}

// A refused amount leaves the row as if nothing had been paid of it, so that its item is not closed for less.
// The totals follow with the next amount that is taken.
TEST_F(Payments, RefusedAmountLeavesTheItemOpen) {
    begin_payment(form(), "V1001");
    edit_item_cell(form(), 0, "pay amount", "100.00");
    edit_item_cell(form(), 0, "discount taken", "2.00");
    edit_item_cell(form(), 0, "pay amount", "-5");
    EXPECT_EQ(form().dbgrid1.cell(0, "net balance"), "98.00");
    EXPECT_EQ(form().txttotal.text(), "98.00");
    EXPECT_EQ(form().txttotal_base.text(), "98.00");
    edit_item_cell(form(), 1, "pay amount", "60.00");
    pay_total(form());
    press(101);
    EXPECT_EQ(company.list("SELECT open_amount FROM AP_transaction_table ORDER BY docno"), "98 | 0");
    EXPECT_EQ(company.list("SELECT total_amount FROM Payment_header_table"), "60");
}

TEST_F(Payments, RefusedAmountAloneLeavesTheTotalAndThePaymentIsRefusedForItsLines) {
    begin_payment(form(), "V1001");
    edit_item_cell(form(), 0, "pay amount", "50.00");
    edit_item_cell(form(), 0, "pay amount", "-5");
    EXPECT_EQ(form().txttotal.text(), "50.00");
    pay_total(form());
    static_cast<void>(user.messages());
    press(101);
    EXPECT_THAT(user.messages(), ElementsAre("Please specify any payment/discount/write-off amount"));
    EXPECT_EQ(company.list("SELECT docno FROM Payment_header_table"), "");
}

TEST_F(Payments, TotalsOfTheLinesAreStoredAfterARefusedAmount) {
    begin_payment(form(), "V1001");
    edit_item_cell(form(), 0, "pay amount", "100.00");
    edit_item_cell(form(), 1, "pay amount", "60.00");
    edit_item_cell(form(), 1, "pay amount", "-5");
    EXPECT_EQ(form().txttotal.text(), "160.00");
    pay_total(form());
    press(101);
    EXPECT_EQ(
        company.list("SELECT payment_amount, total_amount, total_base_amount FROM Payment_header_table"),
        "160 100 100");
}

TEST_F(Payments, ListsOfDiscountAndWriteOffAccountsOfferTheParametersAccounts) {
    company.add(
        "Account_Parameters_table",
        {{"module", "AP"}, {"parameter_name", "AP discount account"}, {"default", false}, {"accno", "7500"}});
    const auto accounts_below = [&](const char* caption) {
        const int column = form().dbgrid1.get_column(caption);
        return form().dbgrid1.columns.at(static_cast<std::size_t>(column)).drop_down->rows();
    };
    using Row = std::vector<std::string>;
    EXPECT_THAT(accounts_below("discount account"), ElementsAre(Row{"7000", account_name("7000")}));
    EXPECT_THAT(accounts_below("write-off account"), ElementsAre(Row{"7100", account_name("7100")}));
}

TEST_F(Payments, TextThatIsNoBankIsRefusedWhateverTheWayOfPaying) {
    company.db().Execute("UPDATE Credit_card_master_table SET used = TRUE, payable_accno = '2100'");
    const std::string card =
        company.list("SELECT card_name FROM Credit_card_master_table ORDER BY card_name");
    for (const std::string& way : {card.substr(0, card.find(" | ")), std::string("Pay Later")}) {
        begin_payment(form(), "V1001");
        EXPECT_EQ(form().cmbcash.type(""), controls::Refusal::none);
        edit_item_cell(form(), 0, "pay amount", "100.00");
        pay_total(form());
        EXPECT_EQ(form().cmbbank.type("NOBANK"), controls::Refusal::none);
        form().cmbpayby.set(way);
        press(101);
        EXPECT_THAT(user.messages(), ElementsAre("Bank code NOBANK is invalid.")) << way;
        press_and_decline(105);
    }
}

TEST_F(Payments, CurrencyThatIsNotAWorkingOneIsRefusedBeforeAnythingIsWritten) {
    begin_payment(form(), "V1001");
    edit_item_cell(form(), 0, "pay amount", "100.00");
    pay_total(form());
    EXPECT_EQ(form().cmbcurrency.type("ZZZ"), controls::Refusal::none);
    press(101);
    EXPECT_THAT(user.messages(), ElementsAre("ZZZ is not a working currency."));
    EXPECT_EQ(form().cmbcurrency.type(""), controls::Refusal::none);
    press(101);
    EXPECT_THAT(user.messages(), ElementsAre("please specify currency"));
    EXPECT_EQ(company.list("SELECT docno FROM Payment_header_table"), "");
}

TEST_F(Payments, VendorTypedOverAnotherVendorsListIsRefusedForItsPayableAccount) {
    begin_payment(form(), "V1001");
    edit_item_cell(form(), 0, "pay amount", "100.00");
    pay_total(form());
    EXPECT_EQ(form().cmbvendor.type("NOBODY"), controls::Refusal::none);
    press(101);
    EXPECT_THAT(user.messages(),
                ElementsAre("Error : Payable account for NOBODY is invalid.", "Add new payment failed"));
    EXPECT_EQ(company.list("SELECT docno FROM Payment_header_table"), "");
}

// A vendor that was added since the list was fetched is chosen without its items being listed.
TEST_F(Payments, VendorWithAPayableAccountTypedOverAnotherVendorsListIsRefusedForTheItems) {
    begin_payment(form(), "V1001");
    edit_item_cell(form(), 0, "pay amount", "100.00");
    pay_total(form());
    company.add("Vendor_table", {{"vendor_no", "V9"}, {"VENDOR_NAME", "New"}, {"ap_accno", "2000"}});
    form().cmbvendor.set("V9");
    press(101);
    EXPECT_THAT(user.messages(), ElementsAre("IP-26-00001, pay item 1, has changed since it was listed.",
                                             "Add new payment failed"));
    EXPECT_EQ(company.list("SELECT docno FROM Payment_header_table"), "");
}

TEST_F(Payments, EvenRowsOfTheListArePaintedAsTheCompanyChose) {
    EXPECT_NE(form().dbgrid1.even_row_colour, controls::kWhite);
    company.db().Execute("UPDATE Recent_value_table SET Value = '0' WHERE control_name = 'evenrow_color'");
    user.ap.showform_APform_payment();
    EXPECT_EQ(form().dbgrid1.even_row_colour, controls::kWhite);
}

// What the list shows of an amount is what is paid: to the cent, a tie away from nothing.
TEST_F(Payments, TypedAmountsAreRoundedAsTheyAreShown) {
    begin_payment(form(), "V1001");
    edit_item_cell(form(), 0, "write-off", "1.125");
    EXPECT_EQ(form().dbgrid1.cell(0, "write-off"), "1.13");
    edit_item_cell(form(), 0, "pay amount", "10.125");
    EXPECT_EQ(form().dbgrid1.cell(0, "pay amount"), "10.13");
    EXPECT_EQ(form().dbgrid1.cell(0, "net balance"), "88.74");
}

TEST_F(Payments, TextsOfPowersAndCurrencySignsAreWordsAndPayTheWholeItem) {
    begin_payment(form(), "V1001");
    for (const char* word : {"1e2", "$12"}) {
        edit_item_cell(form(), 0, "pay amount", word);
        EXPECT_EQ(form().dbgrid1.cell(0, "pay amount"), "100.00") << word;
        edit_item_cell(form(), 0, "pay amount", "1.00");
    }
}

TEST_F(Payments, CashAccountThatWasChosenAllowsAnUnknownBank) {
    begin_payment(form(), "V1001");
    edit_item_cell(form(), 0, "pay amount", "100.00");
    pay_total(form());
    EXPECT_EQ(form().cmbbank.type("NOBANK"), controls::Refusal::none);
    press(101);
    EXPECT_THAT(user.messages(), ElementsAre("Add new Payment PY-26-00001 complete"));
    EXPECT_EQ(company.list("SELECT payby, cash_accno, bank_code FROM Payment_header_table"), "Cash 1000 -");
    EXPECT_EQ(accounts_of_payment(), "1000 -100 | 2000 -100");
}

TEST_F(Payments, CardNeedsNoBankAndIsCreditedWithItsPayableAccount) {
    begin_payment(form(), "V1001");
    EXPECT_EQ(form().cmbcash.type(""), controls::Refusal::none);
    EXPECT_EQ(form().cmbpayby.type("MASTERCARD"), controls::Refusal::none);
    edit_item_cell(form(), 0, "pay amount", "100.00");
    pay_total(form());
    EXPECT_EQ(form().cmbbank.text(), "");
    press(101);
    EXPECT_THAT(user.messages(), ElementsAre("Add new Payment PY-26-00001 complete"));
    EXPECT_EQ(company.list("SELECT payby, cash_accno, bank_code FROM Payment_header_table"),
              "MASTERCARD - -");
    EXPECT_EQ(accounts_of_payment(), "2000 -100 | 2230 -100");
}

// Rows in two currencies have rates of their own, and their cents do not divide.
TEST_F(Payments, ForeignPaymentWithoutARateHasNoneInItsHeadersNorInItsRoundingLine) {
    save_invoice(user, {"Invoice", "V2001", "USD", "", {{"5000", "NOTAX", "gross amount", "40.00"}}});
    save_invoice(user, {"Invoice", "V2001", "EUR", "1.1111", {{"5000", "NOTAX", "gross amount", "33.33"}}});
    static_cast<void>(user.messages());
    company.db().Execute("UPDATE AP_transaction_table SET early_discount = 0");
    begin_payment(form(), "V2001", "EUR");
    edit_item_cell(form(), 0, "pay amount", "40.00");
    edit_item_cell(form(), 1, "payment exch rate", "1.1111");
    edit_item_cell(form(), 1, "pay amount", "33.33");
    edit_item_cell(form(), 1, "discount taken", "0.60");
    EXPECT_EQ(form().cmbexrate.text(), "");
    EXPECT_EQ(form().txtpayment.type("72.73"), controls::Refusal::none);
    press(101);
    EXPECT_THAT(user.messages(), ElementsAre("Add new Payment PY-26-00001 complete"));
    EXPECT_EQ(company.list("SELECT exchange_rate FROM Payment_header_table"), "-");
    EXPECT_EQ(company.list("SELECT exchange_rate FROM GL_header_table WHERE Source = 'AP-PAYMENT'"), "-");
    EXPECT_EQ(company.list("SELECT base_amount, Currency, vendor_no, exchange_rate FROM "
                           "GL_transaction_table WHERE accno = '7510'"),
              "0.01 USD V2001 -");
}

}  // namespace brimley::testing
