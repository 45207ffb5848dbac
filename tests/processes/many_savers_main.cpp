// many-savers: several savers on one company at once: no number comes twice or is left out, the books agree,
// and who is refused is told nothing but what a held row is told with.
//
//   many-savers SAVER [--savers N] [--acts N] [--seed N]
//
// With BRIMLEY_TEST_SERVER the company is on that server (tests/support/server-cluster), else a file.
#include <fmt/format.h>

#include <chrono>
#include <iostream>
#include <map>
#include <memory>

#include "child.h"
#include "saver.h"
#include "stored_documents.h"
#include "support/program_options.h"
#include "support/sample_company.h"

namespace brimley::testing {
namespace {

struct Options {
    std::string saver;
    int savers = 4;
    int acts = 30;
    std::uint64_t seed = 20261121;
};

constexpr std::string_view kRefused = "refused ";

bool may_be_told(const std::string& line) {
    return line.starts_with(kRefused) && Saver::may_be_told(line.substr(kRefused.size()));
}

// Whether the server had to end a transaction because two waited for each other.
bool has_met_a_deadlock(const ClosedCopy& company) {
    return tests_run_on_server() && on_server(company.path(),
                                              "SELECT deadlocks FROM pg_stat_database WHERE datname = "
                                              "current_database()") != "0";
}

int run(const Options& options) {
    std::cout << "seed " << options.seed << std::endl;
    const ClosedCopy company(sample_original());
    const auto begun = std::chrono::steady_clock::now();
    std::vector<std::unique_ptr<Child>> savers;
    for (int i = 0; i < options.savers; ++i)
        savers.push_back(std::make_unique<Child>(std::vector<std::string>{
            options.saver, company.path(), "--acts", std::to_string(options.acts), "--seed",
            std::to_string(options.seed + static_cast<std::uint64_t>(i))}));
    StoredDocuments stored;
    std::map<std::string, int> refused;
    bool ended_well = true;
    for (const auto& saver : savers) {
        for (const std::string& line : saver->lines()) {
            if (!stored.take(line)) ++refused[line];
        }
        ended_well = ended_well && saver->ended_well();
    }
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begun;
    auto findings = stored.findings(company.open());
    if (has_met_a_deadlock(company)) findings.push_back("savers have waited for each other");
    for (const auto& [line, times] : refused) {
        std::cout << fmt::format("{} times: {}\n", times, line);
        if (!may_be_told(line)) findings.push_back("nobody may be told: " + line);
    }
    for (const std::string& finding : findings)
        std::cout << "  " << finding << '\n';
    std::cout << fmt::format("{} savers, {} acts reported as stored in {:.1f} s\n", options.savers,
                             stored.told(), seconds.count());
    return findings.empty() && ended_well && stored.told() > 0 ? 0 : 1;
}

}  // namespace
}  // namespace brimley::testing

int main(int argc, char** argv) {
    brimley::testing::Options options;
    brimley::testing::ProgramOptions program("many-savers", "Runs several savers on one company");
    program.required("saver", options.saver, "the saver program");
    program.option("--savers", options.savers, "how many");
    program.option("--acts", options.acts, "of each");
    program.option("--seed", options.seed, "of the first");
    return program.run(argc, argv, [&] { return brimley::testing::run(options); });
}
