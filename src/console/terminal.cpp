#include "console/terminal.h"

#include <editline/readline.h>

#include <cstdlib>
#include <cstring>
#include <iostream>
#include <memory>

#include "console/interrupt.h"
#include "console/script_line.h"
#include "kernel/visible_text.h"

namespace brimley::console {

namespace {

// libedit asks for completions through plain functions, so the words of the line at hand have to stand where
// they can see them.
std::vector<std::string> words_to_complete;

char* next_match(const char* typed, int state) {
    static std::size_t next = 0;
    if (state == 0) next = 0;
    while (next < words_to_complete.size()) {
        const std::string& word = words_to_complete[next++];
        if (word.starts_with(typed)) return strdup(word.c_str());
    }
    return nullptr;
}

char** complete(const char* typed, int, int) { return rl_completion_matches(typed, next_match); }

using Line = std::unique_ptr<char, decltype(&std::free)>;

Line read_line(const char* prompt) { return {readline(prompt), &std::free}; }

bool ask_at_terminal(const std::string& question) {
    while (true) {
        const Line line = read_line((question + " [yes/no] ").c_str());
        if (!line || std::strcmp(line.get(), "no") == 0 || std::strcmp(line.get(), "n") == 0) return false;
        if (std::strcmp(line.get(), "yes") == 0 || std::strcmp(line.get(), "y") == 0) return true;
    }
}

}  // namespace

void run_terminal(Console& console) {
    rl_initialize();
    rl_attempted_completion_function = complete;
    console.desk().ask_person = ask_at_terminal;
    for (int number = 1; !console.has_quit(); ++number) {
        words_to_complete = console.words();
        const Line line = read_line("brimley> ");
        if (!line) {
            std::cout << '\n';
            return;
        }
        if (*line.get() != '\0') add_history(line.get());
        try {
            const Interrupt interrupt;
            console.run(line.get(), "line " + std::to_string(number));
        } catch (const ScriptFault& fault) {
            std::cerr << kernel::visible_text(fault.what()) << '\n';
        } catch (const store::Error& failure) {
            std::cerr << kernel::visible_text(failure.what()) << '\n';
        }
        std::cout.flush();
        console.tidy();
    }
}

}  // namespace brimley::console
