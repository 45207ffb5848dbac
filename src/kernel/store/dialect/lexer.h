// Query texts cut into tokens, and the shape of a query text.
//
// The shape is the text with every literal replaced by a mark for its kind, and each run of blanks by one
// blank. Texts of equal shape differ in their values only, so they share one translation and one prepared
// statement. Taking the shape is all that a known text costs.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace brimley::store::dialect {

enum class TokenKind { word, bracketed_name, text, number, symbol, end };

struct Token {
    TokenKind kind = TokenKind::end;
    // Without brackets or quotes; a view into the query text.
    std::string_view text;
    std::size_t position = 0;  // of its first character, from 0
};

struct Literal {
    bool is_text = false;
    std::string_view text;
};

// Walks over a query text, which must outlive it. Throws ErrorKind::syntax for what can be no token.
class Lexer {
  public:
    explicit Lexer(std::string_view text) : text_(text) {}
    [[nodiscard]] Token next();

  private:
    [[nodiscard]] Token delimited(TokenKind kind, char closing);
    [[nodiscard]] Token number();
    [[nodiscard]] Token word();
    [[nodiscard]] Token symbol();

    std::string_view text_;
    std::size_t at_ = 0;
};

// Both results are replaced; their memory is used again.
void take_shape(std::string_view text, std::string& shape, std::vector<Literal>& literals);

// The error for a word that stands where it cannot: names the place, counted from 1, and what was wanted.
[[noreturn]] void refuse_syntax(std::string_view query, std::size_t position, std::string_view offending,
                                std::string_view wanted);

// The same, where only the place is known: the word that stands there is the offending one.
[[noreturn]] void refuse_syntax_at(std::string_view query, std::size_t position, std::string_view wanted);

// Stands in a query text where a value with a single quote should have stood. No token begins with it.
inline constexpr char kBrokenValue = '\x1a';

}  // namespace brimley::store::dialect
