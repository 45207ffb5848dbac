// What a user types to say which amounts are wanted: "100" or "=100", ">=100", "< -5".
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace brimley::inquiries {

struct AmountFilter {
    std::string_view comparison;  // "=", "<", ">", "<=" or ">="; empty: any amount will do
    double amount = 0;

    // " AND field >= 100", to be appended to the conditions of a query; empty for any amount. It is made of
    // the parsed number, never of the typed text.
    [[nodiscard]] std::string further_condition(std::string_view field) const;
};

// No value when the text is no filter of an amount. An amount has no thousands commas, and a sign only after
// a comparison; blanks may stand around the text and before the amount.
[[nodiscard]] std::optional<AmountFilter> parse_amount_filter(std::string_view text);

}  // namespace brimley::inquiries
