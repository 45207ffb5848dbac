// kill-servers: a PostgreSQL server is killed again and again while savers work on it, and started anew; the
// savers connect again and go on. Each time the books agree, and everything that was reported as stored is
// there.
//
//   kill-servers SAVER [--kills N] [--savers N] [--seed N]
//
// The server is its own (tests/support/server-cluster); BRIMLEY_TEST_SERVER is not looked at.
#include <fmt/format.h>

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <map>
#include <memory>
#include <random>
#include <thread>

#include "child.h"
#include "saver.h"
#include "server_clients.h"
#include "stored_documents.h"
#include "support/private_cluster.h"
#include "support/program_options.h"
#include "support/sample_company.h"

namespace brimley::testing {
namespace {

struct Options {
    std::string saver;
    int kills = 10;
    int savers = 2;
    std::uint64_t seed = 20261122;
};

constexpr int kMillisecondsMost = 700;
constexpr int kKillsOfACompany = 50;  // then a fresh one, for the check reads all there is
constexpr std::string_view kRefused = "refused ";

void sleep_ms(std::uint64_t milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

// What a saver is told when the server goes away under it.
bool is_of_the_outage(std::string_view text) {
    for (const std::string_view known :
         {frame::kLostForNowMessage, frame::kInDoubtForNowMessage, frame::kWasStoredMessage,
          frame::kWasNotStoredMessage, frame::kUndecidedMessage, frame::kUnknownMessage})
        if (text.starts_with(known)) return true;
    return text.ends_with("failed") || text.ends_with("failed.");
}

class KilledServer {
  public:
    KilledServer(const PrivateCluster& server, const Options& options) : server_(server), options_(options) {}

    void kill(std::mt19937_64& chance) {
        std::vector<std::unique_ptr<Child>> savers;
        for (int i = 0; i < options_.savers; ++i)
            savers.push_back(std::make_unique<Child>(std::vector<std::string>{
                options_.saver, company_.path(), "--acts", "1000000", "--seed", std::to_string(chance())}));
        sleep_ms(100 + chance() % kMillisecondsMost);
        const bool at_once = chance() % 2 == 0;
        at_once ? server_.kill() : server_.halt("immediate");
        // Half of them go on with the server that is back.
        const bool go_on = chance() % 2 == 0;
        if (go_on) {
            server_.resume();
            sleep_ms(100 + chance() % kMillisecondsMost);
        }
        for (const auto& saver : savers)
            saver->kill();
        if (!go_on) server_.resume();
        for (const auto& saver : savers) {
            for (const std::string& line : saver->lines())
                if (!stored_.take(line)) ++others_[line];
            if (saver->status().value_or(kCannotOpen) != kCannotOpen) ended_early_ = true;
        }
        last_kill_ = fmt::format("{}, savers {}", at_once ? "kill" : "immediate", go_on ? "go on" : "end");
    }
    [[nodiscard]] std::vector<std::string> findings() const {
        if (ended_early_) return {"a saver has ended by itself"};
        if (!server_has_let_go(company_.path())) return {"the server still has the connection of a saver"};
        return stored_.findings(company_.open());
    }
    [[nodiscard]] const std::string& last_kill() const { return last_kill_; }
    [[nodiscard]] int told() const { return stored_.told(); }
    [[nodiscard]] const std::map<std::string, int>& others() const { return others_; }

  private:
    const PrivateCluster& server_;
    const Options& options_;
    ClosedCopy company_{sample_original()};
    StoredDocuments stored_;
    std::map<std::string, int> others_;
    std::string last_kill_;
    bool ended_early_ = false;
};

// What was told beside what was stored: how often the connection was back in time, and what was in doubt.
void print_outages(const std::map<std::string, int>& told) {
    std::map<std::string, int> kinds;
    for (const auto& [line, times] : told)
        if (is_of_the_outage(std::string_view(line).substr(kRefused.size())))
            kinds[line.substr(kRefused.size(), 60)] += times;
    for (const auto& [kind, times] : kinds)
        std::cout << fmt::format("{} times: {}...\n", times, kind);
}

int run(const Options& options) {
    static const PrivateCluster server;  // outlives the company that others are copied from
    ::setenv("BRIMLEY_TEST_SERVER", server.file().c_str(), 1);
    std::cout << "seed " << options.seed << std::endl;
    std::mt19937_64 chance(options.seed);
    int told = 0;
    std::map<std::string, int> outages;
    for (int done = 0; done < options.kills;) {
        KilledServer killed(server, options);
        for (int i = 0; i < kKillsOfACompany && done < options.kills; ++i, ++done) {
            killed.kill(chance);
            const auto findings = killed.findings();
            if (findings.empty()) continue;
            std::cout << fmt::format("kill {}, {}:\n", done + 1, killed.last_kill());
            for (const std::string& finding : findings)
                std::cout << "  " << finding << '\n';
            return 1;
        }
        told += killed.told();
        for (const auto& [line, times] : killed.others())
            outages[line] += times;
    }
    print_outages(outages);
    std::cout << fmt::format("{} kills of the server, {} acts reported as stored, all there\n", options.kills,
                             told);
    return told > 0 ? 0 : 1;
}

}  // namespace
}  // namespace brimley::testing

int main(int argc, char** argv) {
    brimley::testing::Options options;
    brimley::testing::ProgramOptions program("kill-servers", "Kills a server while savers work on it");
    program.required("saver", options.saver, "the saver program");
    program.option("--kills", options.kills, "how many");
    program.option("--savers", options.savers, "at once");
    program.option("--seed", options.seed, "which kills");
    return program.run(argc, argv, [&] { return brimley::testing::run(options); });
}
