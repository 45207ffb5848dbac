// saver: works at the forms of a company, for the harnesses that kill it or run several of it at once.
//
//   saver COMPANY [--user NAME] [--seed N] [--acts N] [--only ACT] [--kill-at N]
//
// Prints a line for each thing that the forms have said is stored, at once. With --kill-at it dies at the
// n-th call to the engine, as in a power cut.
#include <CLI/CLI.hpp>
#include <iostream>

#include "kernel/tables/company_tables.h"
#include "saver.h"
#include "support/killing_engine.h"

int main(int argc, char** argv) {
    CLI::App program("Works at the forms of a company", "saver");
    std::string company;
    std::string user = "anna";
    std::uint64_t seed = 1;
    int acts = 10;
    std::string only;
    int kill_at = 0;
    program.add_option("company", company)->required();
    program.add_option("--user", user);
    program.add_option("--seed", seed);
    program.add_option("--acts", acts);
    program.add_option("--only", only);
    program.add_option("--kill-at", kill_at);
    CLI11_PARSE(program, argc, argv);
    try {
        const brimley::store::OpenCompany open = brimley::store::open_company(
            company, brimley::kernel::company_tables(), brimley::testing::killed_at(kill_at));
        brimley::testing::Saver saver(open, user, seed,
                                      [](const std::string& line) { std::cout << line << std::endl; });
        for (int i = 0; i < acts; ++i)
            saver.act(only);
    } catch (const std::exception& failure) {
        std::cerr << "saver: " << failure.what() << std::endl;
        return 1;
    }
    return 0;
}
