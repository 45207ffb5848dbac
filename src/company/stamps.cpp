#include "company/stamps.h"

#include <cmath>

namespace brimley::company {

namespace {

constexpr double kSecondsOfASave = 3600;
constexpr int kSecondsOfADay = 86400;

}  // namespace

std::optional<double> seconds_of(const store::Value& date, const store::Value& time) {
    const auto day = date.date();
    const auto words = words_of(time.text(), ':');
    if (!day || words.size() != 3) return std::nullopt;
    double seconds = 0;
    for (const std::string& word : words) {
        const auto number = store::whole_number_text(word);
        if (!number) return std::nullopt;
        seconds = seconds * 60 + *number;
    }
    return static_cast<double>(day->day) * kSecondsOfADay + seconds;
}

Stamp stamp_of(const TableRows& rows, std::int64_t row) {
    return {seconds_of(rows.value(row, rows.column("date_created")),
                       rows.value(row, rows.column("time_created"))),
            rows.text(row, "user_created")};
}

bool within_one_save(const std::optional<double>& one, const std::optional<double>& other) {
    return one && other && std::fabs(*one - *other) <= kSecondsOfASave;
}

bool made_together(const Stamp& one, const Stamp& other) {
    return one.user == other.user && within_one_save(one.seconds, other.seconds);
}

}  // namespace brimley::company
