// Paths in the world outside.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>

namespace brimley::frame {

// The path as the platform writes it. Forms part folders with a backslash on every platform, and their
// events keep it; only what reads or writes a file turns it into the platform's separator.
[[nodiscard]] inline std::filesystem::path platform_path(std::string path) {
    std::replace(path.begin(), path.end(), '\\',
                 static_cast<char>(std::filesystem::path::preferred_separator));
    return path;
}

}  // namespace brimley::frame
