// What a user types to say which amounts are wanted: "100" or "=100", ">=100", "< -5".
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace brimley::inquiries {

struct AmountFilter {
    std::string_view comparison;  // "=", "<", ">", "<=" or ">="; empty: any amount will do
    double amount = 0;

    // What a query needs after its first condition for this field to be such an amount. It holds no letter of
    // what was typed.
    [[nodiscard]] std::string further_condition(std::string_view field) const;
};

// Empty when the text does not say which amounts. An amount has no thousands commas, and a sign only after a
// comparison; blanks may stand around the text and before the amount.
[[nodiscard]] std::optional<AmountFilter> parse_amount_filter(std::string_view text);

}  // namespace brimley::inquiries
