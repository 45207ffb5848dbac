// cut-upgrade: a company of an older layout is upgraded on a recorded disk, and the power is cut, or the
// program killed, at each moment of it: what could be left of the file then is the company as it was, or the
// upgraded one, with books that agree; and as it was, it can be upgraded.
//
//   cut-upgrade COMPANY [--every N] [--seed N]
//
// COMPANY is the file of an older company, which is left as it is.
#include <fmt/format.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>

#include "company/backup.h"
#include "company/check.h"
#include "recorded_disk.h"
#include "support/program_options.h"
#include "support/sample_company.h"

namespace {

using namespace brimley::testing;
namespace company = brimley::company;
namespace store = brimley::store;

struct Options {
    std::string older;
    int every = 1;
    std::uint64_t seed = 20261123;
};

constexpr const char* kName = "company.brimley";

struct Left {
    int layout = 0;
    std::vector<std::string> findings;
};

Left looked_at(const std::string& path) {
    const auto opened = store::open_company(path, brimley::kernel::company_tables());
    Left left{opened.database->catalog().layout(), opened.database->faults_of_storage()};
    if (left.findings.empty()) left.findings = company::check_company(*opened.database);
    return left;
}

// Looks at a file that was left, and upgrades it if that had not come to its end.
Left looked_at_and_upgraded(const std::string& path) {
    try {
        Left left = looked_at(path);
        if (!left.findings.empty()) return left;
        static_cast<void>(company::upgrade(path));
        const Left upgraded = looked_at(path);
        left.findings = upgraded.findings;
        if (upgraded.layout != brimley::kernel::company_tables().layout())
            left.findings.emplace_back("it could not be upgraded");
        return left;
    } catch (const std::exception& failure) {
        return {0, {failure.what()}};
    }
}

int run(const Options& options) {
    const TemporaryFolder folder;
    const std::string path = folder.file(kName);
    std::filesystem::copy_file(options.older, path);
    const int older = looked_at(path).layout;
    const int now = brimley::kernel::company_tables().layout();
    RecordedDisk disk(folder.path().string());
    std::ifstream file(path, std::ios::binary);
    disk.begin_with(kName, {std::istreambuf_iterator<char>(file), {}});
    static_cast<void>(company::upgrade(path));
    std::mt19937_64 chance(options.seed);
    int cuts = 0;
    int as_it_was = 0;
    for (std::size_t calls = 0; calls <= disk.calls(); calls += static_cast<std::size_t>(options.every)) {
        const TemporaryFolder left;
        disk.leave(calls, chance, left.path().string());
        const Left found = looked_at_and_upgraded(left.file(kName));
        ++cuts;
        if (found.layout == older) ++as_it_was;
        for (const std::string& finding : found.findings)
            std::cout << fmt::format("cut after {} of {} calls: {}\n", calls, disk.calls(), finding);
        if (!found.findings.empty()) return 1;
    }
    std::cout << fmt::format("{} cuts of an upgrade from layout {} to {}: {} left the company as it was\n",
                             cuts, older, now, as_it_was);
    // Otherwise nothing was cut in two.
    return as_it_was > 0 && as_it_was < cuts ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    ProgramOptions program("cut-upgrade", "Cuts the power during an upgrade and looks at the company");
    program.required("COMPANY", options.older, "the file of an older company");
    program.option("--every", options.every, "after how many calls each");
    program.option("--seed", options.seed, "what is left of what was not synced");
    return program.run(argc, argv, [&] { return run(options); });
}
