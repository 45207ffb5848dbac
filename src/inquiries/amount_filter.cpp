#include "inquiries/amount_filter.h"

#include <fmt/format.h>

#include <array>

#include "kernel/money.h"
#include "kernel/store/value.h"

namespace brimley::inquiries {

namespace {

// The longer ones first: ">=" begins with ">".
constexpr std::array<std::string_view, 5> kComparisons{"<=", ">=", "=", "<", ">"};

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string_view comparison_of(std::string_view text) {
    for (const std::string_view comparison : kComparisons)
        if (text.starts_with(comparison)) return comparison;
    return {};
}

bool is_amount(std::string_view text) {
    return text.find(',') == std::string_view::npos && kernel::is_numeric(text);
}

}  // namespace

std::string AmountFilter::further_condition(std::string_view field) const {
    if (comparison.empty()) return {};
    return fmt::format(" AND {} {} {}", field, comparison, store::shortest_number(amount));
}

std::optional<AmountFilter> parse_amount_filter(std::string_view text) {
    text = trimmed(text);
    if (text.empty()) return AmountFilter{};
    std::string_view comparison = "=";
    if (text.front() < '0' || text.front() > '9') {
        comparison = comparison_of(text);
        if (comparison.empty()) return std::nullopt;
        text.remove_prefix(comparison.size());
    }
    if (!is_amount(text)) return std::nullopt;
    return AmountFilter{comparison, kernel::money_value(text)};
}

}  // namespace brimley::inquiries
