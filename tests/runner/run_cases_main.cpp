// run-cases PROGRAM [OPTION=VALUE...]: runs the cases of a GoogleTest program, or a part of them, in one
// process for as long as it lasts, and prints what the failed ones have printed, and the counts.
//
//   filter=FILTER     as --gtest_filter takes it
//   part=K parts=N    the cases K, K + N, ... counted from 0
//   seconds=S         the time that one case may take
//   may_be_empty=yes  no case at all is no failure
#include <exception>
#include <iostream>
#include <map>
#include <stdexcept>

#include "test_program.h"

namespace {

using namespace brimley::testing;

using Options = std::map<std::string, std::string>;

Options read_options(const std::vector<std::string>& words) {
    Options options{
        {"filter", "*"}, {"part", "0"}, {"parts", "1"}, {"seconds", "120"}, {"may_be_empty", "no"}};
    for (std::size_t i = 2; i < words.size(); ++i) {
        const auto sign = words[i].find('=');
        const auto option = options.find(words[i].substr(0, sign));
        if (sign == std::string::npos || option == options.end())
            throw std::runtime_error("there is no option " + words[i]);
        option->second = words[i].substr(sign + 1);
    }
    return options;
}

std::vector<std::string> part_of(const std::vector<std::string>& names, const Options& options) {
    std::vector<std::string> part;
    for (std::size_t i = std::stoul(options.at("part")); i < names.size();
         i += std::stoul(options.at("parts")))
        part.push_back(names[i]);
    return part;
}

// Returns how many failed.
std::size_t print_failures(const std::vector<CaseResult>& results) {
    std::size_t failed = 0;
    for (const CaseResult& result : results) {
        if (result.passed) continue;
        ++failed;
        std::cout << "FAILED " << result.name << '\n' << result.output << '\n';
    }
    return failed;
}

int run(const std::vector<std::string>& words) {
    if (words.size() < 2) throw std::runtime_error("usage: run-cases PROGRAM [OPTION=VALUE...]");
    const Options options = read_options(words);
    const TestProgram program(words[1], std::chrono::seconds(std::stoi(options.at("seconds"))));
    const auto results = program.run(part_of(program.cases(options.at("filter")), options));
    const std::size_t failed = print_failures(results);
    std::cout << "cases: " << results.size() - failed << " passed, " << failed << " failed" << std::endl;
    const bool enough = !results.empty() || options.at("may_be_empty") == "yes";
    return failed == 0 && enough ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return run({argv, argv + argc});
    } catch (const std::exception& failure) {
        std::cerr << "run-cases: " << failure.what() << std::endl;
        return 1;
    }
}
