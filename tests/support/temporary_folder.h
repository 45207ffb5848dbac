// A folder of its own for one test, removed with everything in it.
#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace brimley::testing {

class TemporaryFolder {
  public:
    TemporaryFolder() {
        // Memory, where the system has it: tests write many small files durably.
        const std::filesystem::path memory = "/dev/shm";
        const bool in_memory = ::access(memory.c_str(), W_OK) == 0;
        const auto parent = in_memory ? memory : std::filesystem::temp_directory_path();
        std::string pattern = (parent / "brimley-test-XXXXXX").string();
        if (!::mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder");
        path_ = pattern;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] std::string file(const std::string& name) const { return (path_ / name).string(); }
    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

}  // namespace brimley::testing
