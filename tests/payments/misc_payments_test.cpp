// What a miscellaneous payment does where no console script can look or reach.
#include <gmock/gmock.h>

#include "kinds_of_payments.h"

namespace brimley::testing {

using ::testing::ElementsAre;

class MiscPayments : public ::testing::Test {
  protected:
    payments::APform_misc_payment& form() { return *user.ap.frm_misc; }
    void press(int id) { EXPECT_EQ(form().press(id), controls::Refusal::none); }
    // What a save says of a payment whose total was changed behind the user's back.
    std::vector<std::string> said_of_total(const char* total) {
        form().txttotal.set(total);
        press(101);
        EXPECT_EQ(form().mode(), frame::Mode::new_entry);
        return user.messages();
    }
    std::string ledger() {
        return company.list("SELECT accno, amount FROM GL_transaction_table ORDER BY lineno");
    }

    CompanyCopy company{sample_original()};
    DeskOfUser user{company.open()};
};

TEST_F(MiscPayments, TotalThatIsMissingOrNoNumberHasItsMessage) {
    enter_misc_payment(user);
    EXPECT_THAT(said_of_total(""), ElementsAre("No payment"));
    EXPECT_THAT(said_of_total("much"), ElementsAre("Total payment is invalid"));
    EXPECT_THAT(said_of_total("0.00"), ElementsAre("Total payment is 0"));
}

TEST_F(MiscPayments, LinesWithoutAnAmountHaveTheirMessage) {
    enter_misc_payment(user);
    for (int row : {0, 1})
        form().dbgrid1.set_cell(row, "amount", "0.00");
    EXPECT_THAT(said_of_total("5.00"), ElementsAre("Please specify any payment/discount/write-off amount"));
}

TEST_F(MiscPayments, LineIsVerifiedWhateverTheCellHasAccepted) {
    enter_misc_payment(user);
    form().dbgrid1.set_cell(1, "amount", "words");
    EXPECT_FALSE(form().lines.verify_detail());
    form().dbgrid1.set_cell(1, "amount", "-105.00");
    EXPECT_FALSE(form().lines.verify_detail());
    form().dbgrid1.set_cell(1, "amount", "");
    EXPECT_FALSE(form().lines.verify_detail());
    EXPECT_THAT(user.messages(), ElementsAre("amount is not numeric", "amount must be positive",
                                             "please specify amount for pay item 2"));
}

TEST_F(MiscPayments, TotalThatIsNotThatOfTheLinesDoesNotBalance) {
    enter_misc_payment(user);
    EXPECT_THAT(said_of_total("217.36"),
                ElementsAre("Document is not balance (debit <> credit)", "Add new payment failed"));
    EXPECT_EQ(company.list("SELECT docno FROM Payment_header_table"), "");
}

TEST_F(MiscPayments, HalfACentIsRoundedUpInTheTotalAndToTheEvenCentInTheLedger) {
    enter_misc_payment(user);
    type_misc_line(form(), 2, {{"amount", "0.125"}, {"account", "6310"}});
    EXPECT_EQ(form().txttotal.text(), "217.48");
    press(101);
    EXPECT_THAT(user.messages(),
                ElementsAre("Document is not balance (debit <> credit)", "Add new payment failed"));
    EXPECT_EQ(form().cmbcurrency.type("EUR"), controls::Refusal::none);
    EXPECT_EQ(form().cmbexrate.type("2"), controls::Refusal::none);
    EXPECT_EQ(form().cmbcash.type("1070"), controls::Refusal::none);
    press(101);
    EXPECT_THAT(user.messages(), ElementsAre("Add new Payment MPY-26-00001 complete"));
    EXPECT_EQ(ledger(),
              "1070 -217.48 | 1300 10 | 5900 100 | 5900 -100 | 5100 60 | 5200 40 | 6300 107.35 | 6310 0.12 | "
              "7510 0.01");
}

TEST_F(MiscPayments, CardIsPaidThroughTheAccountOfItsNameInLettersOfAnySize) {
    company.db().Execute("UPDATE Account_master_table SET accname = 'Visa Payable' WHERE accno = '2200'");
    enter_misc_payment(user);
    EXPECT_EQ(form().cmbpayby.type("VISA"), controls::Refusal::none);
    press(101);
    EXPECT_THAT(user.messages(), ElementsAre("Add new Payment MPY-26-00001 complete"));
    EXPECT_EQ(ledger(), "1300 10 | 2200 217.35 | 5900 100 | 5900 -100 | 5100 60 | 5200 40 | 6300 107.35");
}

TEST_F(MiscPayments, CardWhoseNameHasSmallLettersIsNeverFound) {
    company.db().Execute("UPDATE Credit_card_master_table SET card_name = 'Visa' WHERE card_name = 'VISA'");
    enter_misc_payment(user);
    EXPECT_EQ(form().cmbpayby.type("Visa"), controls::Refusal::none);
    press(101);
    EXPECT_THAT(user.messages(), ElementsAre("Account : Visa PAYABLE not found in Account master"));
}

TEST_F(MiscPayments, AccountOfACardMustBeOneThatIsPostedTo) {
    company.db().Execute("UPDATE Account_master_table SET type = 'T' WHERE accno = '2200'");
    enter_misc_payment(user);
    EXPECT_EQ(form().cmbpayby.type("VISA"), controls::Refusal::none);
    press(101);
    EXPECT_THAT(user.messages(), ElementsAre("Account : VISA PAYABLE not found in Account master"));
}

TEST_F(MiscPayments, TaxOfAnAuthorityThatIsGoneIsNotSaved) {
    enter_misc_payment(user);
    company.db().Execute("DELETE * FROM Tax_authority_table WHERE tax_authority = 'GST'");
    press(101);
    EXPECT_THAT(user.messages(), ElementsAre("Add new payment failed"));
    type_misc_line(form(), 1, {{"tax code", "EXP7"}, {"amount", "107.00"}});
    company.db().Execute("DELETE * FROM Tax_authority_table WHERE tax_authority = 'EXP'");
    press(101);
    EXPECT_THAT(user.messages(), ElementsAre("No Expensed Tax Account for EXP", "Add new payment failed"));
}

TEST_F(MiscPayments, SixthTaxIsPostedThoughItHasNoPlaceInTheLine) {
    company.db().Execute(
        "UPDATE Tax_code_details_table SET include_itemcost = FALSE WHERE tax_authority = 'SIX6'");
    enter_misc_payment(user);
    type_misc_line(form(), 0, {{"tax code", "SIX"}, {"amount", "100.00"}});
    press(101);
    EXPECT_THAT(user.messages(), ElementsAre("Add new Payment MPY-26-00001 complete"));
    EXPECT_EQ(ledger(), "1000 -211 | 1300 5 | 5330 1 | 5900 100 | 5900 -100 | 5100 60 | 5200 40 | 6300 105");
    EXPECT_EQ(company.list("SELECT tax_amount, tax_allocated5, tax_expensed5 FROM "
                           "Payment_misc_transaction_table WHERE pay_item = 1"),
              "6 1 0");
}

TEST_F(MiscPayments, PaymentWithManyLinesIsShownAgainWithAllOfThem) {
    enter_misc_payment(user);
    for (int row = 2; row < 30; ++row)
        type_misc_line(form(), row, {{"amount", "1.00"}, {"account", "6310"}});
    press(101);
    EXPECT_THAT(user.messages(), ElementsAre("Add new Payment MPY-26-00001 complete"));
    EXPECT_EQ(form().dbgrid1.array.used_rows(), 30);
    EXPECT_EQ(form().dbgrid1.array.rows(), 35);
    EXPECT_EQ(form().txttotal.text(), "245.35");
}

TEST_F(MiscPayments, AccountForDiscountsIsReadAndNotUsed) {
    user.ap.showform_APform_misc();
    EXPECT_EQ(form().default_discount_accno, "7000");
}

}  // namespace brimley::testing
