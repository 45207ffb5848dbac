// many-savers: several savers on one company at once: no number comes twice or is left out, the books agree,
// and who is refused is told nothing but what a held row is told with.
//
//   many-savers SAVER [--savers N] [--acts N] [--seed N]
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <chrono>
#include <iostream>
#include <map>
#include <memory>

#include "child.h"
#include "company/create.h"
#include "kernel/tables/company_tables.h"
#include "stored_documents.h"
#include "support/temporary_folder.h"

namespace {

using namespace brimley;

struct Options {
    std::string saver;
    int savers = 4;
    int acts = 30;
    std::uint64_t seed = 20261121;
};

int run(const Options& options) {
    std::cout << "seed " << options.seed << std::endl;
    const testing::TemporaryFolder folder;
    const std::string path = folder.file("shared.brimley");
    company::create_company_file(path, company::SampleCompany{"anna"});
    const auto begun = std::chrono::steady_clock::now();
    std::vector<std::unique_ptr<testing::Child>> savers;
    for (int i = 0; i < options.savers; ++i)
        savers.push_back(std::make_unique<testing::Child>(
            std::vector<std::string>{options.saver, path, "--acts", std::to_string(options.acts), "--seed",
                                     std::to_string(options.seed + static_cast<std::uint64_t>(i))}));
    testing::StoredDocuments stored;
    std::map<std::string, int> refused;
    bool ended_well = true;
    for (const auto& saver : savers) {
        for (const std::string& line : saver->lines()) {
            if (!stored.take(line)) ++refused[line];
        }
        ended_well = ended_well && saver->ended_well();
    }
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begun;
    const auto findings = stored.findings(store::open_company(path, kernel::company_tables()));
    for (const std::string& finding : findings)
        std::cout << "  " << finding << '\n';
    for (const auto& [line, times] : refused)
        std::cout << fmt::format("{} times: {}\n", times, line);
    std::cout << fmt::format("{} savers, {} things told as stored in {:.1f} s\n", options.savers,
                             stored.told(), seconds.count());
    return findings.empty() && ended_well && stored.told() > 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App program("Runs several savers on one company", "many-savers");
    Options options;
    program.add_option("saver", options.saver, "the saver program")->required();
    program.add_option("--savers", options.savers, "how many")->capture_default_str();
    program.add_option("--acts", options.acts, "of each")->capture_default_str();
    program.add_option("--seed", options.seed, "of the first")->capture_default_str();
    CLI11_PARSE(program, argc, argv);
    try {
        return run(options);
    } catch (const std::exception& failure) {
        std::cerr << "many-savers: " << failure.what() << std::endl;
        return 1;
    }
}
