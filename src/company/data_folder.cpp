#include "company/data_folder.h"

#include <cstdlib>
#include <stdexcept>
#include <system_error>

namespace brimley::company {

namespace {

namespace fs = std::filesystem;

fs::path folder_of_data() {
    if (const char* chosen = std::getenv("BRIMLEY_DATA"); chosen && *chosen) return chosen;
    std::error_code unknown;
    const fs::path program = fs::read_symlink("/proc/self/exe", unknown);
    return program.parent_path().parent_path() / "share" / "brimley";
}

}  // namespace

fs::path data_folder(const std::string& name) {
    const fs::path data = folder_of_data();
    std::error_code unknown;
    if (!fs::is_directory(data / name, unknown))
        throw std::runtime_error("there is no folder " + name + " in " + data.string());
    return data / name;
}

}  // namespace brimley::company
