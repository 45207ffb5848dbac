#include "kernel/user_dates.h"

#include <fmt/format.h>

#include <array>

#include "kernel/money.h"
#include "kernel/store/catalog.h"

namespace brimley::kernel {

namespace {

using store::DateTime;

constexpr std::array<const char*, 12> kMonthNames{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                  "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

// Positions, from 0, of the three parts in a date text.
struct PartOrder {
    std::size_t month;
    std::size_t day;
    [[nodiscard]] std::size_t year() const { return 3 - month - day; }
};

std::optional<PartOrder> part_order(std::string_view date_format) {
    const std::string format = store::lower_case(date_format);
    const auto has = [&](const char* part) { return format.find(part) != std::string::npos; };
    if (has("/mm/")) return has("dd/") ? PartOrder{1, 0} : PartOrder{1, 2};
    if (has("mm/")) return has("/dd/") ? PartOrder{0, 1} : PartOrder{0, 2};
    if (has("/dd/")) return PartOrder{2, 1};
    return std::nullopt;
}

// The date of three texts, or what is wrong with them; neither, without a message, for a text that is not
// three.
struct Composed {
    std::optional<DateTime> date;
    std::string text;  // "Jan 5, 2006"
    std::string fault;
};

std::string month_fault(std::string_view month) { return fmt::format("Month is invalid ({})", month); }

Composed compose(std::string_view month, std::string_view day, std::string_view year) {
    const double month_number = money_value(month);
    if (month_number < 1 || month_number > 12 || month_number != static_cast<int>(month_number)) {
        return {{}, {}, month_fault(month)};
    }
    Composed result;
    result.text =
        fmt::format("{} {}, {}", kMonthNames[static_cast<std::size_t>(month_number) - 1], day, year);
    result.date = store::parse_query_date(result.text);
    if (!result.date) result.fault = fmt::format("Date is invalid ({})", result.text);
    return result;
}

// The tests of the single fields come first, in this order, and each has its own words.
Composed check_and_compose(std::string_view month, std::string_view day, std::string_view year) {
    if (money_value(month) > 12) return {{}, {}, month_fault(month)};
    if (money_value(day) > 31) return {{}, {}, fmt::format("date is invalid ({})", day)};
    const double year_number = money_value(year);
    if (year_number < 1990 || (year_number > 2030 && year_number < 2530)) {
        return {{}, {}, fmt::format("year is invalid ({})", year)};
    }
    return compose(month, day, year);
}

Composed parse(std::string_view text, std::string_view date_format) {
    const auto order = part_order(date_format);
    if (!order) return {{}, {}, "Error : User_Form_Dateformat:date_format is not valid"};
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    const std::size_t first_slash = text.find('/');
    if (first_slash == std::string_view::npos) return {};
    const std::size_t second_slash = text.find('/', first_slash + 1);
    if (second_slash == std::string_view::npos) return {};
    const std::array<std::string_view, 3> parts{text.substr(0, first_slash),
                                                text.substr(first_slash + 1, second_slash - first_slash - 1),
                                                text.substr(second_slash + 1)};
    return check_and_compose(parts[order->month], parts[order->day], parts[order->year()]);
}

void tell(const Composed& composed, Outside& outside) {
    if (composed.fault.empty()) return;
    outside.pump();
    outside.message(composed.fault);
}

Composed from_yyyymmdd(std::string_view text) {
    const auto part = [&](std::size_t from, std::size_t length) {
        return from < text.size() ? text.substr(from, length) : std::string_view{};
    };
    return compose(part(4, 2), part(6, 2), part(0, 4));
}

}  // namespace

std::optional<DateTime> parse_user_date(std::string_view text, std::string_view date_format,
                                        Outside& outside) {
    const Composed composed = parse(text, date_format);
    tell(composed, outside);
    return composed.date;
}

std::optional<DateTime> required_user_date(std::string_view text, std::string_view date_format,
                                           const std::string& missing, Outside& outside) {
    const Composed composed = text.empty() ? Composed{} : parse(text, date_format);
    if (!composed.date && composed.fault.empty()) outside.message(missing);
    tell(composed, outside);
    return composed.date;
}

std::optional<DateTime> try_user_date(std::string_view text, std::string_view date_format) {
    return parse(text, date_format).date;
}

std::optional<std::string> user_date_to_yyyymmdd(std::string_view text, const DateFormatRow& row,
                                                 Outside& outside) {
    const auto date = parse_user_date(text, row.date_format, outside);
    if (!date) return std::nullopt;
    return date->yyyymmdd();
}

std::string yyyymmdd_to_user_date(std::string_view yyyymmdd, const DateFormatRow& row, Outside& outside) {
    if (yyyymmdd.empty()) return {};
    const Composed composed = from_yyyymmdd(yyyymmdd);
    tell(composed, outside);
    return composed.date ? user_date_text(*composed.date, row.date_format) : std::string{};
}

std::string yyyymmdd_to_date_text(std::string_view yyyymmdd, Outside& outside) {
    const Composed composed = from_yyyymmdd(yyyymmdd);
    tell(composed, outside);
    return composed.date ? composed.text : std::string{};
}

std::string user_date_text(DateTime date, std::string_view date_format) {
    const std::string format = store::lower_case(date_format);
    std::string text;
    for (std::size_t i = 0; i < format.size();) {
        const std::string_view rest = std::string_view(format).substr(i);
        if (rest.starts_with("yyyy")) {
            text += fmt::format("{:04}", date.year());
            i += 4;
        } else if (rest.starts_with("yy")) {
            text += fmt::format("{:02}", date.year() % 100);
            i += 2;
        } else if (rest.starts_with("mm")) {
            text += fmt::format("{:02}", date.month());
            i += 2;
        } else if (rest.starts_with("dd")) {
            text += fmt::format("{:02}", date.day_of_month());
            i += 2;
        } else {
            text += format[i++];
        }
    }
    return text;
}

}  // namespace brimley::kernel
