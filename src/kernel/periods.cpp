#include <fmt/format.h>

#include "kernel/module_g3.h"
#include "kernel/user_dates.h"

namespace brimley::kernel {

std::optional<FiscalPeriod> ModuleG3::get_fiscal_period(store::DateTime date) {
    const store::DateTime day = date.date_only();
    auto years = read("SELECT * FROM Fiscalyear_table");
    for (; !years.at_eof(); years.MoveNext()) {
        const auto start = years.field("StartDate").date();
        const auto end = years.field("EndDate").date();
        if (!start || !end || day < *start || day > *end) continue;
        const int months = (day.year() - start->year()) * 12 + day.month() - start->month();
        return FiscalPeriod{months + 1, years.text("fyear")};
    }
    tell("No fiscal year for " + date.query_text());
    return std::nullopt;
}

std::optional<PeriodOfDate> ModuleG3::get_period_of_date_text(std::string_view date_text,
                                                              std::string_view date_format) {
    const auto yyyymmdd = user_date_to_yyyymmdd(date_text, DateFormatRow{std::string(date_format)}, outside_);
    if (!yyyymmdd) {
        tell("Invalid date format");
        return std::nullopt;
    }
    auto periods = read("SELECT * FROM Period_table");
    for (; !periods.at_eof(); periods.MoveNext()) {
        if (*yyyymmdd < periods.text("StartDate") || *yyyymmdd > periods.text("EndDate")) continue;
        return PeriodOfDate{periods.text("period"), periods.text("fyear"), yyyymmdd->substr(4, 2),
                            yyyymmdd->substr(0, 4)};
    }
    tell(fmt::format("No fiscal year for {}", date_text));
    return std::nullopt;
}

}  // namespace brimley::kernel
