// cut-power: savers work at a company on a recorded disk, and the power is cut again and again: what could be
// left of its files then is opened, and everything that was reported as stored is there.
//
//   cut-power [--cuts N] [--seed N] [--forgetful]
//
// With --forgetful the disk does not keep what it was asked to keep, and something must be found lost.
// On files alone: what a server's disk keeps is the server's.
#include <fmt/format.h>

#include <fstream>
#include <iostream>
#include <random>

#include "recorded_disk.h"
#include "saver.h"
#include "stored_documents.h"
#include "support/program_options.h"
#include "support/sample_company.h"

namespace {

using namespace brimley::testing;

struct Options {
    int cuts = 60;
    std::uint64_t seed = 20261122;
    bool forgetful = false;
};

constexpr int kActs = 14;
constexpr int kCutsOfASession = 100;
constexpr const char* kName = "company.brimley";

std::string contents_of(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// An afternoon at a company, and when each thing was reported.
class Afternoon {
  public:
    explicit Afternoon(std::uint64_t seed) : chance_(seed) {
        const std::string path = folder_.file(kName);
        sample_original().copy_to(path);
        disk_.begin_with(kName, contents_of(path));
        while (acts_ < kActs)
            work(path);
    }

    // What does not hold after a power cut at a moment of its own.
    [[nodiscard]] std::vector<std::string> cut(std::mt19937_64& chance) const {
        const TemporaryFolder left;
        const std::size_t calls = chance() % (disk_.calls() + 1);
        disk_.leave(calls, chance, left.path().string());
        return what_is_wrong(left.file(kName), calls);
    }
    void forget_syncs() { disk_.forget_syncs(); }
    [[nodiscard]] std::size_t told() const { return told_.size(); }

  private:
    [[nodiscard]] std::vector<std::string> what_is_wrong(const std::string& path, std::size_t calls) const {
        StoredDocuments stored;
        for (const auto& [when, line] : told_)
            if (when <= calls) static_cast<void>(stored.take(line));
        try {
            return findings_of(brimley::store::open_company(path, brimley::kernel::company_tables()), stored);
        } catch (const brimley::store::Error& error) {
            return {error.what()};
        }
    }
    [[nodiscard]] static std::vector<std::string> findings_of(const brimley::store::OpenCompany& company,
                                                              const StoredDocuments& stored) {
        std::vector<std::string> findings = company.database->faults_of_storage();
        if (findings.empty()) findings = stored.findings(company);
        return findings;
    }

    // Until the window is closed. Now and then nobody does anything for a while.
    void work(const std::string& path) {
        const auto open = brimley::store::open_company(path, brimley::kernel::company_tables());
        Saver saver(open, "anna", chance_(),
                    [&](const std::string& line) { told_.emplace_back(disk_.calls(), line); });
        for (bool stays = true; stays && acts_ < kActs; ++acts_) {
            saver.act();
            if (chance_() % 4 == 0) open.workspace->tidy();
            stays = chance_() % 5 != 0;
        }
    }

    std::mt19937_64 chance_;
    TemporaryFolder folder_;
    RecordedDisk disk_{folder_.path().string()};
    std::vector<std::pair<std::size_t, std::string>> told_;
    int acts_ = 0;
};

int run(const Options& options) {
    std::cout << "seed " << options.seed << std::endl;
    std::mt19937_64 chance(options.seed);
    std::size_t told = 0;
    for (int done = 0; done < options.cuts;) {
        const std::uint64_t seed = chance();
        Afternoon afternoon(seed);
        if (options.forgetful) afternoon.forget_syncs();
        told += afternoon.told();
        for (int i = 0; i < kCutsOfASession && done < options.cuts; ++i, ++done) {
            const auto findings = afternoon.cut(chance);
            if (findings.empty()) continue;
            std::cout << fmt::format("cut {} (afternoon {}):\n", done + 1, seed);
            for (const std::string& finding : findings)
                std::cout << "  " << finding << '\n';
            return options.forgetful ? 0 : 1;
        }
    }
    std::cout << fmt::format("{} cuts, {} things reported in the afternoons, nothing lost\n", options.cuts,
                             told);
    return told > 0 && !options.forgetful ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    ProgramOptions program("cut-power", "Cuts the power and looks at the company");
    program.option("--cuts", options.cuts, "how many");
    program.option("--seed", options.seed, "which cuts");
    program.flag("--forgetful", options.forgetful, "a disk that loses what it was asked to keep");
    return program.run(argc, argv, [&] { return run(options); });
}
