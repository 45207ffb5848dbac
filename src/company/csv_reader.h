// Reads one CSV file record by record: comma, quoting as in RFC 4180, UTF-8.
//
// Also accepted: a byte order mark at the start, line ends of LF or CRLF, a last line without its end, and
// blank lines when the file has more than one column. A quoted cell may hold commas, quotes (doubled) and
// line ends, which are kept as they stand. Anything else is refused: invalid UTF-8, a NUL, a quote inside an
// unquoted cell, text after a closing quote, a quoted cell without an end, a carriage return on its own.
#pragma once

#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace brimley::company {

// A file cannot be loaded. what() is the whole text for the user: "FILE:LINE: what is wrong".
class CsvError : public std::runtime_error {
  public:
    CsvError(const std::string& file, int line, const std::string& reason);
};

struct CsvCell {
    std::string text;
    bool quoted = false;  // the empty text (""), not null (nothing)
};

class CsvReader {
  public:
    // `path` is opened as it stands and named so in errors. Throws std::system_error when it cannot be
    // opened.
    explicit CsvReader(std::string path);

    // Reads the next record; false at the end of the file. Throws CsvError with the line where the record
    // starts, and std::system_error when reading fails.
    [[nodiscard]] bool next(std::vector<CsvCell>& record);

    // Where the record last read starts, from 1.
    [[nodiscard]] int line() const { return record_line_; }
    [[nodiscard]] const std::string& path() const { return path_; }
    [[noreturn]] void fail(const std::string& reason) const;

  private:
    void skip_byte_order_mark();
    int take();                // the next byte, or -1; counts lines
    [[nodiscard]] int peek();  // the byte that take() would give
    // Both read one cell up to, and not including, what ends it.
    void read_quoted(CsvCell& cell);
    void read_plain(CsvCell& cell);
    // Takes the comma or the line end after a cell; true for a comma.
    bool take_separator();
    [[nodiscard]] bool read_cells(std::vector<CsvCell>& record);

    std::string path_;
    std::ifstream in_;
    int line_ = 1;
    int record_line_ = 0;
    std::size_t columns_ = 0;  // of the first record
};

// Whether the text is well-formed UTF-8 without NUL: no overlong forms, no surrogates, nothing above
// U+10FFFF.
[[nodiscard]] bool is_valid_utf8(std::string_view text);

}  // namespace brimley::company
