#include "kernel/money.h"

#include <fmt/format.h>

#include <array>
#include <charconv>
#include <cmath>

namespace brimley::kernel {

namespace {

bool is_digit(char c) { return c >= '0' && c <= '9'; }

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}

}  // namespace

double Round(double value) { return std::nearbyint(value * 100.0) / 100.0; }

std::int64_t whole_number(double number, std::int64_t least, std::int64_t most) {
    if (!(number > static_cast<double>(least))) return least;
    return number < static_cast<double>(most) ? static_cast<std::int64_t>(number) : most;
}

// Larger amounts could not be held to the cent.
constexpr int kWholeDigitsMax = 13;
constexpr double kAmountsEnd = 1e13 - 0.005;

// A number of so many digits is held exactly.
constexpr int kExactDigits = 15;
constexpr std::array kPowersOfTen{1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                  1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

// The text of so many cents, given by their digits, of which there are three at least. Returns its end.
static char* write_money(std::string_view digits, bool negative, char* text) {
    const std::size_t whole = digits.size() - 2;
    if (negative) *text++ = '-';
    for (std::size_t i = 0; i < whole; ++i) {
        if (i > 0 && (whole - i) % 3 == 0) *text++ = ',';
        *text++ = digits[i];
    }
    *text++ = '.';
    *text++ = digits[whole];
    *text++ = digits[whole + 1];
    return text;
}

// Half a cent counts as one, away from zero. For amounts that are held to the cent.
static std::int64_t whole_cents(double cents) {
    const auto whole = static_cast<std::int64_t>(cents);
    const double rest = cents - static_cast<double>(whole);
    return whole + (rest >= 0.5 ? 1 : 0) - (rest <= -0.5 ? 1 : 0);
}

static bool is_held_to_the_cent(double cents) { return std::fabs(cents) < kAmountsEnd * 100; }

static std::string format_endless(double cents) {
    const double whole = std::round(cents);
    const std::string digits = fmt::format("{:03.0f}", std::fabs(whole));
    std::string text(2 * digits.size(), ' ');
    text.resize(static_cast<std::size_t>(write_money(digits, whole < 0, text.data()) - text.data()));
    return text;
}

std::string format_money(double value) {
    if (!is_held_to_the_cent(value * 100.0)) return format_endless(value * 100.0);
    const std::int64_t cents = whole_cents(value * 100.0);
    const std::int64_t whole = std::abs(cents);
    std::array<char, 20> digits{'0', '0'};
    char* const begin = digits.data() + (whole < 10 ? 2 : whole < 100 ? 1 : 0);
    const auto end = std::to_chars(begin, digits.data() + digits.size(), whole).ptr;
    std::array<char, 32> text;
    return {text.data(), write_money({digits.data(), end}, cents < 0, text.data())};
}

double shown_amount(double value) {
    if (!is_held_to_the_cent(value * 100.0)) return money_value(format_money(value));
    return static_cast<double>(whole_cents(value * 100.0)) / 100.0;
}

double money_value(std::string_view text) {
    fmt::basic_memory_buffer<char, 64> leading;
    bool point_seen = false;
    int digit_count = 0;
    int decimals = 0;
    std::int64_t digits = 0;
    for (const char c : text) {
        if (c == ',' || c == ' ') continue;
        const bool sign = (c == '-' || c == '+') && leading.size() == 0;
        const bool point = c == '.' && !point_seen;
        if (!sign && !point && !is_digit(c)) break;
        point_seen = point_seen || point;
        if (c != '+') leading.push_back(c);
        if (!is_digit(c) || ++digit_count > kExactDigits) continue;
        digits = digits * 10 + (c - '0');
        decimals += point_seen ? 1 : 0;
    }
    double value = 0;
    if (digit_count == 0) return value;
    if (digit_count <= kExactDigits) {
        // Both are exact as doubles, so that their quotient is the double next to the decimal number.
        value = static_cast<double>(digits) / kPowersOfTen[static_cast<std::size_t>(decimals)];
        return leading[0] == '-' ? -value : value;
    }
    // Not by way of the C library, whose decimal point is the locale's.
    std::from_chars(leading.data(), leading.data() + leading.size(), value);
    return value;
}

bool is_numeric(std::string_view text) {
    text = trimmed(text);
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
    bool digit_seen = false;
    bool point_seen = false;
    int whole_digits = 0;
    for (const char c : text) {
        if (is_digit(c)) {
            digit_seen = true;
            if (!point_seen && (c != '0' || whole_digits > 0)) ++whole_digits;
        } else if (c == '.' && !point_seen) {
            point_seen = true;
        } else if (c != ',' || !digit_seen || point_seen) {
            return false;
        }
    }
    // Decimals may still round it up to one digit more.
    return digit_seen && whole_digits <= kWholeDigitsMax && std::fabs(money_value(text)) < kAmountsEnd;
}

}  // namespace brimley::kernel
