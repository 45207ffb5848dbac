#include "presentation/user_days.h"

#include "kernel/user_dates.h"

namespace brimley::presentation {

controls::DayTexts user_day_texts(std::string date_format) {
    const auto written = [date_format](controls::Day day) {
        return kernel::user_date_text(store::DateTime{day}, date_format);
    };
    const auto read = [date_format](const std::string& typed) -> std::optional<controls::Day> {
        const auto date = kernel::try_user_date(typed, date_format);
        return date ? std::optional(date->day) : std::nullopt;
    };
    return {written, read};
}

controls::DaySpan year_up_to(store::DateTime moment) {
    const int year_before = moment.year() - 1;
    const auto same_day = store::DateTime::from_ymd(year_before, moment.month(), moment.day_of_month());
    // Only the 29th of February may be missing.
    const auto before_first = same_day ? same_day : store::DateTime::from_ymd(year_before, 2, 28);
    return {before_first.value().day + 1, moment.day};
}

}  // namespace brimley::presentation
