// Opening a fiscal year: its rows, the balances carried over, and what is refused.
#include "company/add_year.h"

#include "company/check.h"
#include "company/company_fixture.h"
#include "company/fiscal_year.h"
#include "company/refusal.h"

namespace brimley {
namespace {

using ::testing::AllOf;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class AddYear : public testing::CompanyTest {
  protected:
    void open_year(const std::string& fyear) {
        in_transaction([&](store::Database& database) { company::add_year(database, fyear); });
    }
    std::vector<std::string> opening(const std::string& fyear, const std::string& ledger_and_account) {
        return rows(
            "SELECT opening_balance,balperiod1,balperiod13,ytd_balance,e_opening_balance,e_ytd_balance FROM "
            "Balance_period_table WHERE fyear = '" +
            fyear + "' AND " + ledger_and_account);
    }
    std::vector<std::string> findings() {
        std::vector<std::string> found;
        in_transaction([&](store::Database& database) { found = company::check_books(database); });
        return found;
    }
};

TEST_F(AddYear, MakesTheYearItsPeriodsAndItsCounters) {
    make(company::SampleCompany{"zoe"});
    open_year("2028");
    EXPECT_THAT(rows("SELECT StartDate,EndDate,history FROM Fiscalyear_table WHERE fyear = '2028'"),
                ElementsAre("2028-01-01|2028-12-31|FALSE"));
    EXPECT_THAT(rows("SELECT period,StartDate,EndDate FROM Period_table WHERE fyear = '2028'"),
                ElementsAre("1|20280101|20280131", "2|20280201|20280229", "3|20280301|20280331",
                            "4|20280401|20280430", "5|20280501|20280531", "6|20280601|20280630",
                            "7|20280701|20280731", "8|20280801|20280831", "9|20280901|20280930",
                            "10|20281001|20281031", "11|20281101|20281130", "12|20281201|20281231"));
    EXPECT_THAT(
        rows("SELECT doctype,nextdocno FROM Docno_master_table WHERE fiscalyear = '2028' ORDER BY doctype"),
        ElementsAre("apre|1", "gl|1", "ip|1", "mpy|1", "pc|1", "pp|1", "py|1", "recur|1", "vcn|1", "vdn|1"));
}

TEST_F(AddYear, CarriesBalanceSheetAndCurrentEarningsButNoIncomeStatement) {
    make(company::StarterCompany{"USD", "2026", "zoe"});
    const std::string in_2026 = "SELECT * FROM Balance_period_table WHERE fyear = '2026' AND accno = ";
    change(in_2026 + "'2000'", {{"opening_balance", 10.0},
                                {"period1", 5.0},
                                {"Period3", 2.5},
                                {"adjust", 1.0},
                                {"closing", 0.25},
                                {"e_opening_balance", 9.0},
                                {"e_period12", 1.0}});
    change(in_2026 + "'5000'", {{"opening_balance", 0.0}, {"period1", 100.0}, {"e_period1", 100.0}});
    change(in_2026 + "'3900'", {{"period1", -100.0}, {"e_period1", -100.0}});
    open_year("2027");
    EXPECT_THAT(opening("2027", "accno = '2000'"), ElementsAre("18.75|18.75|18.75|18.75|10|10"));
    EXPECT_THAT(opening("2027", "accno = '5000'"), ElementsAre("0|0|0|0|0|0"));
    EXPECT_THAT(opening("2027", "accno = '3900'"), ElementsAre("-100|-100|-100|-100|-100|-100"));
    EXPECT_THAT(rows("SELECT period1,period13,adjust,closing,e_period1 FROM Balance_period_table WHERE fyear "
                     "= '2027'"),
                Each("0|0|0|0|0"));
}

TEST_F(AddYear, ForeignRowsAreCarriedWithBothFamilies) {
    make(company::SampleCompany{"zoe"});
    open_year("2028");
    EXPECT_THAT(opening("2028", "ledgertype = 'F' AND accno = '1070'"),
                ElementsAre("15780|15780|15780|15780|18540|18540"));
    EXPECT_THAT(opening("2028", "ledgertype = 'E' AND accno = '1070'"), ElementsAre("0|0|0|0|0|0"));
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(AddYear, AccountNewInTheChartGetsItsBaseRow) {
    make(company::StarterCompany{"USD", "2026", "zoe"});
    add("Account_master_table", {{"accno", "6200"}, {"acccode", "62"}, {"subacc2", "x"}, {"type", "A"}});
    open_year("2027");
    EXPECT_THAT(rows("SELECT company,ledgertype,Currency,acccode,subacc2,opening_balance FROM "
                     "Balance_period_table WHERE "
                     "accno = '6200'"),
                ElementsAre("1|A|USD|62|x|0"));
}

TEST_F(AddYear, YearBeforeTheFirstOpensWhereTheFirstOpened) {
    make(company::SampleCompany{"zoe"});
    open_year("2024");
    EXPECT_THAT(opening("2024", "ledgertype = 'A' AND accno = '1050'"),
                ElementsAre("84310.45|84310.45|84310.45|84310.45|84310.45|84310.45"));
    EXPECT_THAT(opening("2024", "ledgertype = 'F' AND accno = '1070'"),
                ElementsAre("15780|15780|15780|15780|18540|18540"));
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(AddYear, YearBeforeTheFirstKeepsTheOpeningOfTheIncomeStatementToo) {
    make(company::StarterCompany{"USD", "2026", "zoe"});
    const char* const row = "SELECT * FROM Balance_period_table WHERE accno = '5000'";
    change("SELECT * FROM Balance_table WHERE accno = '5000'", {{"amount", 30.0}, {"base_amount", 30.0}});
    change(row, {{"opening_balance", 30.0}, {"ytd_balance", 30.0}});
    change(row, {{"e_opening_balance", 30.0}, {"e_ytd_balance", 30.0}});
    for (int period = 1; period <= 13; ++period) {
        raise(row, "balperiod" + std::to_string(period), 30);
        raise(row, "e_balperiod" + std::to_string(period), 30);
    }
    EXPECT_THAT(findings(), IsEmpty());
    open_year("2025");
    EXPECT_THAT(opening("2025", "accno = '5000'"), ElementsAre("30|30|30|30|30|30"));
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(AddYear, CurrentEarningsIsCarriedOnWhateverStatementItStands) {
    make(company::StarterCompany{"USD", "2026", "zoe"});
    change("SELECT * FROM Account_master_table WHERE accno = '3900'", {{"acctype", "Income Statement"}});
    change("SELECT * FROM Balance_period_table WHERE accno = '3900'", {{"period1", -100.0}});
    open_year("2027");
    EXPECT_THAT(opening("2027", "accno = '3900'"), ElementsAre("-100|-100|-100|-100|0|0"));
}

TEST_F(AddYear, YearAfterAGapCarriesFromTheNearestEarlierOne) {
    make(company::StarterCompany{"USD", "2026", "zoe"});
    change("SELECT * FROM Balance_period_table WHERE fyear = '2026' AND accno = '1000'", {{"period4", 7.0}});
    open_year("2029");
    open_year("2028");
    EXPECT_THAT(opening("2028", "accno = '1000'"), ElementsAre("7|7|7|7|0|0"));
}

TEST_F(AddYear, StartsOnTheDayThatTheOtherYearsStartOn) {
    make(company::StarterCompany{"USD", "2026", "zoe"});
    change("SELECT * FROM Fiscalyear_table", {{"StartDate", *store::DateTime::from_ymd(2025, 4, 1)},
                                              {"EndDate", *store::DateTime::from_ymd(2026, 3, 31)}});
    open_year("2027");
    EXPECT_THAT(rows("SELECT StartDate,EndDate FROM Fiscalyear_table WHERE fyear = '2027'"),
                ElementsAre("2026-04-01|2027-03-31"));
    EXPECT_THAT(rows("SELECT StartDate,EndDate FROM Period_table WHERE fyear = '2027' AND period = '12'"),
                ElementsAre("20270301|20270331"));
}

TEST_F(AddYear, WorksInACompanyWithoutYears) {
    make(company::EmptyCompany{});
    open_year("2026");
    EXPECT_THAT(rows("SELECT StartDate,EndDate FROM Fiscalyear_table"), ElementsAre("2026-01-01|2026-12-31"));
    EXPECT_THAT(rows("SELECT doctype FROM Docno_master_table"), SizeIs(10));
}

TEST_F(AddYear, CountersOfOtherCompaniesAndKindsGoOn) {
    make(company::StarterCompany{"USD", "2026", "zoe"});
    add("Docno_master_table", {{"company", 2}, {"doctype", "so"}, {"fiscalyear", "2026"}, {"nextdocno", 40}});
    open_year("2027");
    EXPECT_THAT(rows("SELECT nextdocno FROM Docno_master_table WHERE company = 2 AND doctype = 'so' AND "
                     "fiscalyear = '2027'"),
                ElementsAre("1"));
}

TEST_F(AddYear, ExistingYearIsRefusedAndNothingChanges) {
    make(company::SampleCompany{"zoe"});
    const std::string before = dump();
    EXPECT_THROW(open_year("2027"), company::Refusal);
    EXPECT_EQ(dump(), before);
}

TEST_F(AddYear, YearWhosePeriodsExistIsRefusedInWordsAndNothingChanges) {
    make(company::StarterCompany{"USD", "2026", "zoe"});
    add("Period_table", {{"fyear", "2027"}, {"period", "5"}});
    const std::string before = dump();
    try {
        open_year("2027");
        ADD_FAILURE() << "not refused";
    } catch (const company::Refusal& refusal) {
        EXPECT_STREQ(refusal.what(), "fiscal year 2027 has periods already");
    }
    EXPECT_EQ(dump(), before);
}

TEST_F(AddYear, OverlappingYearIsRefused) {
    make(company::StarterCompany{"USD", "2026", "zoe"});
    change("SELECT * FROM Fiscalyear_table", {{"EndDate", *store::DateTime::from_ymd(2027, 6, 30)}});
    EXPECT_THROW(open_year("2027"), company::Refusal);
}

TEST_F(AddYear, WhatIsNoYearIsRefused) {
    make(company::EmptyCompany{});
    for (const char* year : {"", "26", "20x6", "1989", "2031", "2529", "9999", "20260", "-026"}) {
        EXPECT_THROW(open_year(year), company::UnusableValue) << year;
    }
    EXPECT_TRUE(company::is_usable_year("1990"));
    EXPECT_TRUE(company::is_usable_year("2030"));
    EXPECT_TRUE(company::is_usable_year("2569"));
    EXPECT_TRUE(company::is_usable_year("9998"));
}

TEST_F(AddYear, LastUsableYearEndsBeforeTheDatesDo) {
    make(company::StarterCompany{"USD", "9997", "zoe"});
    open_year("9998");
    EXPECT_THAT(rows("SELECT StartDate,EndDate FROM Fiscalyear_table WHERE fyear = '9998'"),
                ElementsAre("9998-01-01|9998-12-31"));
    EXPECT_THAT(findings(), IsEmpty());
}

// The other years decide where a year lies, and that may be where no date is.
TEST_F(AddYear, YearOutsideTheDatesIsRefusedInWordsAndNothingChanges) {
    make(company::StarterCompany{"USD", "2026", "zoe"});
    const auto expect_refused = [&](int calendar_year, const std::string& fyear) {
        change("SELECT * FROM Fiscalyear_table",
               {{"StartDate", *store::DateTime::from_ymd(calendar_year, 4, 1)},
                {"EndDate", *store::DateTime::from_ymd(calendar_year + 1, 3, 31)}});
        const std::string before = dump();
        try {
            open_year(fyear);
            ADD_FAILURE() << "not refused: " << fyear;
        } catch (const company::Refusal& refusal) {
            EXPECT_EQ(refusal.what(),
                      "fiscal year " + fyear + " would lie outside the years 1 to 9999 of the calendar");
        }
        EXPECT_EQ(dump(), before);
    };
    expect_refused(30, "1990");
    expect_refused(9500, "2569");
    expect_refused(9998, "2027");
}

TEST(PlusMonths, ShortMonthTakesItsLastDay) {
    const auto day = *store::DateTime::from_ymd(2027, 12, 31);
    EXPECT_EQ(company::plus_months(day, 1)->iso(), "2028-01-31");
    EXPECT_EQ(company::plus_months(day, 2)->iso(), "2028-02-29");
    EXPECT_EQ(company::plus_months(day, -10)->iso(), "2027-02-28");
}

TEST(PlusMonths, MonthOutsideTheCalendarIsNone) {
    const auto last = *store::DateTime::from_ymd(9999, 11, 30);
    EXPECT_EQ(company::plus_months(last, 1)->iso(), "9999-12-30");
    EXPECT_EQ(company::plus_months(last, 2), std::nullopt);
    const auto first = *store::DateTime::from_ymd(1, 2, 1);
    EXPECT_EQ(company::plus_months(first, -1)->iso(), "0001-01-01");
    for (const int months : {-2, -13, -24, -40}) {
        EXPECT_EQ(company::plus_months(first, months), std::nullopt) << months;
    }
}

}  // namespace
}  // namespace brimley
