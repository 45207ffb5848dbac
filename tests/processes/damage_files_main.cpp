// damage-files: a company file with a history is damaged again and again, in a way that disks and people do,
// and each time it is asked who notices: opening, the look through the whole file, or the check of the books.
//
//   damage-files [--files N] [--seed N]
//
// Most of what nobody notices is harmless: every row is as it was. SQLite keeps no sums of its pages, so that
// a changed value inside one is seen only where the books prove it; that may be one file in a hundred.
#include <fmt/format.h>

#include <fstream>
#include <iostream>
#include <map>
#include <random>
#include <sstream>

#include "company/check.h"
#include "company/export.h"
#include "company/transaction.h"
#include "kernel/visible_text.h"
#include "saver.h"
#include "support/program_options.h"
#include "support/sample_company.h"

namespace {

using namespace brimley;
using namespace brimley::testing;

struct Options {
    int files = 40;
    std::uint64_t seed = 20261122;
};

constexpr int kActs = 60;
constexpr std::size_t kPage = 4096;
constexpr const char* kNotFound = "not found, and harmful";

std::string bytes_of(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Every row of every table, by its table.
std::map<std::string, std::string> rows_of(const store::OpenCompany& company) {
    const TemporaryFolder folder;
    const company::ReadingMoment moment(company);
    company::export_tables(*company.database, folder.path());
    std::map<std::string, std::string> rows;
    for (const store::Table& table : kernel::company_tables().tables())
        rows[table.name] = bytes_of(folder.file(table.name + ".csv"));
    return rows;
}

// The ways of damaging a file.
using Damage = void (*)(std::string& bytes, std::mt19937_64& chance);

void flip_a_bit(std::string& bytes, std::mt19937_64& chance) {
    bytes[chance() % bytes.size()] ^= static_cast<char>(1 << chance() % 8);
}
void change_some_bytes(std::string& bytes, std::mt19937_64& chance) {
    const std::size_t at = chance() % (bytes.size() - 16);
    for (std::size_t i = 0; i < 16; ++i)
        bytes[at + i] = static_cast<char>(chance());
}
void clear_a_sector(std::string& bytes, std::mt19937_64& chance) {
    constexpr std::size_t kSector = 512;
    bytes.replace(chance() % (bytes.size() / kSector) * kSector, kSector, kSector, '\0');
}
void clear_a_page(std::string& bytes, std::mt19937_64& chance) {
    bytes.replace(chance() % (bytes.size() / kPage) * kPage, kPage, kPage, '\0');
}
void copy_a_page(std::string& bytes, std::mt19937_64& chance) {
    const std::size_t pages = bytes.size() / kPage;
    bytes.replace(chance() % pages * kPage, kPage, bytes.substr(chance() % pages * kPage, kPage));
}
void cut_off(std::string& bytes, std::mt19937_64& chance) { bytes.resize(chance() % bytes.size()); }
void append(std::string& bytes, std::mt19937_64& chance) { bytes.append(1 + chance() % 10000, '\0'); }
void put_the_end_first(std::string& bytes, std::mt19937_64& chance) {
    const std::size_t at = chance() % (bytes.size() / kPage) * kPage;
    bytes = bytes.substr(0, at) + bytes.substr(at + std::min(kPage, bytes.size() - at));
}

constexpr Damage kDamages[] = {flip_a_bit,  change_some_bytes, clear_a_sector, clear_a_page,
                               copy_a_page, cut_off,           append,         put_the_end_first};

// Who notices that something is wrong with the file.
class Trial {
  public:
    Trial(const std::string& path, const std::map<std::string, std::string>& sound) : sound_(sound) {
        try {
            look(store::open_company(path, kernel::company_tables()));
        } catch (const store::Error&) {
            outcome = "not opened";
        }
    }
    std::string outcome;
    std::vector<std::string> harm;  // that nobody noticed

  private:
    void look(const store::OpenCompany& company) {
        if (!company.database->reading_only_because().empty()) {
            outcome = "opened for reading alone";
            return;
        }
        outcome = "found by reading every page";
        if (!company.database->faults_of_storage().empty()) return;
        outcome = "found in the books";
        if (!findings_of(company).empty()) return;
        outcome = kNotFound;
        for (const auto& [table, rows] : rows_of(company))
            if (rows != sound_.at(table)) note_changes(table, rows);
        if (harm.empty()) outcome = "harmless";
    }
    static company::Findings findings_of(const store::OpenCompany& company) {
        const company::ReadingMoment moment(company);
        return company::check_company(*company.database);
    }
    void note_changes(const std::string& table, const std::string& rows) {
        std::istringstream now(rows);
        std::istringstream before(sound_.at(table));
        for (std::string a, b; std::getline(before, a) && std::getline(now, b);)
            if (a != b) harm.push_back(fmt::format("{}: {}\n     now {}", table, a, b));
    }

    const std::map<std::string, std::string>& sound_;
};

int run(const Options& options) {
    std::cout << "seed " << options.seed << std::endl;
    std::mt19937_64 chance(options.seed);
    const ClosedCopy company(sample_original());
    std::map<std::string, std::string> sound;
    {
        const auto open = company.open();
        Saver saver(open, "anna", options.seed, [](const std::string&) {});
        for (int i = 0; i < kActs; ++i)
            saver.act();
        sound = rows_of(open);
    }
    const std::string bytes = bytes_of(company.path());
    std::map<std::string, int> outcomes;
    for (int i = 0; i < options.files; ++i) {
        const TemporaryFolder folder;
        std::string damaged = bytes;
        kDamages[static_cast<std::size_t>(i) % std::size(kDamages)](damaged, chance);
        std::ofstream(folder.file("c"), std::ios::binary) << damaged;
        const Trial trial(folder.file("c"), sound);
        ++outcomes[trial.outcome];
        for (const std::string& change : trial.harm)
            std::cout << "file " << i << ", " << kernel::visible_text(change) << '\n';
    }
    for (const auto& [outcome, count] : outcomes)
        std::cout << fmt::format("{:5} {}\n", count, outcome);
    return outcomes[kNotFound] * 100 <= options.files ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    ProgramOptions program("damage-files", "Damages company files and asks who notices");
    program.option("--files", options.files, "how many");
    program.option("--seed", options.seed, "which damage");
    return program.run(argc, argv, [&] { return run(options); });
}
