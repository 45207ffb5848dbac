#include "kernel/store/dialect/lexer.h"

#include <fmt/format.h>

#include <array>
#include <cstring>

#include "kernel/store/error.h"

namespace brimley::store::dialect {

namespace {

enum CharacterClass : unsigned char { kOther, kBlank, kSymbol, kDigit, kLetter };

constexpr std::array<CharacterClass, 256> make_classes() {
    std::array<CharacterClass, 256> classes{};
    for (int c = '0'; c <= '9'; ++c)
        classes[static_cast<std::size_t>(c)] = kDigit;
    for (int c = 'a'; c <= 'z'; ++c)
        classes[static_cast<std::size_t>(c)] = kLetter;
    for (int c = 'A'; c <= 'Z'; ++c)
        classes[static_cast<std::size_t>(c)] = kLetter;
    classes['_'] = kLetter;
    for (const char c : {' ', '\t', '\r', '\n'})
        classes[static_cast<unsigned char>(c)] = kBlank;
    for (const char c : std::string_view("(),.*+-/=<>"))
        classes[static_cast<unsigned char>(c)] = kSymbol;
    return classes;
}

constexpr std::array<CharacterClass, 256> kClasses = make_classes();

CharacterClass class_of(char c) { return kClasses[static_cast<unsigned char>(c)]; }

std::string printable(std::string_view offending) {
    std::string shown;
    for (const char c : offending.substr(0, 40))
        shown += static_cast<unsigned char>(c) < 0x20 || c == '\x7f' ? '?' : c;
    return shown;
}

}  // namespace

void refuse_syntax(std::string_view query, std::size_t position, std::string_view offending,
                   std::string_view wanted) {
    const std::string what = offending.empty() ? "the end" : fmt::format("\"{}\"", printable(offending));
    throw Error(ErrorKind::syntax,
                fmt::format("syntax error at position {}, at {}: {}", position + 1, what, wanted), 0,
                std::string(query));
}

void refuse_syntax_at(std::string_view query, std::size_t position, std::string_view wanted) {
    const Token token = Lexer(query.substr(position)).next();
    refuse_syntax(query, position, token.text, wanted);
}

Token Lexer::next() {
    while (at_ < text_.size() && class_of(text_[at_]) == kBlank)
        ++at_;
    if (at_ == text_.size()) return {TokenKind::end, {}, at_};
    const char first = text_[at_];
    if (class_of(first) == kLetter) return word();
    if (class_of(first) == kDigit) return number();
    if (first == '\'') return delimited(TokenKind::text, '\'');
    if (first == '[') return delimited(TokenKind::bracketed_name, ']');
    const bool decimals = first == '.' && at_ + 1 < text_.size() && class_of(text_[at_ + 1]) == kDigit;
    // "t.5" is a mistake, but "x = .5" a number: what stands before decides.
    const bool behind_name = at_ > 0 && (class_of(text_[at_ - 1]) == kLetter || text_[at_ - 1] == ']');
    return decimals && !behind_name ? number() : symbol();
}

Token Lexer::delimited(TokenKind kind, char closing) {
    const std::size_t start = at_;
    const std::size_t end = text_.find(closing, start + 1);
    if (end == std::string_view::npos)
        refuse_syntax(text_, start, text_.substr(start), fmt::format("no closing {}", closing));
    at_ = end + 1;
    return {kind, text_.substr(start + 1, end - start - 1), start};
}

Token Lexer::number() {
    const std::size_t start = at_;
    const auto take_digits = [this] {
        const std::size_t before = at_;
        while (at_ < text_.size() && class_of(text_[at_]) == kDigit)
            ++at_;
        return at_ > before;
    };
    bool well_formed = take_digits();
    if (at_ < text_.size() && text_[at_] == '.') {
        ++at_;
        well_formed = take_digits() || well_formed;
    }
    if (at_ < text_.size() && (text_[at_] == 'e' || text_[at_] == 'E')) {
        ++at_;
        if (at_ < text_.size() && (text_[at_] == '+' || text_[at_] == '-')) ++at_;
        well_formed = take_digits() && well_formed;
    }
    const bool runs_on = at_ < text_.size() && (class_of(text_[at_]) == kLetter || text_[at_] == '.');
    if (!well_formed || runs_on)
        refuse_syntax(text_, start, text_.substr(start, at_ - start + 1), "not a number");
    return {TokenKind::number, text_.substr(start, at_ - start), start};
}

Token Lexer::word() {
    const std::size_t start = at_;
    while (at_ < text_.size() && class_of(text_[at_]) >= kDigit)
        ++at_;
    return {TokenKind::word, text_.substr(start, at_ - start), start};
}

Token Lexer::symbol() {
    const std::size_t start = at_;
    const char first = text_[start];
    if (first == kBrokenValue) refuse_syntax(text_, start, "'", "a value with a single quote");
    if (class_of(first) != kSymbol) refuse_syntax(text_, start, text_.substr(start, 1), "unknown character");
    const char second = start + 1 < text_.size() ? text_[start + 1] : ' ';
    const bool two = (first == '<' && (second == '=' || second == '>')) || (first == '>' && second == '=');
    at_ += two ? 2 : 1;
    return {TokenKind::symbol, text_.substr(start, at_ - start), start};
}

// Runs for every text that is opened or looked for.
void take_shape(std::string_view text, std::string& shape, std::vector<Literal>& literals) {
    literals.clear();
    shape.resize(2 * text.size());  // a letter may become a word and its blank
    char* out = shape.data();
    Lexer lexer(text);
    const auto append = [&](std::string_view token) {
        std::memcpy(out, token.data(), token.size());
        out += token.size();
    };
    for (Token token = lexer.next(); token.kind != TokenKind::end; token = lexer.next()) {
        switch (token.kind) {
            case TokenKind::text:
                *out++ = '\'';
                literals.push_back({true, token.text});
                break;
            case TokenKind::number:
                *out++ = '#';
                literals.push_back({false, token.text});
                break;
            case TokenKind::bracketed_name:
                *out++ = '[';
                append(token.text);
                *out++ = ']';
                break;
            case TokenKind::word:
                // Only words can run into each other.
                append(token.text);
                *out++ = ' ';
                break;
            default:
                append(token.text);
                // "< =" is no "<=".
                if (token.text == "<" || token.text == ">") *out++ = ' ';
        }
    }
    shape.resize(static_cast<std::size_t>(out - shape.data()));
}

}  // namespace brimley::store::dialect
