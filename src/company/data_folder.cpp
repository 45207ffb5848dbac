#include "company/data_folder.h"

#include <cstdlib>
#include <stdexcept>
#include <system_error>
#include <vector>

namespace brimley::company {

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> data_folders() {
    if (const char* chosen = std::getenv("BRIMLEY_DATA"); chosen && *chosen) return {chosen};
    std::vector<fs::path> folders;
    std::error_code unknown;
    const fs::path program = fs::read_symlink("/proc/self/exe", unknown);
    if (!unknown) {
        const fs::path above = program.parent_path().parent_path();
        folders.push_back(above.parent_path() / "data");
        folders.push_back(above / "share" / "brimley");
    }
    folders.emplace_back(BRIMLEY_SOURCE_DIR "/data");
    return folders;
}

}  // namespace

fs::path data_folder(const std::string& name) {
    const std::vector<fs::path> folders = data_folders();
    for (const fs::path& folder : folders) {
        std::error_code unknown;
        const fs::path wanted = folder / name;
        if (fs::is_directory(wanted, unknown)) return wanted;
    }
    throw std::runtime_error("there is no folder " + name + " in " + folders.back().string());
}

}  // namespace brimley::company
