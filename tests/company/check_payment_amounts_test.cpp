// Amounts of payments: totals, base amounts and balances, on books broken in one place.
#include "company/paid_books_fixture.h"

namespace brimley {
namespace {

using store::Value;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class CheckPaymentAmounts : public testing::PaidBooksTest {
  protected:
    // The line of the void payment: its item does not follow it any more.
    static std::string line() { return payment_line("1py-2"); }
    static std::string header() { return payment("1py-2"); }
};

TEST_F(CheckPaymentAmounts, BalanceIsWhatTheLineLeaves) {
    // The item has been left with what the line says.
    change(payment_line("1py-1"), {{"balance", 60.0}});
    change(item(), {{"open_amount", 60.0}});
    EXPECT_THAT(findings(), ElementsAre("Payment 1py-1: line 1, balance is 60.00, expected 66.35"));
}

TEST_F(CheckPaymentAmounts, BaseAmountInBaseCurrencyIsThePay) {
    change(line(), {{"pay_base_amount", 31.0}});
    EXPECT_THAT(findings(), ElementsAre("Payment 1py-2: line 1, pay_base_amount is 31.00, expected 30.00"));
}

TEST_F(CheckPaymentAmounts, PaymentInBaseCurrencyIsItsOwnBaseAmount) {
    change(header(), {{"payment_base_amount", 31.0}});
    EXPECT_THAT(findings(), ElementsAre("Payment 1py-2: payment_base_amount is 31.00, expected 30.00"));
}

TEST_F(CheckPaymentAmounts, PaymentInAForeignCurrencyFollowsItsRate) {
    change(header(), {{"Currency", "EUR"}, {"exchange_rate", 1.25}, {"payment_base_amount", 37.5}});
    EXPECT_THAT(findings(), IsEmpty());
    change(header(), {{"payment_base_amount", 37.51}});
    EXPECT_THAT(findings(), ElementsAre("Payment 1py-2: payment_base_amount is 37.51, expected 37.50"));
}

TEST_F(CheckPaymentAmounts, TotalIsTheSumOfTheLines) {
    change(header(), {{"total_amount", 29.0}, {"total_base_amount", 29.0}});
    EXPECT_THAT(findings(), ElementsAre("Payment 1py-2: total_amount is 29.00, its lines come to 30.00"));
    change(header(), {{"total_amount", 30.0}});
    EXPECT_THAT(findings(), ElementsAre("Payment 1py-2: total_base_amount is 29.00, expected 30.00"));
    change(header(), {{"total_amount", Value()}, {"total_base_amount", 30.0}});
    EXPECT_THAT(findings(),
                ElementsAre("Payment 1py-2 has no total_amount, though its lines are in one currency"));
}

TEST_F(CheckPaymentAmounts, MoreThanTheLinesMayBePaidAndLessMayNot) {
    change(header(), {{"payment_amount", 90.0}, {"payment_base_amount", 90.0}});
    EXPECT_THAT(findings(), IsEmpty());
    change(header(), {{"payment_amount", 20.0}, {"payment_base_amount", 20.0}});
    EXPECT_THAT(findings(),
                ElementsAre("Payment 1py-2: payment_base_amount is 20.00, its lines come to 30.00"));
}

TEST_F(CheckPaymentAmounts, PaymentsOfOtherFormsAreNotJudged) {
    change(header(), {{"source_form", "another"}, {"total_amount", 1.0}});
    EXPECT_THAT(findings(), IsEmpty());
}

// The void payment has no discount, and a second line, on the first invoice's item too: 50.00 EUR at 1.20.
class CheckForeignPaymentAmounts : public CheckPaymentAmounts {
  protected:
    CheckForeignPaymentAmounts() {
        change(line(), {{"discount_taken", 0.0}, {"discount_accno", Value()}, {"balance", 36.35}});
        raise(item(), "paid_amount", -2);
        add_line("1py-2", 66.35, 50, 0, 0, true);
        change(euro_line(), {{"item_no", 2},
                             {"Currency", "EUR"},
                             {"invoice_exchange_rate", 1.3},
                             {"payment_exchange_rate", 1.2},
                             {"pay_base_amount", 60.0}});
        change(header(), {{"payment_amount", 90.0},
                          {"payment_base_amount", 90.0},
                          {"total_amount", Value()},
                          {"total_base_amount", 90.0},
                          {"total_currency", Value()}});
    }

