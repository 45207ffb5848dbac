#include "kernel/store/dialect/token_stream.h"

#include <algorithm>
#include <string>

#include "kernel/store/letter_case.h"

namespace brimley::store::dialect {

TokenStream::TokenStream(std::string_view query) : query_(query) {
    Lexer lexer(query);
    do
        tokens_.push_back(lexer.next());
    while (tokens_.back().kind != TokenKind::end);
}

const Token& TokenStream::peek(std::size_t ahead) const {
    return tokens_[std::min(at_ + ahead, tokens_.size() - 1)];
}

Token TokenStream::take() {
    const Token token = peek();
    if (token.kind == TokenKind::text || token.kind == TokenKind::number) ++literals_taken_;
    if (token.kind != TokenKind::end) ++at_;
    return token;
}

bool TokenStream::is_word(std::string_view word, std::size_t ahead) const {
    return peek(ahead).kind == TokenKind::word && same_name(peek(ahead).text, word);
}

bool TokenStream::is_symbol(std::string_view symbol, std::size_t ahead) const {
    return peek(ahead).kind == TokenKind::symbol && peek(ahead).text == symbol;
}

bool TokenStream::accept_word(std::string_view word) {
    if (!is_word(word)) return false;
    take();
    return true;
}

bool TokenStream::accept_symbol(std::string_view symbol) {
    if (!is_symbol(symbol)) return false;
    take();
    return true;
}

void TokenStream::expect_word(std::string_view word) {
    if (!accept_word(word)) refuse(std::string(word) + " expected");
}

void TokenStream::expect_symbol(std::string_view symbol) {
    if (!accept_symbol(symbol)) refuse(std::string(symbol) + " expected");
}

void TokenStream::expect_end() {
    if (peek().kind != TokenKind::end) refuse("the end of the text expected");
}

void TokenStream::refuse(const Token& token, std::string_view wanted) const {
    std::string_view offending = token.text;
    if (token.kind == TokenKind::text || token.kind == TokenKind::bracketed_name)
        offending = query_.substr(token.position, token.text.size() + 2);
    refuse_syntax(query_, token.position, offending, wanted);
}

}  // namespace brimley::store::dialect
