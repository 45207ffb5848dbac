// The built programs as they are called: through the shell, in a folder of the test's own.
#pragma once

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "company/company_fixture.h"

namespace brimley::testing {

struct Outcome {
    int status = -1;  // -1: ended by a signal
    std::string output;
    std::string errors;
};

struct Call {
    std::string arguments;
    std::string program = "brimley-company";
    std::string before = {};  // shell text before the program: a limit, or another program that runs it
    std::string redirection = "> out";
};

inline Outcome run_program(const TemporaryFolder& folder, const Call& call) {
    const auto tests = std::filesystem::read_symlink("/proc/self/exe");
    const std::string program = (tests.parent_path() / call.program).string();
    const std::string line = "cd '" + folder.path().string() + "' && " + call.before + " '" + program + "' " +
                             call.arguments + " " + call.redirection + " 2> err";
    const int ended = std::system(line.c_str());
    // The shell tells of a signal by a status above 128.
    const bool by_itself = WIFEXITED(ended) && WEXITSTATUS(ended) < 128;
    return {by_itself ? WEXITSTATUS(ended) : -1,
            call.redirection == "> out" ? text_of_file(folder.file("out")) : std::string(),
            text_of_file(folder.file("err"))};
}

}  // namespace brimley::testing
