#include "opening/this_machine.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <ctime>

#include "frame/platform_path.h"

namespace brimley::opening {

store::DateTime local_now() {
    const std::time_t seconds = std::time(nullptr);
    std::tm local{};
    localtime_r(&seconds, &local);
    auto moment = store::DateTime::from_ymd(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday).value();
    // A leap second counts as the one before it.
    moment.second_of_day = local.tm_hour * 3600 + local.tm_min * 60 + std::min(local.tm_sec, 59);
    return moment;
}

std::string machine_name() {
    std::array<char, 513> name{};
    return gethostname(name.data(), name.size() - 1) == 0 ? std::string(name.data()) : std::string{};
}

bool folder_exists(const std::string& path) {
    std::error_code unknown;
    return std::filesystem::is_directory(frame::platform_path(path), unknown);
}

bool make_folder(const std::string& path) {
    std::error_code failure;
    return std::filesystem::create_directory(frame::platform_path(path), failure);
}

}  // namespace brimley::opening
