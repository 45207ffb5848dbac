// random-session: random acts on a fresh sample company, the books checked after each of them.
//
//   random-session [--acts N] [--seed N] [--sessions N] [--check-every N] [--quiet] [--without-payments]
//                  [--script FILE]
//
// With BRIMLEY_TEST_SERVER the company is on that server (tests/support/server-cluster), else a file.
//
// Prints the seed first; the same seed gives the same session. Ends 1 at the first act after which something
// does not hold, having told it and written every line up to there to FILE, which the console can run.
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <chrono>
#include <fstream>
#include <iostream>

#include "random_session.h"
#include "support/program_options.h"
#include "support/sample_company.h"

namespace {

using brimley::testing::RandomSession;

constexpr int kSessionsBetweenLines = 100;

struct Options {
    int acts = 1000;
    std::uint64_t seed = 20260105;
    int sessions = 1;
    bool without_payments = false;
    int check_every = 1;
    bool quiet = false;
    std::string script = "random-session.session";
};

void tell_failure(const RandomSession& session, const Options& options, int number, const char* act,
                  const std::vector<std::string>& findings) {
    std::cout << fmt::format("act {}, {}:\n{}", number, act, session.printed());
    for (const std::string& finding : findings)
        std::cout << "  " << finding << '\n';
    std::ofstream script(options.script);
    script << fmt::format("{}\n", fmt::join(session.script(), "\n"));
    std::cout << fmt::format("{} lines written to {}\n", session.script().size(), options.script);
}

void tell_tally(RandomSession& session, int acts) {
    const RandomSession::Tally& tally = session.tally();
    std::cout << fmt::format(
        "{} acts: {} saved, {} refused, {} templates, {} updated, {} updates failed, {} void, {} held, {} "
        "released\n",
        acts, tally.saved, tally.refused, tally.templates, tally.updated, tally.update_failed, tally.voided,
        tally.held, tally.released);
    std::cout << fmt::format(
        "payments: {} saved, {} refused, {} edited, {} void ({} of them in a later period, {} as "
        "checks), {} voids failed\n",
        tally.payments, tally.payments_refused, tally.payments_edited, tally.payments_voided,
        tally.voids_in_a_later_period, tally.checks_voided, tally.payment_voids_failed);
    std::cout << fmt::format(
        "generated: {} invoices in {} runs, {} runs refused; {} revaluations, {} refused\n", tally.generated,
        tally.generations, tally.generations_refused, tally.revaluations, tally.revaluations_refused);
    std::cout << "paid";
    for (const auto& [way, count] : tally.ways_of_paying)
        std::cout << fmt::format(" | {} {}", way, count);
    std::cout << fmt::format("\nnamed deviations: {} vendors\n", session.named_deviations().vendors());
    for (const auto& [note, count] : session.notes())
        std::cout << fmt::format("{} notes: {}\n", count, note);
}

enum class Outcome { held, failed };

// Checks after every so many acts, and after the last one.
Outcome play(const Options& options, int check_every) {
    const brimley::testing::ClosedCopy company(brimley::testing::sample_original());
    RandomSession session(company.path(), options.seed);
    if (options.without_payments) session.leave_payments_out();
    for (int number = 1; number <= options.acts; ++number) {
        const char* const act = session.act();
        if (number % check_every != 0 && number != options.acts) continue;
        const auto findings = session.findings();
        if (findings.empty()) continue;
        tell_failure(session, options, number, act, findings);
        return Outcome::failed;
    }
    if (!options.quiet) tell_tally(session, options.acts);
    return Outcome::held;
}

// What was found between two checks is looked for once more, after every act.
Outcome run_one(const Options& options) {
    if (!options.quiet) std::cout << "seed " << options.seed << std::endl;
    if (play(options, options.check_every) == Outcome::held) return Outcome::held;
    std::cout << "seed " << options.seed << std::endl;
    if (options.check_every > 1) static_cast<void>(play(options, 1));
    return Outcome::failed;
}

// The first that goes wrong ends the run.
int run(Options options) {
    const auto start = std::chrono::steady_clock::now();
    const auto first = options.seed;
    for (int session = 1; session <= options.sessions; ++session, ++options.seed) {
        if (run_one(options) == Outcome::failed) return 1;
        if (!options.quiet || (session % kSessionsBetweenLines != 0 && session != options.sessions)) continue;
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
        const double acts = static_cast<double>(session) * options.acts;
        std::cout << fmt::format("seeds {} to {}: {} acts without a finding, {:.0f} a second\n", first,
                                 options.seed, acts, acts / taken.count())
                  << std::flush;
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    brimley::testing::ProgramOptions program(
        "random-session", "Random acts on the sample company, the books checked after each");
    program.option("--acts", options.acts, "how many");
    program.option("--seed", options.seed, "which session");
    program.option("--sessions", options.sessions, "how many, each with the next seed");
    program.flag("--without-payments", options.without_payments, "invoices and templates alone");
    program.option("--check-every", options.check_every, "how many acts there are between two checks");
    program.flag("--quiet", options.quiet, "a line for every hundred sessions");
    program.option("--script", options.script, "where a failing session is written");
    return program.run(argc, argv, [&] { return run(options); });
}
