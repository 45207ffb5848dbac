// saver: works at the forms of a company, for the harnesses that kill it or run several of it at once.
//
//   saver COMPANY [--user NAME] [--seed N] [--acts N] [--only ACT] [--kill-at N]
//
// Prints a line for each thing that the forms have said is stored, at once. With --kill-at it dies at the
// n-th call to the engine, as in a power cut.
#include <iostream>
#include <optional>

#include "kernel/tables/company_tables.h"
#include "saver.h"
#include "support/killing_engine.h"
#include "support/program_options.h"

namespace brimley::testing {
namespace {

std::optional<store::OpenCompany> opened(const std::string& company, int kill_at) {
    try {
        return store::open_company(company, kernel::company_tables(), killed_at(kill_at));
    } catch (const store::Error& failure) {
        std::cerr << "saver: " << failure.what() << std::endl;
        return std::nullopt;
    }
}

}  // namespace
}  // namespace brimley::testing

int main(int argc, char** argv) {
    using namespace brimley::testing;
    std::string company;
    std::string user = "anna";
    std::uint64_t seed = 1;
    int acts = 10;
    std::string only;
    int kill_at = 0;
    ProgramOptions program("saver", "Works at the forms of a company");
    program.required("company", company, "its path or URI");
    program.option("--user", user, "who works");
    program.option("--seed", seed, "which acts");
    program.option("--acts", acts, "how many");
    program.option("--only", only, "the one act that is done");
    program.option("--kill-at", kill_at, "the call that ends the program");
    return program.run(argc, argv, [&] {
        const auto open = opened(company, kill_at);
        if (!open) return kCannotOpen;
        Saver saver(*open, user, seed, [](const std::string& line) { std::cout << line << std::endl; });
        for (int i = 0; i < acts; ++i)
            saver.act(only);
        return 0;
    });
}
