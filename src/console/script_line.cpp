#include "console/script_line.h"

namespace brimley::console {

namespace {

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

// Appends a quoted text, from after its first quote; `at` ends after the last.
void append_quoted(std::string& word, std::string_view line, std::size_t& at) {
    for (; at < line.size(); ++at) {
        char c = line[at];
        if (c == '"') {
            ++at;
            return;
        }
        if (c == '\\' && at + 1 < line.size()) {
            const char next = line[at + 1];
            if (next == 'n' || next == '"' || next == '\\') {
                c = next == 'n' ? '\n' : next;
                ++at;
            }
        }
        word += c;
    }
    throw ScriptFault("a quote is not closed");
}

}  // namespace

std::vector<std::string> split_line(std::string_view line) {
    std::vector<std::string> words;
    std::size_t at = 0;
    while (true) {
        while (at < line.size() && is_blank(line[at]))
            ++at;
        if (at == line.size() || line[at] == '#') return words;
        std::string& word = words.emplace_back();
        while (at < line.size() && !is_blank(line[at]) && line[at] != '#') {
            if (line[at] == '"') {
                append_quoted(word, line, ++at);
            } else {
                word += line[at++];
            }
        }
    }
}

bool matches_pattern(std::string_view pattern, std::string_view text) {
    std::size_t p = 0;
    std::size_t t = 0;
    std::size_t star = std::string_view::npos;
    std::size_t star_text = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            star_text = t;
        } else if (p < pattern.size() && pattern[p] == text[t]) {
            ++p;
            ++t;
        } else if (star != std::string_view::npos) {
            p = star + 1;
            t = ++star_text;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*')
        ++p;
    return p == pattern.size();
}

}  // namespace brimley::console
