#include "opening/this_machine.h"

#include <filesystem>
#include <system_error>

#include "frame/platform_path.h"

namespace brimley::opening {

bool folder_exists(const std::string& path) {
    std::error_code unknown;
    return std::filesystem::is_directory(frame::platform_path(path), unknown);
}

bool make_folder(const std::string& path) {
    std::error_code failure;
    return std::filesystem::create_directory(frame::platform_path(path), failure);
}

}  // namespace brimley::opening
