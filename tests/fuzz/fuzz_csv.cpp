// CSV files: read to their end with as many cells in every record, or refused by file and line.
#include <fstream>

#include "company/csv_reader.h"
#include "fuzz.h"
#include "support/temporary_folder.h"

namespace brimley::testing {

const std::vector<std::string>& fuzz_words() {
    static const std::vector<std::string> kWords{",",    "\"",         "\"\"",         "\n",
                                                 "\r\n", "\r",         "\xEF\xBB\xBF", "\xFF",
                                                 "é",    "fkey,docno", "1,2,3",        std::string(1, '\0')};
    return kWords;
}

void fuzz_one(std::string_view input) {
    static const TemporaryFolder folder;
    const std::string path = folder.file("fuzz.csv");
    std::ofstream(path, std::ios::binary) << input;
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
