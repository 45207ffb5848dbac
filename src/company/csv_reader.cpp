#include "company/csv_reader.h"

#include <fmt/format.h>

#include <cerrno>
#include <system_error>

namespace brimley::company {

namespace {

constexpr int kEnd = std::char_traits<char>::eof();

// Length of the well-formed UTF-8 sequence at the start of the text, or 0.
std::size_t sequence_length(std::string_view text) {
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    const unsigned lead = byte(0);
    if (lead < 0x80) return lead == 0 ? 0 : 1;
    const std::size_t length = lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
    if (length == 0 || length > text.size()) return 0;
    for (std::size_t at = 1; at < length; ++at) {
        if ((byte(at) & 0xC0) != 0x80) return 0;
    }
    // The second byte rules out what a shorter sequence could say, the surrogates, and all above U+10FFFF.
    const unsigned second = byte(1);
    if ((lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F)) return 0;
    if ((lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F)) return 0;
    return length;
}

}  // namespace

CsvError::CsvError(const std::string& file, int line, const std::string& reason)
    : std::runtime_error(fmt::format("{}:{}: {}", file, line, reason)) {}

bool is_valid_utf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = sequence_length(text);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

CsvReader::CsvReader(std::string path) : path_(std::move(path)), in_(path_, std::ios::binary) {
    if (!in_) throw std::system_error(errno, std::generic_category(), path_);
    skip_byte_order_mark();
}

void CsvReader::fail(const std::string& reason) const { throw CsvError(path_, record_line_, reason); }

void CsvReader::skip_byte_order_mark() {
    char mark[3] = {};
    in_.read(mark, sizeof mark);
    if (std::string_view(mark, static_cast<std::size_t>(in_.gcount())) == "\xEF\xBB\xBF") return;
    in_.clear();
    in_.seekg(0);
}

int CsvReader::take() {
    const int byte = in_.rdbuf()->sbumpc();
    if (byte == '\n') ++line_;
    return byte;
}

int CsvReader::peek() { return in_.rdbuf()->sgetc(); }

void CsvReader::read_quoted(CsvCell& cell) {
    cell.quoted = true;
    take();
    for (;;) {
        const int byte = take();
        if (byte == kEnd) fail("a quoted cell has no closing quote");
        if (byte == '"') {
            if (peek() != '"') break;
            take();
        }
        cell.text += static_cast<char>(byte);
    }
    const int next = peek();
    if (next != ',' && next != '\n' && next != '\r' && next != kEnd) {
        fail("text follows a closing quote");
    }
}

void CsvReader::read_plain(CsvCell& cell) {
    for (int byte = peek(); byte != ',' && byte != '\n' && byte != '\r' && byte != kEnd; byte = peek()) {
        if (byte == '"') fail("a quote inside an unquoted cell");
        cell.text += static_cast<char>(take());
    }
}

bool CsvReader::take_separator() {
    const int byte = take();
    if (byte == '\r' && take() != '\n') fail("a carriage return without a line feed");
    return byte == ',';
}

bool CsvReader::read_cells(std::vector<CsvCell>& record) {
    record.clear();
    record_line_ = line_;
    if (peek() == kEnd) return false;
    do {
        CsvCell& cell = record.emplace_back();
        if (peek() == '"') {
            read_quoted(cell);
        } else {
            read_plain(cell);
        }
        if (!is_valid_utf8(cell.text)) fail("the text is not valid UTF-8");
    } while (take_separator());
    return true;
}

bool CsvReader::next(std::vector<CsvCell>& record) {
    while (read_cells(record)) {
        const bool blank = record.size() == 1 && record[0].text.empty() && !record[0].quoted;
        if (columns_ == 0) {
            if (blank) fail("the first line must name the fields");
            columns_ = record.size();
            return true;
        }
        if (blank && columns_ > 1) continue;
        if (record.size() != columns_) {
            fail(fmt::format("{} cells where the first line names {} fields", record.size(), columns_));
        }
        return true;
    }
    if (in_.bad()) throw std::system_error(errno, std::generic_category(), path_);
    if (columns_ == 0) {
        record_line_ = 1;
        fail("the first line must name the fields");
    }
    return false;
}

}  // namespace brimley::company
