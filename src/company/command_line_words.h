// The words of a command line, whose passwords nobody else is to see: other users of the machine can read
// the arguments of every process.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace brimley::company {

class CommandLineWords {
  public:
    // Copies the words and takes the passwords out of argv, where each word ends earlier then.
    CommandLineWords(int argc, char** argv);

    [[nodiscard]] int count() const { return static_cast<int>(pointers_.size()); }
    // Whole, for whoever reads the command line.
    [[nodiscard]] const char* const* words() const { return pointers_.data(); }
    // A text about the command line, such as what is wrong with it, without the passwords.
    [[nodiscard]] std::string without_passwords(std::string text) const;

  private:
    std::vector<std::string> words_;
    std::vector<const char*> pointers_;
    std::vector<std::pair<std::string, std::string>> hidden_;  // words with a password, and without it
};

}  // namespace brimley::company
