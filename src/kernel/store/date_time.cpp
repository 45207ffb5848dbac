#include <fmt/format.h>

#include <array>
#include <charconv>
#include <chrono>

#include "kernel/store/catalog.h"
#include "kernel/store/value.h"

namespace brimley::store {

namespace {

constexpr std::array<std::string_view, 12> kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                      "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

std::chrono::year_month_day calendar(std::int32_t day) {
    return std::chrono::year_month_day{std::chrono::sys_days{std::chrono::days{day}}};
}

// The number that all of these characters are, digits only; -1 for anything else.
int digits(std::string_view text) {
    if (text.empty() || text.find_first_not_of("0123456789") != std::string_view::npos) return -1;
    int number = 0;
    const auto end = std::from_chars(text.data(), text.data() + text.size(), number);
    return end.ec == std::errc{} ? number : -1;
}

int month_of(std::string_view abbreviation) {
    for (std::size_t month = 0; month < kMonths.size(); ++month)
        if (lower_case(kMonths[month]) == lower_case(abbreviation)) return static_cast<int>(month) + 1;
    return 0;
}

std::string_view take_blanks(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    return first == std::string_view::npos ? std::string_view{} : text.substr(first);
}

}  // namespace

std::optional<DateTime> DateTime::from_ymd(int year, int month, int day_of_month) {
    if (year < 1 || year > 9999 || month < 1 || month > 12 || day_of_month < 1 || day_of_month > 31)
        return {};
    const std::chrono::year_month_day date{std::chrono::year{year},
                                           std::chrono::month{static_cast<unsigned>(month)},
                                           std::chrono::day{static_cast<unsigned>(day_of_month)}};
    if (!date.ok()) return {};
    return DateTime{static_cast<std::int32_t>(std::chrono::sys_days{date}.time_since_epoch().count()), 0};
}

std::optional<DateTime> DateTime::from_iso(std::string_view text) {
    if (text.size() != 10 && text.size() != 19) return {};
    if (text[4] != '-' || text[7] != '-') return {};
    auto date = from_ymd(digits(text.substr(0, 4)), digits(text.substr(5, 2)), digits(text.substr(8, 2)));
    if (!date || text.size() == 10) return date;
    if (text[10] != ' ' || text[13] != ':' || text[16] != ':') return {};
    const int hour = digits(text.substr(11, 2));
    const int minute = digits(text.substr(14, 2));
    const int second = digits(text.substr(17, 2));
    if (hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59) return {};
    date->second_of_day = hour * 3600 + minute * 60 + second;
    return date;
}

int DateTime::year() const { return static_cast<int>(calendar(day).year()); }
int DateTime::month() const { return static_cast<int>(static_cast<unsigned>(calendar(day).month())); }
int DateTime::day_of_month() const { return static_cast<int>(static_cast<unsigned>(calendar(day).day())); }

std::string DateTime::iso() const {
    const std::string date = fmt::format("{:04}-{:02}-{:02}", year(), month(), day_of_month());
    return second_of_day == 0 ? date : date + " " + time_text();
}

std::string DateTime::yyyymmdd() const {
    return fmt::format("{:04}{:02}{:02}", year(), month(), day_of_month());
}

std::string DateTime::query_text() const {
    return fmt::format("{} {:02}, {:04}", kMonths[static_cast<std::size_t>(month() - 1)], day_of_month(),
                       year());
}

std::string DateTime::time_text() const {
    std::string text = "00:00:00";  // written by hand: every row that is stored has one
    std::size_t at = 0;
    for (const int part : {second_of_day / 3600, second_of_day / 60 % 60, second_of_day % 60}) {
        text[at] = static_cast<char>('0' + part / 10);
        text[at + 1] = static_cast<char>('0' + part % 10);
        at += 3;
    }
    return text;
}

std::optional<DateTime> parse_query_date(std::string_view text) {
    const auto comma = text.find(',');
    if (comma == std::string_view::npos || text.size() < 4 || text[3] != ' ') return {};
    const int month = month_of(text.substr(0, 3));
    const std::string_view day = comma < 4 ? std::string_view{} : take_blanks(text.substr(4, comma - 4));
    const std::string_view year = take_blanks(text.substr(comma + 1));
    if (day.size() > 2 || year.size() != 4) return {};
    return DateTime::from_ymd(digits(year), month, digits(day));
}

}  // namespace brimley::store
