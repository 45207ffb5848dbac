#include "kernel/store/dialect/expression_parser.h"

#include <algorithm>
#include <array>

#include "kernel/store/letter_case.h"

namespace brimley::store::dialect {

namespace {

constexpr int kDepthMax = 100;
// SQLite takes expressions up to a depth of 1000, and a chain of AND counts as deep as it is long.
constexpr int kNodesMax = 3000;
constexpr std::size_t kChainMax = 500;

constexpr std::array<std::string_view, 13> kReserved = {
    "SELECT", "FROM", "WHERE", "AND", "OR", "NOT", "IS", "NULL", "TRUE", "FALSE", "AS", "INNER", "ON"};
constexpr std::array<std::string_view, 6> kFunctions = {"UCASE", "VAL", "MAX", "MIN", "SUM", "COUNT"};
constexpr std::array<std::string_view, 6> kComparisons = {"=", "<>", "<", "<=", ">", ">="};

bool is_reserved(std::string_view word) {
    return std::ranges::any_of(kReserved,
                               [&](std::string_view reserved) { return same_name(word, reserved); });
}

bool is_comparison(const Token& token) {
    return token.kind == TokenKind::symbol &&
           std::ranges::find(kComparisons, token.text) != kComparisons.end();
}

}  // namespace

class ExpressionParser::Nesting {
  public:
    explicit Nesting(ExpressionParser& parser) : parser_(parser) {
        if (++parser_.depth_ > kDepthMax) parser_.tokens_.refuse("nested too deep");
    }
    ~Nesting() { --parser_.depth_; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

  private:
    ExpressionParser& parser_;
};

std::string take_name(TokenStream& tokens, std::string_view wanted) {
    const Token& token = tokens.peek();
    const bool bare = token.kind == TokenKind::word && !is_reserved(token.text);
    if (!bare && token.kind != TokenKind::bracketed_name) tokens.refuse(wanted);
    return std::string(tokens.take().text);
}

ExpressionPtr ExpressionParser::node(ExpressionKind kind, const Token& token) {
    if (++nodes_ > kNodesMax) tokens_.refuse(token, "the query is too long");
    auto made = std::make_unique<Expression>();
    made->kind = kind;
    made->position = token.position;
    return made;
}

ExpressionPtr ExpressionParser::pair(ExpressionKind kind, const Token& sign, ExpressionPtr left,
                                     ExpressionPtr right) {
    auto made = node(kind, sign);
    made->name = sign.text;
    made->operands.push_back(std::move(left));
    made->operands.push_back(std::move(right));
    return made;
}

ExpressionPtr ExpressionParser::expression() {
    const Nesting nesting(*this);
    ExpressionPtr first = all_of();
    if (!tokens_.is_word("OR")) return first;
    auto any = node(ExpressionKind::disjunction, tokens_.peek());
    any->operands.push_back(std::move(first));
    while (tokens_.accept_word("OR")) {
        if (any->operands.size() == kChainMax) tokens_.refuse("the query is too long");
        any->operands.push_back(all_of());
    }
    return any;
}

ExpressionPtr ExpressionParser::all_of() {
    ExpressionPtr first = inverted();
    if (!tokens_.is_word("AND")) return first;
    auto all = node(ExpressionKind::conjunction, tokens_.peek());
    all->operands.push_back(std::move(first));
    while (tokens_.accept_word("AND")) {
        if (all->operands.size() == kChainMax) tokens_.refuse("the query is too long");
        all->operands.push_back(inverted());
    }
    return all;
}

ExpressionPtr ExpressionParser::inverted() {
    if (!tokens_.is_word("NOT")) return predicate();
    const Nesting nesting(*this);
    auto inversion = node(ExpressionKind::inversion, tokens_.take());
    inversion->operands.push_back(inverted());
    return inversion;
}

ExpressionPtr ExpressionParser::predicate() {
    ExpressionPtr left = sum();
    if (tokens_.is_word("IS")) return null_test(std::move(left));
    if (!is_comparison(tokens_.peek())) return left;
    const Token sign = tokens_.take();
    ExpressionPtr right = sum();
    return pair(ExpressionKind::comparison, sign, std::move(left), std::move(right));
}

ExpressionPtr ExpressionParser::null_test(ExpressionPtr tested) {
    auto test = node(ExpressionKind::null_test, tokens_.take());
    test->flag = tokens_.accept_word("NOT");
    tokens_.expect_word("NULL");
    test->operands.push_back(std::move(tested));
    return test;
}

ExpressionPtr ExpressionParser::sum() {
    ExpressionPtr left = product();
    for (std::size_t terms = 1; tokens_.is_symbol("+") || tokens_.is_symbol("-"); ++terms) {
        if (terms == kChainMax) tokens_.refuse("the query is too long");
        const Token sign = tokens_.take();
        ExpressionPtr right = product();
        left = pair(ExpressionKind::arithmetic, sign, std::move(left), std::move(right));
    }
    return left;
}

ExpressionPtr ExpressionParser::product() {
    ExpressionPtr left = signed_operand();
    for (std::size_t factors = 1; tokens_.is_symbol("*") || tokens_.is_symbol("/"); ++factors) {
        if (factors == kChainMax) tokens_.refuse("the query is too long");
        const Token sign = tokens_.take();
        ExpressionPtr right = signed_operand();
        left = pair(ExpressionKind::arithmetic, sign, std::move(left), std::move(right));
    }
    return left;
}

ExpressionPtr ExpressionParser::signed_operand() {
    if (!tokens_.is_symbol("-")) return operand();
    const Nesting nesting(*this);
    auto negation = node(ExpressionKind::negation, tokens_.take());
    negation->operands.push_back(signed_operand());
    return negation;
}

ExpressionPtr ExpressionParser::operand() {
    const Token& token = tokens_.peek();
    if (token.kind == TokenKind::text) return literal(ExpressionKind::text_literal);
    if (token.kind == TokenKind::number) return literal(ExpressionKind::number_literal);
    if (tokens_.accept_symbol("(")) {
        ExpressionPtr inner = expression();
        tokens_.expect_symbol(")");
        return inner;
    }
    if (tokens_.is_word("TRUE") || tokens_.is_word("FALSE")) {
        auto made = node(ExpressionKind::flag_literal, token);
        made->flag = tokens_.is_word("TRUE");
        tokens_.take();
        return made;
    }
    if (tokens_.is_word("NULL")) return node(ExpressionKind::null_literal, tokens_.take());
    if (token.kind == TokenKind::word && tokens_.is_symbol("(", 1)) return call();
    return column();
}

ExpressionPtr ExpressionParser::literal(ExpressionKind kind) {
    auto made = node(kind, tokens_.peek());
    made->literal = tokens_.literals_taken();
    tokens_.take();
    return made;
}

ExpressionPtr ExpressionParser::column() {
    auto made = node(ExpressionKind::column, tokens_.peek());
    made->name = take_name(tokens_, "a value expected");
    if (!tokens_.accept_symbol(".")) return made;
    made->qualifier = std::move(made->name);
    made->name = take_name(tokens_, "a field name expected");
    return made;
}

ExpressionPtr ExpressionParser::call() {
    if (tokens_.is_word("Datevalue")) return date_literal();
    const Token name = tokens_.peek();
    const auto known = std::ranges::find_if(
        kFunctions, [&](std::string_view function) { return same_name(name.text, function); });
    if (known == kFunctions.end()) tokens_.refuse("unknown function");
    auto made = node(ExpressionKind::call, tokens_.take());
    made->name = *known;
    tokens_.expect_symbol("(");
    const bool counts_rows = *known == "COUNT" && tokens_.accept_symbol("*");
    if (!counts_rows) made->operands.push_back(expression());
    tokens_.expect_symbol(")");
    return made;
}

ExpressionPtr ExpressionParser::date_literal() {
    tokens_.expect_word("Datevalue");
    tokens_.expect_symbol("(");
    if (tokens_.peek().kind != TokenKind::text) tokens_.refuse("a quoted date expected");
    auto date = literal(ExpressionKind::date_literal);
    tokens_.expect_symbol(")");
    return date;
}

}  // namespace brimley::store::dialect