    void expect_no_more_than_all_that_was_open() {
        change(euro_line(), {{"pay_base_amount", 79.64}});
        EXPECT_THAT(findings(),
                    ElementsAre("Payment 1py-2: line 2, pay_base_amount is 79.64, expected 0.00 to 79.62",
                                "Payment 1py-2: total_base_amount is 109.62, expected 109.64"));
    }
    static std::string euro_line() { return line() + " AND pay_amount = 50"; }
};

TEST_F(CheckForeignPaymentAmounts, LinesInTwoCurrenciesHaveATotalInBaseCurrencyOnly) {
    EXPECT_THAT(findings(), IsEmpty());
    change(header(), {{"total_amount", 80.0}});
    EXPECT_THAT(findings(),
                ElementsAre("Payment 1py-2 has a total_amount, though its lines are in several currencies"));
    change(header(), {{"total_amount", Value()}, {"total_base_amount", 90.01}});
    EXPECT_THAT(findings(), ElementsAre("Payment 1py-2: total_base_amount is 90.01, expected 90.00"));
}

TEST_F(CheckForeignPaymentAmounts, BaseAmountFollowsTheRateOfThePayment) {
    change(euro_line(), {{"pay_base_amount", 65.0}});
    change(header(), {{"total_base_amount", 95.0}});
    EXPECT_THAT(findings(), ElementsAre("Payment 1py-2: line 2, pay_base_amount is 65.00, expected 60.00"));
}

TEST_F(CheckForeignPaymentAmounts, ValueKeptByACutPaymentLiesBetweenThePayAndAllThatWasOpen) {
    // The rest was written off after 50.00 had been typed.
    change(euro_line(), {{"writeoff", 16.35}, {"balance", 0.0}, {"pay_base_amount", 79.62}});
    raise(item(), "paid_amount", 16.35);
    change(header(), {{"total_base_amount", 109.62}});
    EXPECT_THAT(findings(), IsEmpty());
    expect_no_more_than_all_that_was_open();
}

TEST_F(CheckForeignPaymentAmounts, CutPaymentKeepsItsBaseValueWhenTheDiscountIsTakenBack) {
    // All was paid; a discount of 16.35 cut that to 50.00, and is 6.35 now.
    change(euro_line(), {{"discount_taken", 6.35}, {"balance", 10.0}, {"pay_base_amount", 79.62}});
    raise(item(), "paid_amount", 6.35);
    change(header(), {{"total_base_amount", 109.62}});
    EXPECT_THAT(findings(), IsEmpty());
    expect_no_more_than_all_that_was_open();
}

// A credit of which more than everything was paid is open with the other sign: what is typed is refused, and
// a discount sets the payment, which then has no base value.
TEST_F(CheckPaymentAmounts, DiscountOfAnOverpaidCreditSetsAPaymentWithoutABaseValue) {
    change(line(), {{"gross_amount", -100.0}, {"open_amount", 32.0}, {"balance", -2.15}, {"writeoff", 2.15}});
    raise(item(), "paid_amount", 2.15);
    change(header(), {{"total_base_amount", 0.0}, {"total_currency", Value()}});
    EXPECT_THAT(findings(), IsEmpty());
    change(header(), {{"total_base_amount", -0.02}});
    EXPECT_THAT(findings(), ElementsAre("Payment 1py-2: total_base_amount is -0.02, expected 0.00 to 32.00"));
}

}  // namespace
}  // namespace brimley
