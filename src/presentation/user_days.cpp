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

controls::DaySpan year_of(store::DateTime moment) {
    return {store::DateTime::from_ymd(moment.year(), 1, 1).value().day,
            store::DateTime::from_ymd(moment.year(), 12, 31).value().day};
}

}  // namespace brimley::presentation
