#include "company/fiscal_year.h"

#include <algorithm>
#include <charconv>
#include <set>
#include <utility>

#include "company/table_writer.h"

namespace brimley::company {

namespace {

using store::DateTime;

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
    return (number >= 1990 && number <= 2030) || number >= 2530;
}

DateTime plus_months(DateTime day, int months) {
    const int month_count = day.year() * 12 + day.month() - 1 + months;
    for (int day_of_month = day.day_of_month();; --day_of_month) {
        const auto moved = DateTime::from_ymd(month_count / 12, month_count % 12 + 1, day_of_month);
        if (moved) return *moved;
    }
}

FiscalYear year_from(const std::string& fyear, DateTime start) {
    return {fyear, start, plus_months(start, kPeriodsOfYear).plus_days(-1)};
}

void add_calendar(store::Database& database, const FiscalYear& year) {
    TableWriter(database, "Fiscalyear_table")
        .add({{"fyear", year.fyear}, {"StartDate", year.start}, {"EndDate", year.end}, {"history", false}});
    TableWriter periods(database, "Period_table");
    for (int period = 1; period <= kPeriodsOfYear; ++period) {
        periods.add({{"fyear", year.fyear},
                     {"period", std::to_string(period)},
                     {"StartDate", plus_months(year.start, period - 1).yyyymmdd()},
                     {"EndDate", plus_months(year.start, period).plus_days(-1).yyyymmdd()}});
    }
}

void add_counters(store::Database& database, const std::string& fyear) {
    TableWriter counters(database, "Docno_master_table");
    for (const auto& [company, doctype] : counters_to_make(database, fyear)) {
        counters.add({{"company", company}, {"doctype", doctype}, {"fiscalyear", fyear}, {"nextdocno", 1}});
    }
}

}  // namespace brimley::company
