#include "frame/working_period.h"

#include <fmt/format.h>

#include <optional>

namespace brimley::frame {

namespace {

using store::Recordset;

// "202603": fiscal year and period as one text that sorts by time.
std::string period_key(std::string_view fyear, double period) {
    return fmt::format("{}{:02.0f}", fyear, period);
}

// Where a period lies in relation to a window of COA_config_table; empty when the window is not set.
std::optional<bool> inside_window(const Recordset& config, const std::string& window,
                                  const std::string& key) {
    const auto bound = [&](const char* end, const char* what) { return config.field(window + end + what); };
    if (bound("_start", "_period").is_null() || bound("_end", "_period").is_null()) return std::nullopt;
    const auto bound_key = [&](const char* end) {
        return period_key(bound(end, "_fyear").text(), bound(end, "_period").number());
    };
    return key >= bound_key("_start") && key <= bound_key("_end");
}

}  // namespace

bool period_is_open(kernel::ModuleG3& kernel, const std::string& fyear, double period) {
    const auto config = kernel.read("SELECT * FROM COA_config_table");
    if (config.at_eof() || !config.flag("activate_working_period")) return true;
    const std::string key = period_key(fyear, period);
    const auto working = inside_window(config, "working", key);
    if (!working || *working) return true;
    if (config.flag("allow_history_update") && inside_window(config, "allow", key).value_or(true))
        return true;
    kernel.outside().message("Fiscal period/year is out of working period.");
    return false;
}

}  // namespace brimley::frame
