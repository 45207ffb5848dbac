#include "kernel/store/value.h"

#include <array>
#include <charconv>
#include <cmath>

#include "kernel/store/catalog.h"
#include "kernel/store/error.h"

namespace brimley::store {

namespace {

constexpr double kExponentFrom = 1e15;

std::string_view without_blanks_around(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

template <class... How>
std::string digits_of(How... how) {
    std::array<char, 400> buffer;
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), how...);
    return {buffer.data(), end.ptr};
}

// Rates and amounts are numbers of few decimals, whose digits need not be searched for: as long as there are
// at most fifteen digits, no shorter decimal number is the same double. Empty for any other number.
std::string few_decimals(double number) {
    constexpr double kPower = 1e6;
    const double scaled = std::abs(number) * kPower;
    if (!(scaled < 1e15)) return {};
    auto digits = static_cast<std::int64_t>(scaled + 0.5);
    if (static_cast<double>(digits) / kPower != std::abs(number)) return {};
    std::size_t decimals = 6;
    for (; digits % 10 == 0; --decimals)
        digits /= 10;
    std::string text = digits_of(digits);
    if (text.size() <= decimals) text.insert(0, decimals + 1 - text.size(), '0');
    text.insert(text.size() - decimals, 1, '.');
    if (number < 0) text.insert(0, 1, '-');
    return text;
}

}  // namespace

std::string shortest_number(double number) {
    if (number == 0) return "0";
    if (!(std::abs(number) < kExponentFrom)) return digits_of(number);
    if (number == std::trunc(number)) return digits_of(static_cast<std::int64_t>(number));
    std::string text = few_decimals(number);
    return text.empty() ? digits_of(number, std::chars_format::fixed) : text;
}

std::optional<double> whole_number_text(std::string_view text) {
    text = without_blanks_around(text);
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    // from_chars would take a second sign, and the words for infinity and for no number.
    const std::string_view unsigned_part = text.starts_with('-') ? text.substr(1) : text;
    if (unsigned_part.empty() || unsigned_part.find_first_not_of("0123456789.eE+-") != std::string_view::npos)
        return {};
    double number = 0;
    const auto end = std::from_chars(text.data(), text.data() + text.size(), number);
    if (end.ec != std::errc{} || end.ptr != text.data() + text.size()) return {};
    return number;
}

std::string Value::text() const {
    if (is_text()) return text_ref();
    if (is_number()) return shortest_number(number_ref());
    if (is_flag()) return std::get<bool>(held_) ? "TRUE" : "FALSE";
    if (is_date()) return std::get<DateTime>(held_).iso();
    return {};
}

double Value::number() const {
    if (is_number()) return number_ref();
    if (is_flag()) return std::get<bool>(held_) ? 1 : 0;
    if (is_null()) return 0;
    if (is_text()) {
        if (const auto number = whole_number_text(text_ref())) return *number;
    }
    throw Error(ErrorKind::conversion, "\"" + text() + "\" is no number");
}

bool Value::flag() const {
    if (is_flag()) return std::get<bool>(held_);
    if (is_number()) return number_ref() != 0;
    if (!is_text()) return false;
    const std::string word = lower_case(without_blanks_around(text_ref()));
    return word == "true" || word == "yes" || word == "-1" || word == "1";
}

std::optional<DateTime> Value::date() const {
    if (!is_date()) return {};
    return std::get<DateTime>(held_);
}

}  // namespace brimley::store
