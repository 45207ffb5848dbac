#include "company/command_line_words.h"

#include <algorithm>
#include <cstring>

#include "kernel/store/database.h"

namespace brimley::company {

namespace {

// A URI may also follow an option's name in the same word.
std::string word_without_password(const std::string& word) {
    const std::size_t start = word.find("postgres");
    if (start == std::string::npos) return word;
    return word.substr(0, start) + store::without_password(std::string_view(word).substr(start));
}

void overwrite(char* word, const std::string& shorter) {
    const std::size_t length = std::strlen(word);
    std::fill_n(std::copy(shorter.begin(), shorter.end(), word), length - shorter.size(), '\0');
}

}  // namespace

CommandLineWords::CommandLineWords(int argc, char** argv) : words_(argv, argv + argc) {
    for (std::size_t i = 0; i < words_.size(); ++i) {
        pointers_.push_back(words_[i].c_str());
        const std::string shorter = word_without_password(words_[i]);
        if (shorter == words_[i]) continue;
        overwrite(argv[i], shorter);
        hidden_.emplace_back(words_[i], shorter);
    }
}

std::string CommandLineWords::without_passwords(std::string text) const {
    for (const auto& [word, shorter] : hidden_) {
        for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at))
            text.replace(at, word.size(), shorter);
    }
    return text;
}

}  // namespace brimley::company
