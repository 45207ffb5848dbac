// The words of a line after its command, taken one by one.
#pragma once

#include <charconv>

#include "console/console.h"
#include "console/script_line.h"

namespace brimley::console {

class Console::Arguments {
  public:
    explicit Arguments(std::vector<std::string> words) : words_(std::move(words)) {}

    [[nodiscard]] bool more() const { return next_ < words_.size(); }
    [[nodiscard]] std::string take(const char* what) {
        if (!more()) throw ScriptFault(std::string(what) + " is missing");
        return words_[next_++];
    }
    [[nodiscard]] int take_number(const char* what) {
        const std::string word = take(what);
        int number = 0;
        const auto [end, fault] = std::from_chars(word.data(), word.data() + word.size(), number);
        if (fault != std::errc{} || end != word.data() + word.size()) {
            throw ScriptFault(std::string(what) + " is no number: " + word);
        }
        return number;
    }
    // A row of a grid, from 0.
    [[nodiscard]] int take_row() {
        const int row = take_number("ROW");
        if (row < 0 || row >= kRowsMax) throw ScriptFault("no such row: " + std::to_string(row));
        return row;
    }
    // The rest of the line as one text.
    [[nodiscard]] std::string take_text(const char* what) {
        std::string text = take(what);
        while (more())
            text += " " + words_[next_++];
        return text;
    }
    [[nodiscard]] std::vector<std::string> take_rest() {
        std::vector<std::string> rest(words_.begin() + static_cast<std::ptrdiff_t>(next_), words_.end());
        next_ = words_.size();
        return rest;
    }
    [[nodiscard]] bool take_if(const char* word) {
        if (!more() || words_[next_] != word) return false;
        ++next_;
        return true;
    }
    void expect_end() const {
        if (more()) throw ScriptFault("too many words: " + words_[next_]);
    }

  private:
    static constexpr int kRowsMax = 1'000'000;

    std::vector<std::string> words_;
    std::size_t next_ = 0;
};

}  // namespace brimley::console
