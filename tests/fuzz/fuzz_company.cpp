// Company files: opened, looked through, checked and read, or refused as the store refuses; no file makes it
// crash, hang or say anything else.
//
// An input that begins as a file does is the whole file. Any other is a list of changes of a sound one, so
// that a few bytes are enough to reach every page of it: records of a place (4 bytes), a count (1 byte), and
// so many bytes to be put there.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

#include "company/check.h"
#include "fuzz.h"
#include "support/company_copy.h"
#include "support/sample_company.h"

namespace brimley::testing {

namespace {

constexpr std::size_t kPlaceBytes = 4;

std::string bytes_of(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

const std::string& sound_file() {
    static const std::string bytes = [] {
        const ClosedCopy company(sample_original(), CompanyPlace::file);
        return bytes_of(company.path());
    }();
    return bytes;
}

// The last record may be short.
std::string changed_file(std::string_view changes) {
    std::string file = sound_file();
    while (changes.size() > kPlaceBytes + 1) {
        std::size_t place = 0;
        for (std::size_t i = 0; i < kPlaceBytes; ++i)
            place = place << 8 | static_cast<unsigned char>(changes[i]);
        const std::size_t count = static_cast<unsigned char>(changes[kPlaceBytes]);
        changes.remove_prefix(kPlaceBytes + 1);
        const std::string_view bytes = changes.substr(0, count);
        changes.remove_prefix(bytes.size());
        place %= file.size();
        file.replace(place, std::min(bytes.size(), file.size() - place), bytes);
    }
    return file;
}

void read_every_table(store::Database& database) {
    for (const store::Table& table : database.catalog().tables()) {
        auto rows = database.OpenRecordset("SELECT * FROM " + table.name, store::RecordsetKind::snapshot);
        for (; !rows.at_eof(); rows.MoveNext())
            for (int column = 0; column < rows.column_count(); ++column)
                static_cast<void>(rows.column(column).text());
    }
}

// What is damaged may be refused at any step, and the next is tried all the same.
template <class Step>
void may_refuse(Step&& step) {
    try {
        std::forward<Step>(step)();
    } catch (const store::Error& error) {
        if (std::string_view(error.what()).empty()) throw Finding("refused without a word");
    }
}

}  // namespace

const std::vector<std::string>& fuzz_words() {
    // Places in the head and beside it, and what stands there.
    using namespace std::string_literals;
    static const std::vector<std::string> kWords{
        "\0\0\0\x10\x02"s, "\0\0\0\x12\x02"s, "\0\0\0\x1c\x04"s, "\0\0\0\x28\x04"s,  "\0\0\0\x3c\x04"s,
        "\0\0\0\x44\x04"s, "\0\0\0\x64\x08"s, "CREATE TABLE "s,  "CREATE TRIGGER "s, "\x0d"s,
        "\x05"s,           "\x02"s,           "\x0a"s,           "\xff\xff\xff"s,    "\x81\x81\x81\x01"s};
    return kWords;
}

void fuzz_one(std::string_view input) {
    static const TemporaryFolder folder;
    const std::string path = folder.file("fuzz.brimley");
    for (const char* const beside : {"", "-wal", "-shm", "-journal"})
        std::filesystem::remove(path + beside);
    std::ofstream(path, std::ios::binary)
        << (input.starts_with("SQLite format 3") ? std::string(input) : changed_file(input));
    may_refuse([&] {
        const auto company = store::open_company(path, kernel::company_tables());
        may_refuse([&] { static_cast<void>(company.database->faults_of_storage()); });
        may_refuse([&] { read_every_table(*company.database); });
        may_refuse([&] { static_cast<void>(company::check_books(*company.database)); });
    });
    for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
        if (!entry.path().filename().string().starts_with("fuzz.brimley"))
            throw Finding("a file beside it: " + entry.path().filename().string());
}

}  // namespace brimley::testing
