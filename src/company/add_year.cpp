#include "company/add_year.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "company/fiscal_year.h"
#include "company/refusal.h"
#include "company/shown_text.h"
#include "company/year_balances.h"

namespace brimley::company {

namespace {

using store::DateTime;

// The years of the company, by their first day.
std::vector<FiscalYear> existing_years(store::Database& database) {
    std::vector<FiscalYear> years;
    store::Recordset rows = database.OpenRecordset("SELECT fyear,StartDate,EndDate FROM Fiscalyear_table",
                                                   store::RecordsetKind::snapshot);
    for (; !rows.at_eof(); rows.MoveNext()) {
        const auto start = rows.field("StartDate").date();
        const auto end = rows.field("EndDate").date();
        const std::string fyear = rows.text("fyear");
        if (!start || !end) throw Refusal(fmt::format("fiscal year {} has no dates", shown_text(fyear)));
        years.push_back({fyear, *start, *end});
    }
    std::sort(years.begin(), years.end(),
              [](const FiscalYear& a, const FiscalYear& b) { return a.start < b.start; });
    return years;
}

// The year's number may differ from the calendar's, as for a year that ends in the next calendar year; so the
// new one is placed by its distance to the last year that there is.
FiscalYear placed_year(const std::string& fyear, const std::vector<FiscalYear>& years) {
    if (years.empty()) return year_from(fyear, DateTime::from_ymd(std::stoi(fyear), 1, 1));
    const FiscalYear& last = years.back();
    if (!is_usable_year(last.fyear)) {
        throw Refusal(fmt::format("fiscal year {} is no year to count from", shown_text(last.fyear)));
    }
    const int distance = std::stoi(fyear) - std::stoi(last.fyear);
    return year_from(fyear, plus_months(last.start, distance * kPeriodsOfYear));
}

void refuse_overlap(const FiscalYear& year, const std::vector<FiscalYear>& years) {
    for (const FiscalYear& other : years) {
        if (year.start <= other.end && other.start <= year.end) {
            throw Refusal(
                fmt::format("fiscal year {} would overlap fiscal year {}", year.fyear, other.fyear));
        }
    }
}

void refuse_existing(store::Database& database, const std::string& fyear,
                     const std::vector<FiscalYear>& years) {
    for (const FiscalYear& year : years) {
        if (year.fyear == fyear) throw Refusal(fmt::format("fiscal year {} exists already", fyear));
    }
    const store::Recordset periods = database.OpenRecordset(
        "SELECT * FROM Period_table WHERE fyear = " + store::quoted(fyear), store::RecordsetKind::snapshot);
    if (!periods.at_eof()) throw Refusal(fmt::format("fiscal year {} has periods already", fyear));
}

}  // namespace

void add_year(store::Database& database, const std::string& fyear) {
    require_usable_year(fyear);
    const std::vector<FiscalYear> years = existing_years(database);
    refuse_existing(database, fyear, years);
    const FiscalYear year = placed_year(fyear, years);
    refuse_overlap(year, years);
    add_calendar(database, year);
    add_counters(database, fyear);
    add_year_balances(database, fyear);
}

}  // namespace brimley::company
