#include "company/fiscal_year.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <set>
#include <utility>

#include "company/refusal.h"
#include "company/shown_text.h"
#include "company/table_writer.h"

namespace brimley::company {

namespace {

using store::DateTime;

constexpr int kMonthsOfYear = 12;

constexpr DocumentKind kKinds[] = {
    {"ip", "IP"}, {"vdn", "VDN"}, {"vcn", "VCN"}, {"recur", "REC"}, {"py", "PY"},
    {"pp", "PP"}, {"pc", "PC"},   {"mpy", "MPY"}, {"apre", "APR"},  {"gl", "GL"},
};

// Counters are kept by company and kind; a company file may hold more kinds than this module draws.
using CounterKey = std::pair<double, std::string>;

std::set<CounterKey> counters_to_make(store::Database& database, const std::string& fyear) {
    std::set<CounterKey> wanted;
    for (const DocumentKind& kind : kKinds) {
        wanted.emplace(kCompany, kind.doctype);
    }
    std::set<CounterKey> existing;
    store::Recordset rows = database.OpenRecordset(
        "SELECT company,doctype,fiscalyear FROM Docno_master_table", store::RecordsetKind::snapshot);
    for (; !rows.at_eof(); rows.MoveNext()) {
        const CounterKey key(rows.number("company"), rows.text("doctype"));
        (rows.text("fiscalyear") == fyear ? existing : wanted).insert(key);
    }
    for (const CounterKey& key : existing) {
        wanted.erase(key);
    }
    return wanted;
}

}  // namespace

std::span<const DocumentKind> document_kinds() { return kKinds; }

bool is_usable_year(std::string_view year) {
    int number = 0;
    const char* end = year.data() + year.size();
    const auto [stopped, error] = std::from_chars(year.data(), end, number);
    if (year.size() != 4 || error != std::errc() || stopped != end) return false;
    return (number >= 1990 && number <= 2030) || (number >= 2530 && number <= 9998);
}

void require_usable_year(std::string_view year) {
    if (is_usable_year(year)) return;
    throw UnusableValue(
        fmt::format("\"{}\" is no fiscal year: years are 1990 to 2030 and 2530 to 9998", shown_text(year)));
}

std::optional<DateTime> plus_months(DateTime day, int months) {
    const int month_count = day.year() * kMonthsOfYear + day.month() - 1 + months;
    for (int day_of_month = day.day_of_month(); day_of_month > 0; --day_of_month) {
        const auto moved =
            DateTime::from_ymd(month_count / kMonthsOfYear, month_count % kMonthsOfYear + 1, day_of_month);
        if (moved) return moved;
    }
    return std::nullopt;
}

FiscalYear year_from(const std::string& fyear, std::optional<DateTime> start) {
    const auto next_start = start ? plus_months(*start, kPeriodsOfYear) : std::nullopt;
    if (!next_start) {
        throw Refusal(fmt::format("fiscal year {} would lie outside the years 1 to 9999 of the calendar",
                                  shown_text(fyear)));
    }
    return {fyear, *start, next_start->plus_days(-1)};
}

void add_calendar(store::Database& database, const FiscalYear& year) {
    TableWriter(database, "Fiscalyear_table")
        .add({{"fyear", year.fyear}, {"StartDate", year.start}, {"EndDate", year.end}, {"history", false}});
    TableWriter periods(database, "Period_table");
    for (int period = 1; period <= kPeriodsOfYear; ++period) {
        periods.add({{"fyear", year.fyear},
                     {"period", std::to_string(period)},
                     {"StartDate", plus_months(year.start, period - 1).value().yyyymmdd()},
                     {"EndDate", plus_months(year.start, period).value().plus_days(-1).yyyymmdd()}});
    }
}

void add_counters(store::Database& database, const std::string& fyear) {
    TableWriter counters(database, "Docno_master_table");
    for (const auto& [company, doctype] : counters_to_make(database, fyear)) {
        counters.add({{"company", company}, {"doctype", doctype}, {"fiscalyear", fyear}, {"nextdocno", 1}});
    }
}

}  // namespace brimley::company
