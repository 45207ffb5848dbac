// The tokens of one query text with the questions that a parser asks of them.
#pragma once

#include <string_view>
#include <vector>

#include "kernel/store/dialect/lexer.h"

namespace brimley::store::dialect {

class TokenStream {
  public:
    explicit TokenStream(std::string_view query);

    [[nodiscard]] const Token& peek(std::size_t ahead = 0) const;
    Token take();
    // Which literal of the text the next one is.
    [[nodiscard]] std::size_t literals_taken() const { return literals_taken_; }

    [[nodiscard]] bool is_word(std::string_view word, std::size_t ahead = 0) const;
    [[nodiscard]] bool is_symbol(std::string_view symbol, std::size_t ahead = 0) const;
    [[nodiscard]] bool accept_word(std::string_view word);
    [[nodiscard]] bool accept_symbol(std::string_view symbol);
    void expect_word(std::string_view word);
    void expect_symbol(std::string_view symbol);
    // The whole text has been taken.
    void expect_end();
    [[noreturn]] void refuse(std::string_view wanted) const { refuse(peek(), wanted); }
    [[noreturn]] void refuse(const Token& token, std::string_view wanted) const;

  private:
    std::string_view query_;
    std::vector<Token> tokens_;
    std::size_t at_ = 0;
    std::size_t literals_taken_ = 0;
};

}  // namespace brimley::store::dialect
