#include "invoices/recurring_run/due_rule.h"

#include <fmt/format.h>

#include "kernel/money.h"

namespace brimley::invoices {

using store::DateTime;

namespace {

constexpr double kToday = 0;
constexpr double kEndOfMonth = 31;
constexpr std::int64_t kDaysMax = 36525;  // a century: what a table may hold instead of a day

std::string two_digits(int month) { return fmt::format("{:02}", month); }

DateTime first_of_month(DateTime date) { return date.plus_days(1 - date.day_of_month()); }

// The first of the next month is at most 31 days after that of this one.
DateTime last_of_month(DateTime date) {
    return first_of_month(first_of_month(date).plus_days(31)).plus_days(-1);
}

}  // namespace

std::optional<IssueMonths> DueRule::months_of(std::string_view frequency) const {
    const std::string year = std::to_string(today_.year());
    if (frequency == "monthly")
        return IssueMonths{two_digits(today_.month()), two_digits(today_.month()), year};
    if (frequency != "quarterly") return std::nullopt;
    const int quarter = today_.month() / 3;
    return IssueMonths{two_digits(quarter * 3 + 1), two_digits(quarter * 3 + 3), year};
}

std::optional<DateTime> DueRule::due_date(const store::Value& recur_date) const {
    if (recur_date.is_null()) return std::nullopt;
    const double day = recur_date.number();
    if (day == kToday) return today_;
    if (day == kEndOfMonth) return last_of_month(today_);
    const auto days = kernel::whole_number(day, -kDaysMax, kDaysMax);
    return first_of_month(today_).plus_days(static_cast<int>(days) - 1);
}

}  // namespace brimley::invoices
