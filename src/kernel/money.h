// Money: rounding, and the texts that money has in fields and cells.
//
// Money is a double, held unrounded; it is rounded where an algorithm says so and nowhere else. Two rules of
// rounding live side by side and must not be mixed: Round (stored amounts) takes a tie to the even digit, the
// display format takes it away from zero.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace brimley::kernel {

// Two places, ties to the even digit, judged on the value times 100: Round(2.125) is 2.12.
[[nodiscard]] double Round(double value);

// "#,##0.00", ties away from zero: 2.125 shows as 2.13. A negative zero shows as 0.00.
[[nodiscard]] std::string format_money(double value);

// The amount as format_money shows it: what money_value reads from its text.
[[nodiscard]] double shown_amount(double value);

// Commas removed, then the value of the leading digits: "1,234.50" is 1234.5, a word is 0, an empty text is
// 0.
[[nodiscard]] double money_value(std::string_view text);

// The number cut to a whole one, held between the limits; the lower one for what is no number. Tables may
// hold any number where a count is meant.
[[nodiscard]] std::int64_t whole_number(double number, std::int64_t least, std::int64_t most);

// True for digits with a sign, thousands commas and decimals, blanks around them allowed, that are no more
// than a double holds to the cent: below 10,000,000,000,000.
[[nodiscard]] bool is_numeric(std::string_view text);

}  // namespace brimley::kernel
