// kill-savers: a saver is killed again and again, at a call to the engine or at a moment, and each time the
// company is opened anew: the books agree, and everything that was reported as stored is there.
//
//   kill-savers SAVER [--kills N] [--seed N]
//
// With BRIMLEY_TEST_SERVER the companies are on that server (tests/support/server-cluster), else files.
#include <fmt/format.h>

#include <chrono>
#include <iostream>
#include <random>
#include <thread>

#include "child.h"
#include "server_clients.h"
#include "stored_documents.h"
#include "support/program_options.h"
#include "support/sample_company.h"

namespace {

using namespace brimley::testing;

struct Options {
    std::string saver;
    int kills = 20;
    std::uint64_t seed = 20261121;
};

constexpr int kCallsMost = 2500;  // about a dozen saves
// From a saver's start on; on a server it connects first, and each save takes longer.
constexpr int kMillisecondsMost = 60;
constexpr int kMillisecondsMostOnServer = 600;

constexpr int kKillsOfACompany = 50;  // then a fresh one, for the check reads all there is

// A company that is worked at until its savers have been killed this many times.
class KilledCompany {
  public:
    explicit KilledCompany(const std::string& saver) : saver_(saver) {}

    // Whether the saver was killed, and had not come to its end before.
    bool kill(std::mt19937_64& chance) {
        const bool at_call = chance() % 2 == 0;
        const int most = at_call                 ? kCallsMost
                         : tests_run_on_server() ? kMillisecondsMostOnServer
                                                 : kMillisecondsMost;
        const int when = 1 + static_cast<int>(chance() % static_cast<unsigned>(most));
        last_kill_ = fmt::format("at {} {}", at_call ? "call" : "millisecond", when);
        Child saver({saver_, company_.path(), "--acts", "1000", "--seed", std::to_string(chance()),
                     "--kill-at", std::to_string(at_call ? when : 0)});
        if (!at_call) {
            std::this_thread::sleep_for(std::chrono::milliseconds(when));
            saver.kill();
        }
        for (const std::string& line : saver.lines())
            static_cast<void>(stored_.take(line));
        return !saver.ended_well();
    }
    [[nodiscard]] const std::string& last_kill() const { return last_kill_; }
    [[nodiscard]] int told() const { return stored_.told(); }
    [[nodiscard]] std::vector<std::string> findings() const {
        if (tests_run_on_server() && !server_has_let_go(company_.path()))
            return {"the server still has the connection of the one that was killed"};
        return stored_.findings(company_.open());
    }

  private:
    std::string saver_;
    ClosedCopy company_{sample_original()};
    StoredDocuments stored_;
    std::string last_kill_;
};

int run(const Options& options) {
    std::cout << "seed " << options.seed << std::endl;
    std::mt19937_64 chance(options.seed);
    int killed = 0;
    int told = 0;
    for (int done = 0; done < options.kills;) {
        KilledCompany company(options.saver);
        for (int i = 0; i < kKillsOfACompany && done < options.kills; ++i, ++done) {
            killed += company.kill(chance) ? 1 : 0;
            const auto findings = company.findings();
            if (findings.empty()) continue;
            std::cout << fmt::format("kill {}, {}:\n", done + 1, company.last_kill());
            for (const std::string& finding : findings)
                std::cout << "  " << finding << '\n';
            return 1;
        }
        told += company.told();
    }
    std::cout << fmt::format("{} kills, {} acts reported as stored, all there\n", killed, told);
    return killed == options.kills && told > 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    ProgramOptions program("kill-savers", "Kills a saver and looks at the company");
    program.required("saver", options.saver, "the saver program");
    program.option("--kills", options.kills, "how many");
    program.option("--seed", options.seed, "which kills");
    return program.run(argc, argv, [&] { return run(options); });
}
