// Fiscal years and their periods: one day after the other, without a gap.
#include <fmt/format.h>

#include <algorithm>
#include <map>

#include "company/check.h"
#include "company/shown_text.h"
#include "company/table_rows.h"

namespace brimley::company {

namespace {

struct Span {
    std::string name;
    std::string fyear;
    std::optional<store::DateTime> from;
    std::optional<store::DateTime> to;
};

// A date, or the text of one in eight digits.
std::optional<store::DateTime> day_in(const store::Value& value) {
    if (!value.is_text()) return value.date();
    const std::string& text = value.text_ref();
    if (text.size() != 8) return std::nullopt;
    return store::DateTime::from_iso(text.substr(0, 4) + "-" + text.substr(4, 2) + "-" + text.substr(6));
}

std::vector<Span> spans_of(const Books& books, const char* table, const char* period) {
    const TableRows& rows = books.tables().rows(table);
    std::vector<Span> spans;
    for (std::int64_t row = 0; row < rows.count(); ++row) {
        const std::string fyear = rows.text(row, "fyear");
        const std::string name = period != nullptr
                                     ? fmt::format("Period {} of {}", rows.text(row, period), fyear)
                                     : "Fiscal year " + fyear;
        spans.push_back({shown_text(name), fyear, day_in(rows.value(row, rows.column("StartDate"))),
                         day_in(rows.value(row, rows.column("EndDate")))});
    }
    return spans;
}

// Days that follow one another; those of a whole year are held by the year as well.
void check_spans(std::vector<Span> spans, bool across_years, Findings& findings) {
    std::erase_if(spans, [&](const Span& span) {
        const bool odd = !span.from || !span.to || *span.to < *span.from;
        if (odd) findings.push_back(span.name + " has no days from a first to a last one");
        return odd;
    });
    std::ranges::sort(spans, {}, [](const Span& span) { return std::pair(span.fyear, *span.from); });
    for (std::size_t i = 1; i < spans.size(); ++i) {
        if (!across_years && spans[i].fyear != spans[i - 1].fyear) continue;
        if (*spans[i].from != spans[i - 1].to->plus_days(1))
            findings.push_back(fmt::format("{} begins on {}, but {} ends on {}", spans[i].name,
                                           spans[i].from->iso(), spans[i - 1].name, spans[i - 1].to->iso()));
    }
}

void check_within_years(const std::vector<Span>& periods, const std::vector<Span>& years,
                        Findings& findings) {
    for (const Span& year : years) {
        std::optional<store::DateTime> first, last;
        for (const Span& period : periods) {
            if (period.fyear != year.fyear || !period.from || !period.to) continue;
            first = first ? std::min(*first, *period.from) : *period.from;
            last = last ? std::max(*last, *period.to) : *period.to;
        }
        if (first && (first != year.from || last != year.to))
            findings.push_back(fmt::format("{} does not begin and end with its periods", year.name));
    }
}

// What is posted to a period goes to the columns of its number.
void check_numbers(const TableRows& periods, Findings& findings) {
    std::map<std::string, std::map<std::string, std::string>> by_first_day;  // of each year
    for (std::int64_t row = 0; row < periods.count(); ++row)
        by_first_day[periods.text(row, "fyear")].emplace(periods.text(row, "StartDate"),
                                                         periods.text(row, "period"));
    for (const auto& [fyear, of_year] : by_first_day) {
        int number = 0;
        for (const auto& [first_day, name] : of_year)
            if (name != std::to_string(++number))
                findings.push_back(fmt::format("Period \"{}\" of {} is the {}. of its year", shown_text(name),
                                               shown_text(fyear), number));
    }
}

}  // namespace

void check_calendar(const Books& books, Findings& findings) {
    const std::vector<Span> years = spans_of(books, "Fiscalyear_table", nullptr);
    const std::vector<Span> periods = spans_of(books, "Period_table", "period");
    check_spans(years, true, findings);
    check_spans(periods, false, findings);
    check_within_years(periods, years, findings);
    check_numbers(books.tables().rows("Period_table"), findings);
}

}  // namespace brimley::company
