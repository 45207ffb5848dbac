#include "support/kernel_test.h"

namespace brimley::testing {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Periods : public KernelTest {
  protected:
    void add_year(const char* fyear, const char* start, const char* end) {
        company.add("Fiscalyear_table", {{"fyear", fyear}, {"StartDate", day(start)}, {"EndDate", day(end)}});
    }
    // "3 of 2026", or "none".
    std::string period_of(const char* iso) {
        const auto found = kernel.get_fiscal_period(day(iso));
        return found ? std::to_string(found->period) + " of " + found->fyear : "none";
    }
    void add_period(const char* fyear, const char* period, const char* start, const char* end) {
        company.add("Period_table",
                    {{"fyear", fyear}, {"period", period}, {"StartDate", start}, {"EndDate", end}});
    }
};

TEST_F(Periods, PeriodCountsMonthsFromTheStartOfTheFiscalYear) {
    add_year("2025", "2025-07-01", "2026-06-30");
    EXPECT_EQ(period_of("2025-07-01"), "1 of 2025");
    EXPECT_EQ(period_of("2025-07-31"), "1 of 2025");
    EXPECT_EQ(period_of("2026-01-01"), "7 of 2025");
    EXPECT_EQ(period_of("2026-06-30"), "12 of 2025");
}

TEST_F(Periods, YearThatBeginsInTheMiddleOfAMonthStillStepsAtMonthEnds) {
    add_year("2026", "2026-01-15", "2027-01-14");
    EXPECT_EQ(period_of("2026-01-15"), "1 of 2026");
    EXPECT_EQ(period_of("2026-01-31"), "1 of 2026");
    EXPECT_EQ(period_of("2026-02-01"), "2 of 2026");
    EXPECT_EQ(period_of("2026-02-14"), "2 of 2026");
    EXPECT_EQ(period_of("2027-01-14"), "13 of 2026");
}

TEST_F(Periods, FirstYearInTableOrderDecides) {
    add_year("late", "2026-01-01", "2026-12-31");
    add_year("early", "2025-07-01", "2026-06-30");
    EXPECT_EQ(period_of("2026-03-10"), "3 of late");
    EXPECT_EQ(period_of("2025-12-10"), "6 of early");
}

TEST_F(Periods, PeriodTablePlaysNoPartInThePeriodOfADate) {
    add_year("2026", "2026-01-01", "2026-12-31");
    add_period("2026", "9", "20260101", "20261231");
    EXPECT_EQ(period_of("2026-03-10"), "3 of 2026");
}

TEST_F(Periods, LastDayOfTheYearCountsUntilMidnight) {
    add_year("2026", "2026-01-01", "2026-12-31");
    EXPECT_EQ(period_of("2026-12-31 23:59:59"), "12 of 2026");
}

TEST_F(Periods, DateOutsideAllYearsIsTold) {
    add_year("2026", "2026-01-01", "2026-12-31");
    EXPECT_EQ(period_of("2027-01-01"), "none");
    EXPECT_EQ(period_of("2025-12-31"), "none");
    EXPECT_THAT(messages(),
                ElementsAre("No fiscal year for Jan 01, 2027", "No fiscal year for Dec 31, 2025"));
    EXPECT_EQ(outside.pumps, 2);
}

TEST_F(Periods, DateTextFindsItsRowOfThePeriodTable) {
    add_period("2026", "1", "20260101", "20260115");
    add_period("2026", "2", "20260116", "20261231");
    const auto found = kernel.get_period_of_date_text("16/01/2026", "dd/mm/yyyy");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->period, "2");
    EXPECT_EQ(found->fyear, "2026");
    EXPECT_EQ(found->month, "01");
    EXPECT_EQ(found->year, "2026");
    EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(Periods, DateTextWithoutAPeriodIsToldAsTyped) {
    add_period("2026", "1", "20260101", "20260131");
    EXPECT_FALSE(kernel.get_period_of_date_text("1/2/2026", "dd/mm/yyyy"));
    EXPECT_THAT(messages(), ElementsAre("No fiscal year for 1/2/2026"));
}

TEST_F(Periods, BadDateTextIsToldTwice) {
    EXPECT_FALSE(kernel.get_period_of_date_text("13/13/2026", "dd/mm/yyyy"));
    EXPECT_THAT(messages(), ElementsAre("Month is invalid (13)", "Invalid date format"));
    EXPECT_FALSE(kernel.get_period_of_date_text("13-13-2026", "dd/mm/yyyy"));
    EXPECT_THAT(messages(), ElementsAre("Invalid date format"));
}

}  // namespace brimley::testing
