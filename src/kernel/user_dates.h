// Dates as users type and read them.
//
// A user's date format is a text of "dd", "mm" and a year parted by "/" (BRIMLEY_DATE_FORMAT). The machine's
// regional settings play no part. Reading takes the text apart by the format, checks field by field and
// reports the first fault itself; the accepted years are 1990 to 2030 and, unconverted, 2530 and later.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "kernel/outside.h"
#include "kernel/store/value.h"

namespace brimley::kernel {

// The row in which a caller holds its user's format.
struct DateFormatRow {
    std::string date_format;
};

// The date that the text names. Empty for any fault, after its message through `outside`; a text without two
// slashes is no date either, but no message is shown for it.
[[nodiscard]] std::optional<store::DateTime> parse_user_date(std::string_view text,
                                                             std::string_view date_format, Outside& outside);
// As parse_user_date, with a message of the caller's for a text that is empty or has not two slashes.
[[nodiscard]] std::optional<store::DateTime> required_user_date(std::string_view text,
                                                                std::string_view date_format,
                                                                const std::string& missing, Outside& outside);
// As parse_user_date, the date as a text "yyyymmdd".
[[nodiscard]] std::optional<std::string> user_date_to_yyyymmdd(std::string_view text,
                                                               const DateFormatRow& row, Outside& outside);
// "20260115" in the user's format; empty gives empty, a bad text its message and empty.
[[nodiscard]] std::string yyyymmdd_to_user_date(std::string_view yyyymmdd, const DateFormatRow& row,
                                                Outside& outside);
// "20260115" as "Jan 15, 2026"; a bad text its message and empty.
[[nodiscard]] std::string yyyymmdd_to_date_text(std::string_view yyyymmdd, Outside& outside);

// A date in the user's format: "dd" and "mm" with two digits, "yyyy" with four.
[[nodiscard]] std::string user_date_text(store::DateTime date, std::string_view date_format);
// As parse_user_date, but silent: for the handlers that follow each key.
[[nodiscard]] std::optional<store::DateTime> try_user_date(std::string_view text,
                                                           std::string_view date_format);

}  // namespace brimley::kernel
