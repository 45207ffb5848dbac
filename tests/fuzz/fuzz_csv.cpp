// CSV files: read to their end with as many cells in every record, or refused by file and line.
#include <fmt/format.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "company/csv_reader.h"
#include "fuzz.h"

namespace brimley::testing {

namespace {

// A file in memory that has a path, so that millions of inputs cost no disk.
class FileInMemory {
  public:
    FileInMemory() : file_(::memfd_create("fuzz.csv", MFD_CLOEXEC)) {
        if (file_ < 0) throw std::system_error(errno, std::generic_category(), "memfd_create");
    }
    ~FileInMemory() { ::close(file_); }
    FileInMemory(const FileInMemory&) = delete;
    FileInMemory& operator=(const FileInMemory&) = delete;

    [[nodiscard]] std::string path() const { return fmt::format("/proc/self/fd/{}", file_); }
    void hold(std::string_view text) const {
        if (::ftruncate(file_, 0) != 0 ||
            ::pwrite(file_, text.data(), text.size(), 0) != static_cast<ssize_t>(text.size()))
            throw std::system_error(errno, std::generic_category(), "the file in memory");
    }

  private:
    int file_;
};

}  // namespace

const std::vector<std::string>& fuzz_words() {
    static const std::vector<std::string> kWords{",",    "\"",         "\"\"",         "\n",
                                                 "\r\n", "\r",         "\xEF\xBB\xBF", "\xFF",
                                                 "é",    "fkey,docno", "1,2,3",        std::string(1, '\0')};
    return kWords;
}

void fuzz_one(std::string_view input) {
    static const FileInMemory file;
    static const std::string path = file.path();
    file.hold(input);
    try {
        company::CsvReader reader(path);
        std::vector<company::CsvCell> record;
        std::size_t cells = 0;
        int line = 0;
        while (reader.next(record)) {
            if (cells != 0 && record.size() != cells) throw Finding("records of different sizes");
            if (reader.line() <= line) throw Finding("a record does not begin behind the one before");
            cells = record.size();
            line = reader.line();
            for (const company::CsvCell& cell : record) {
                if (!company::is_valid_utf8(cell.text)) throw Finding("a cell that is no text");
            }
        }
    } catch (const company::CsvError& error) {
        if (!std::string(error.what()).starts_with(path + ":"))
            throw Finding("refused without file and line");
    }
}

}  // namespace brimley::testing
