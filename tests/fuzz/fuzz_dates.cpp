// Dates as users type them: a text is a date or has a message, and a date reads back as itself.
#include "fuzz.h"
#include "kernel/user_dates.h"
#include "support/recording_outside.h"

namespace brimley::testing {

const std::vector<std::string>& fuzz_words() {
    static const std::vector<std::string> kWords{"/",          "//",         "01",   "31",   "02",
                                                 "29",         "2026",       "2569", "1990", "dd/mm/yyyy",
                                                 "mm/dd/yyyy", "yyyy/mm/dd", "-",    " ",    "20260229"};
    return kWords;
}

// The first line is the format, the second the text.
void fuzz_one(std::string_view input) {
    const std::size_t line = input.find('\n');
    const std::string_view format = input.substr(0, line);
    const std::string_view text =
        line == std::string_view::npos ? std::string_view{} : input.substr(line + 1);
    RecordingOutside outside;
    const auto date = kernel::parse_user_date(text, format, outside);
    const auto quiet = kernel::try_user_date(text, format);
    if (date.has_value() != quiet.has_value() || (date && date->day != quiet->day))
        throw Finding("told and silent reading differ");
    if (date && !outside.messages.empty()) throw Finding("a date with a message: " + outside.messages[0]);
    if (outside.messages.size() > 1) throw Finding("two messages for one text");
    const auto whole = store::DateTime::from_ymd(2026, 11, 21);
    const auto read_back = kernel::try_user_date(kernel::user_date_text(*whole, format), format);
    if (read_back && read_back->day != whole->day && format == "dd/mm/yyyy")
        throw Finding("a date does not read back as itself");
    if (date && format == "dd/mm/yyyy") {
        const auto again = kernel::try_user_date(kernel::user_date_text(*date, format), format);
        if (!again || again->day != date->day) throw Finding("a typed date does not read back as itself");
    }
    static_cast<void>(kernel::yyyymmdd_to_user_date(text, {std::string(format)}, outside));
    static_cast<void>(kernel::yyyymmdd_to_date_text(text, outside));
}

}  // namespace brimley::testing
