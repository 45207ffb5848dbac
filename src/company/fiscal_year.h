// The rows that a fiscal year consists of: the year, its periods, its counters.
//
// All of it runs inside the caller's transaction and throws store::Error.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "kernel/store/database.h"

namespace brimley::company {

inline constexpr int kPeriodsOfYear = 12;
// The company number that every form writes.
inline constexpr int kCompany = 1;

// The kinds of document that draw numbers, with the prefix that a new company gives them.
struct DocumentKind {
    const char* doctype;
    const char* prefix;
};
[[nodiscard]] std::span<const DocumentKind> document_kinds();

struct FiscalYear {
    std::string fyear;
    store::DateTime start;  // the first day
    store::DateTime end;    // the last day
};

// Whether documents can be dated in this year: 1990 to 2030, or 2530 (the Buddhist calendar) to 9998, four
// digits. 9999 is the last year of the calendar, and the end of a fiscal year is known by the day after it.
[[nodiscard]] bool is_usable_year(std::string_view year);
// Throws UnusableValue with the reason.
void require_usable_year(std::string_view year);

// The same day `months` later; the last day of the month when the month is too short for it. Empty when that
// month is none of the years 1 to 9999.
[[nodiscard]] std::optional<store::DateTime> plus_months(store::DateTime day, int months);

// Twelve months from `start`. Throws Refusal when the start or the day after the end is no date.
[[nodiscard]] FiscalYear year_from(const std::string& fyear, std::optional<store::DateTime> start);

// The open year, made by year_from(), and its twelve periods, each from the day of the month that the year
// starts on.
void add_calendar(store::Database& database, const FiscalYear& year);

// A counter that starts at 1 for every kind of document that has none in this year.
void add_counters(store::Database& database, const std::string& fyear);

}  // namespace brimley::company
