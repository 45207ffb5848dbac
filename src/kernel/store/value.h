// One field's value, and the date type that goes with it.
//
// A value is null, a text, a number (double: money is held unrounded), a yes/no flag or a date. Values do
// not know their field; the store converts on the way in (see Recordset::set) and hands out exactly what the
// table holds. The conversions here are the ones every caller needs and none of them ever throws, except
// number() on a text that is no number.
#pragma once

#include <compare>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace brimley::store {

// A calendar day with a time of day, independent of locale and time zone. Most fields hold whole days
// (second_of_day 0); subtracting two of them gives days.
struct DateTime {
    std::int32_t day = 0;            // days since 1970-01-01, negative before it
    std::int32_t second_of_day = 0;  // 0 to 86399

    // Empty when the three numbers name no day of the calendar.
    static std::optional<DateTime> from_ymd(int year, int month, int day_of_month);
    // Reads "2026-01-15" or "2026-01-15 09:30:00", nothing else.
    static std::optional<DateTime> from_iso(std::string_view text);

    [[nodiscard]] int year() const;
    [[nodiscard]] int month() const;         // 1 to 12
    [[nodiscard]] int day_of_month() const;  // 1 to 31
    [[nodiscard]] DateTime date_only() const { return {day, 0}; }
    [[nodiscard]] DateTime plus_days(int days) const { return {day + days, second_of_day}; }
    // "2026-01-15", followed by " 09:30:00" when the time of day is not 0.
    [[nodiscard]] std::string iso() const;
    // "20260115".
    [[nodiscard]] std::string yyyymmdd() const;
    // "Jan 15, 2026": the form that Datevalue reads in query texts.
    [[nodiscard]] std::string query_text() const;
    // "09:30:00", 24 hours.
    [[nodiscard]] std::string time_text() const;

    auto operator<=>(const DateTime&) const = default;
};

// Reads "Jan 5, 2006" as query texts hold it: an English month of three letters in any case, blanks, one or
// two digits, a comma, blanks or none, a year of four digits. Empty when it is no such text or no such day.
std::optional<DateTime> parse_query_date(std::string_view text);

class Value {
  public:
    Value() = default;  // null
    Value(std::string text) : held_(std::move(text)) {}
    Value(std::string_view text) : held_(std::string(text)) {}
    Value(const char* text) : held_(std::string(text)) {}
    Value(double number) : held_(number) {}
    Value(int number) : held_(static_cast<double>(number)) {}
    Value(std::int64_t number) : held_(static_cast<double>(number)) {}
    Value(bool flag) : held_(flag) {}
    Value(DateTime date) : held_(date) {}

    // Becomes this text, in the memory of the text it held.
    void assign(std::string_view text) {
        if (auto* const held = std::get_if<std::string>(&held_))
            held->assign(text);
        else
            held_.emplace<std::string>(text);
    }

    [[nodiscard]] bool is_null() const { return held_.index() == 0; }
    [[nodiscard]] bool is_text() const { return held_.index() == 1; }
    [[nodiscard]] bool is_number() const { return held_.index() == 2; }
    [[nodiscard]] bool is_flag() const { return held_.index() == 3; }
    [[nodiscard]] bool is_date() const { return held_.index() == 4; }

    // The value as text: null is empty, a number in shortest form without grouping ("3", "12.35"), a date as
    // iso(), a flag "TRUE" or "FALSE".
    [[nodiscard]] std::string text() const;
    // The value in a sum: null is 0, a flag 0 or 1, a text its number. Throws store::Error (conversion) for a
    // text that is no number and for a date.
    [[nodiscard]] double number() const;
    // The value as a yes/no: null is false; a number is true unless 0; a text is true for "TRUE", "YES",
    // "-1", "1".
    [[nodiscard]] bool flag() const;
    [[nodiscard]] std::optional<DateTime> date() const;

    // Without a copy; only valid when is_text().
    [[nodiscard]] const std::string& text_ref() const { return std::get<std::string>(held_); }
    [[nodiscard]] double number_ref() const { return std::get<double>(held_); }

    // Same kind and same content; null equals null here (unlike in queries).
    bool operator==(const Value&) const = default;

  private:
    std::variant<std::monostate, std::string, double, bool, DateTime> held_;
};

// Fields and what they are to hold, as texts.
using FieldValues = std::initializer_list<std::pair<std::string_view, std::string_view>>;

// Shortest decimal text that reads back as the same double, never in exponent form below 1e15: "3", "12.35",
// "-0.5". A negative zero is "0".
std::string shortest_number(double number);
// The number that the whole text is (blanks around it allowed, no grouping), or empty.
std::optional<double> whole_number_text(std::string_view text);

}  // namespace brimley::store
