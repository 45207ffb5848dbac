// The expressions of the dialect: conditions, sums, literals, names, calls.
#pragma once

#include "kernel/store/dialect/syntax.h"
#include "kernel/store/dialect/token_stream.h"

namespace brimley::store::dialect {

class ExpressionParser {
  public:
    explicit ExpressionParser(TokenStream& tokens) : tokens_(tokens) {}

    // The loosest binding: OR over AND over NOT over a comparison.
    [[nodiscard]] ExpressionPtr expression();

  private:
    // Keeps both the nesting of parentheses and the length of chains within what an engine takes.
    class Nesting;

    [[nodiscard]] ExpressionPtr all_of();
    [[nodiscard]] ExpressionPtr inverted();
    [[nodiscard]] ExpressionPtr predicate();
    [[nodiscard]] ExpressionPtr sum();
    [[nodiscard]] ExpressionPtr product();
    [[nodiscard]] ExpressionPtr signed_operand();
    [[nodiscard]] ExpressionPtr operand();
    [[nodiscard]] ExpressionPtr literal(ExpressionKind kind);
    [[nodiscard]] ExpressionPtr column();
    [[nodiscard]] ExpressionPtr call();
    [[nodiscard]] ExpressionPtr date_literal();
    [[nodiscard]] ExpressionPtr null_test(ExpressionPtr tested);
    [[nodiscard]] ExpressionPtr node(ExpressionKind kind, const Token& token);
    [[nodiscard]] ExpressionPtr pair(ExpressionKind kind, const Token& sign, ExpressionPtr left,
                                     ExpressionPtr right);

    TokenStream& tokens_;
    int depth_ = 0;
    int nodes_ = 0;
};

// A table or field name, bare or in brackets. Words that end or join expressions need the brackets.
[[nodiscard]] std::string take_name(TokenStream& tokens, std::string_view wanted);

}  // namespace brimley::store::dialect
