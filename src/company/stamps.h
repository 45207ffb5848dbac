// Who made a row, and when.
#pragma once

#include <optional>
#include <string>

#include "company/table_rows.h"

namespace brimley::company {

struct Stamp {
    std::optional<double> seconds;  // since the first day; empty without a date or with a time that is none
    std::string user;
};

// Seconds of a date and of a text "hh:mm:ss".
[[nodiscard]] std::optional<double> seconds_of(const store::Value& date, const store::Value& time);
// Of date_created, time_created and user_created.
[[nodiscard]] Stamp stamp_of(const TableRows& rows, std::int64_t row);
// One save takes an hour at most.
[[nodiscard]] bool within_one_save(const std::optional<double>& one, const std::optional<double>& other);
[[nodiscard]] bool made_together(const Stamp& one, const Stamp& other);

}  // namespace brimley::company
