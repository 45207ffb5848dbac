#include "invoices/recurring_run/due_rule.h"

#include <gtest/gtest.h>

namespace brimley::testing {

using invoices::DueRule;
using invoices::IssueMonths;

namespace {

DueRule rule_on(const char* day) { return DueRule(*store::DateTime::from_iso(day)); }

std::string due_on(const char* today, const store::Value& recur_date) {
    const auto date = rule_on(today).due_date(recur_date);
    return date ? date->iso() : "none";
}

}  // namespace

TEST(DueRule, MonthlyTemplateIsIssuedInItsMonth) {
    EXPECT_EQ(rule_on("2026-02-28").months_of("monthly"), (IssueMonths{"02", "02", "2026"}));
    EXPECT_EQ(rule_on("2027-12-01").months_of("monthly"), (IssueMonths{"12", "12", "2027"}));
}

TEST(DueRule, QuarterOfATemplateBeginsWithItsMarchAndThatOfDecemberHasNoMonths) {
    struct Quarter {
        const char* today;
        const char* first;
        const char* last;
    };
    for (const auto& [today, first, last] : {Quarter{"2026-01-31", "01", "03"},
                                             {"2026-02-01", "01", "03"},
                                             {"2026-03-01", "04", "06"},
                                             {"2026-04-30", "04", "06"},
                                             {"2026-05-15", "04", "06"},
                                             {"2026-06-01", "07", "09"},
                                             {"2026-07-31", "07", "09"},
                                             {"2026-08-31", "07", "09"},
                                             {"2026-09-01", "10", "12"},
                                             {"2026-10-01", "10", "12"},
                                             {"2026-11-30", "10", "12"},
                                             {"2026-12-31", "13", "15"}})
        EXPECT_EQ(rule_on(today).months_of("quarterly"), (IssueMonths{first, last, "2026"})) << today;
}

TEST(DueRule, AnotherFrequencyIsNeverDue) {
    for (const char* frequency : {"", "yearly", "Monthly", "QUARTERLY", "monthly "})
        EXPECT_EQ(rule_on("2026-02-28").months_of(frequency), std::nullopt) << frequency;
}

TEST(DueRule, DayIsCountedFromTheFirstOfTheMonth) {
    struct Day {
        const char* today;
        double recur_date;
        const char* due;
    };
    for (const auto& [today, recur_date, due] : {Day{"2026-02-14", 1, "2026-02-01"},
                                                 {"2026-02-14", 15, "2026-02-15"},
                                                 {"2026-02-14", 28, "2026-02-28"},
                                                 {"2026-02-14", 29, "2026-03-01"},
                                                 {"2026-02-14", 30, "2026-03-02"},
                                                 {"2028-02-14", 29, "2028-02-29"},
                                                 {"2028-02-14", 30, "2028-03-01"},
                                                 {"2026-04-30", 30, "2026-04-30"},
                                                 {"2026-12-31", 30, "2026-12-30"},
                                                 {"2026-03-01", 15.9, "2026-03-15"}})
        EXPECT_EQ(due_on(today, recur_date), due) << today << " " << recur_date;
}

TEST(DueRule, Day31IsTheLastOfTheMonth) {
    for (const auto& [today, due] : {std::pair("2026-01-01", "2026-01-31"),
                                     {"2026-02-01", "2026-02-28"},
                                     {"2028-02-29", "2028-02-29"},
                                     {"2026-04-30", "2026-04-30"},
                                     {"2026-12-31", "2026-12-31"}})
        EXPECT_EQ(due_on(today, 31), due);
}

TEST(DueRule, Day0IsTodayWithoutItsTime) { EXPECT_EQ(due_on("2026-02-14 09:30:00", 0), "2026-02-14"); }

TEST(DueRule, NoDayIsNoDate) { EXPECT_EQ(due_on("2026-02-14", {}), "none"); }

// As an import may leave it.
TEST(DueRule, NumberThatIsNoDayCountsOnAndAtMostACentury) {
    EXPECT_EQ(due_on("2026-02-14", -1), "2026-01-30");
    EXPECT_EQ(due_on("2026-02-14", 1e300), "2126-02-01");
}

}  // namespace brimley::testing
