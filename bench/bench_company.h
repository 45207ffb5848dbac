// A sample company that a benchmark makes for itself, and the figures of its command line.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "company/create.h"

namespace brimley::bench {

// Its file is there as long as this is; one that was left over is replaced.
class BenchCompany {
  public:
    BenchCompany(const std::filesystem::path& folder, const std::string& name,
                 const store::Catalog& tables = kernel::company_tables())
        : path_((folder / (name + ".brimley")).string()) {
        remove();
        company::create_company_file(path_, company::SampleCompany{"anna"}, tables);
    }
    ~BenchCompany() { remove(); }
    BenchCompany(const BenchCompany&) = delete;
    BenchCompany& operator=(const BenchCompany&) = delete;

    [[nodiscard]] const std::string& path() const { return path_; }

  private:
    void remove() const {
        for (const char* suffix : {"", "-wal", "-shm"}) {
            std::error_code ignored;
            std::filesystem::remove(path_ + suffix, ignored);
        }
    }

    std::string path_;
};

// What the command line says at a place, or what a benchmark takes without it.
struct Arguments {
    int count;
    char** texts;

    [[nodiscard]] int number(int at, int otherwise) const {
        return at < count ? std::atoi(texts[at]) : otherwise;
    }
    [[nodiscard]] std::filesystem::path folder(int at) const {
        return at < count ? texts[at] : std::filesystem::temp_directory_path();
    }
    // All from this place on.
    [[nodiscard]] std::vector<int> sizes(int from, std::vector<int> otherwise) const {
        std::vector<int> given;
        for (int at = from; at < count; ++at)
            given.push_back(number(at, 0));
        return given.empty() ? otherwise : given;
    }
};

}  // namespace brimley::bench
