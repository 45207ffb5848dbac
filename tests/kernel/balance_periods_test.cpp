#include "kernel/ledger_test.h"

namespace brimley::testing {

using kernel::PeriodFamily;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class BalancePeriods : public LedgerTest {
  protected:
    // A period row in edit, with nothing in its columns.
    store::Recordset empty_row() {
        auto rows = company.dynaset("SELECT * FROM Balance_period_table WHERE accno = '1000'");
        rows.Edit();
        return rows;
    }
};

TEST_F(BalancePeriods, EachPeriodKeyHasItsColumnInBothFamilies) {
    for (int number = 1; number <= 13; ++number) {
        auto row = empty_row();
        const std::string key = std::to_string(number);
        PeriodFamily(row, "").add(row, key, 10.0 + number);
        PeriodFamily(row, "e_").add(row, key, 20.0 + number);
        for (int other = 1; other <= 13; ++other) {
            const std::string column = std::to_string(other);
            EXPECT_EQ(row.number("period" + column), other == number ? 10.0 + number : 0.0);
            EXPECT_EQ(row.number("e_period" + column), other == number ? 20.0 + number : 0.0);
            // The running balances hold the amount from its period on.
            EXPECT_EQ(row.number("balperiod" + column), other >= number ? 10.0 + number : 0.0);
            EXPECT_EQ(row.number("e_balperiod" + column), other >= number ? 20.0 + number : 0.0);
        }
        EXPECT_EQ(row.number("ytd_balance"), 10.0 + number);
        EXPECT_EQ(row.number("e_ytd_balance"), 20.0 + number);
    }
}

TEST_F(BalancePeriods, AdjustmentAndClosingReachTheYearButNoRunningBalance) {
    for (const auto& [key, column] : {std::pair{"AD", "adjust"}, std::pair{"CL", "closing"}}) {
        auto row = empty_row();
        PeriodFamily(row, "").add(row, key, 7);
        PeriodFamily(row, "e_").add(row, key, 8);
        EXPECT_EQ(row.number(column), 7);
        EXPECT_EQ(row.number(std::string("e_") + column), 8);
        EXPECT_EQ(row.number("ytd_balance"), 7);
        EXPECT_EQ(row.number("e_ytd_balance"), 8);
        EXPECT_EQ(row.number("balperiod13"), 0);
        EXPECT_EQ(row.number("e_balperiod13"), 0);
    }
}

TEST_F(BalancePeriods, UnknownKeyMovesNoColumnAndStillRecomputes) {
    for (const char* key : {"14", "0", "03", "", "ad", "1.0"}) {
        auto row = empty_row();
        row.set("opening_balance", 5);
        PeriodFamily(row, "").add(row, key, 100);
        EXPECT_EQ(row.number("period1"), 0) << key;
        EXPECT_FALSE(row.field("period1").is_null()) << key;
        EXPECT_EQ(row.number("balperiod13"), 5) << key;
        EXPECT_EQ(row.number("ytd_balance"), 5) << key;
    }
}

TEST_F(BalancePeriods, NullColumnTakesTheAmountAsItStands) {
    auto row = empty_row();
    EXPECT_TRUE(row.field("Period3").is_null());
    PeriodFamily(row, "").add(row, "3", 12.35);
    PeriodFamily(row, "").add(row, "3", 0.65);
    EXPECT_EQ(row.number("Period3"), 13);
}

TEST_F(BalancePeriods, SumsAreNotRounded) {
    auto row = empty_row();
    PeriodFamily(row, "").add(row, "1", 0.001);
    PeriodFamily(row, "").add(row, "2", 0.002);
    EXPECT_DOUBLE_EQ(row.number("ytd_balance"), 0.003);
}

TEST_F(BalancePeriods, RecomputingStartsFromTheOpeningBalance) {
    auto row = empty_row();
    row.set("opening_balance", 1000);
    row.set("period1", 1);
    row.set("period5", 50);
    row.set("adjust", 3);
    row.set("closing", -4);
    PeriodFamily(row, "").recompute(row);
    EXPECT_EQ(row.number("balperiod1"), 1001);
    EXPECT_EQ(row.number("balperiod4"), 1001);
    EXPECT_EQ(row.number("balperiod5"), 1051);
    EXPECT_EQ(row.number("balperiod13"), 1051);
    EXPECT_EQ(row.number("ytd_balance"), 1050);
    EXPECT_TRUE(row.field("e_ytd_balance").is_null());
    row.set("e_opening_balance", 2);
    PeriodFamily(row, "e_").recompute(row);
    EXPECT_EQ(row.number("e_balperiod13"), 2);
    EXPECT_EQ(row.number("e_ytd_balance"), 2);
}

TEST_F(BalancePeriods, LineReachesBothFamiliesOfItsAccount) {
    auto line = line_on("1000", 100);
    line.base_amount = 101;
    EXPECT_TRUE(post_period(line));
    EXPECT_EQ(period("Period3, e_period3, balperiod3, e_balperiod3, ytd_balance, e_ytd_balance", "1000"),
              "100 101 100 101 100 101");
    EXPECT_EQ(period("Period3", "3900"), "-");
}

TEST_F(BalancePeriods, DebitIncomeLineLowersCurrentEarningsInBothFamilies) {
    EXPECT_TRUE(post_period(line_on("5000", 100)));
    EXPECT_EQ(period("Period3, e_period3", "5000"), "100 100");
    EXPECT_EQ(period("Period3, e_period3, ytd_balance", "3900"), "-100 -100 -100");
}

TEST_F(BalancePeriods, CreditIncomeLineRaisesCurrentEarningsInBothFamilies) {
    EXPECT_TRUE(post_period(line_on("4000", 100, "AD")));
    EXPECT_EQ(period("adjust, e_adjust, ytd_balance", "3900"), "100 100 100");
}

TEST_F(BalancePeriods, ForeignLineMovesItsOwnRowAndThePlainColumnOfTheBaseRow) {
    EXPECT_TRUE(post_period(foreign_line_on("2100", 100, 125)));
    EXPECT_EQ(period("Period3, e_period3", "2100", "F"), "100 125");
    EXPECT_EQ(period("Period3, e_period3", "2100", "A"), "125 -");
}

TEST_F(BalancePeriods, ForeignLineOnAnIncomeAccountNeverReachesCurrentEarnings) {
    add_rows("5000", "F", "EUR");
    EXPECT_TRUE(post_period(foreign_line_on("5000", 100, 125)));
    EXPECT_EQ(period("Period3", "3900"), "-");
}

TEST_F(BalancePeriods, ForeignLineWithoutABaseRowGoesOnWithoutAWord) {
    company.db().Execute("DELETE * FROM Balance_period_table WHERE accno = '2100' AND ledgertype = 'A'");
    EXPECT_TRUE(post_period(foreign_line_on("2100", 100, 125)));
    EXPECT_EQ(period("Period3", "2100", "F"), "100");
    EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(BalancePeriods, MissingRowOfTheFiscalYearIsTold) {
    auto line = line_on("1000", 100);
    line.fyear = "2027";
    EXPECT_FALSE(post_period(line));
    EXPECT_THAT(messages(), ElementsAre("No account 1000 in fiscal year 2027"));
    EXPECT_EQ(outside.pumps_before_message, 1);
}

TEST_F(BalancePeriods, EarningsAccountWithoutARowIsTold) {
    company.db().Execute("DELETE * FROM Balance_period_table WHERE accno = '3900'");
    EXPECT_FALSE(post_period(line_on("5000", 100)));
    EXPECT_THAT(messages(),
                ElementsAre("Error : No Retained Earning account 3900 in Account Balance Period."));
}

TEST_F(BalancePeriods, EarningsAccountThatIsNotSetIsTold) {
    company.db().Execute("UPDATE Account_master_table SET type = 'A' WHERE accno = '3900'");
    EXPECT_FALSE(post_period(line_on("5000", 100)));
    EXPECT_THAT(messages(), ElementsAre("Current Earnings account (account type X) has not been set in "
                                        "Account Master"));
}

TEST_F(BalancePeriods, HeldRowIsNotTriedAgain) {
    auto other = company.second_user();
    other.workspace->BeginTrans();
    auto held = other.database->OpenRecordset("SELECT * FROM Balance_period_table WHERE accno = '1000'",
                                              store::RecordsetKind::dynaset);
    held.LockEdits(true);
    held.Edit();
    EXPECT_FALSE(post_period(line_on("1000", 100)));
    EXPECT_THAT(outside.waits, IsEmpty());
    EXPECT_THAT(messages(), IsEmpty());
}

}  // namespace brimley::testing
