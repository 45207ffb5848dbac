// A bookkeeper's sessions: each on a fresh copy of the sample company, with what it prints and the books
// behind it. With BRIMLEY_TEST_SERVER the company is a database of that server, and the session is played on
// a file beside it: what is exported of both must be equal, byte by byte.
//
//   NAME.session       a console script: acts and checks
//   NAME.tables/       CSV files that are imported first, if there is such a folder
//   NAME.expected      what is printed, to the letter; with UPDATE=1 in the environment it is written anew
//
// A session that leaves the books in disagreement on purpose says so in a line "# check: FINDING" for each
// finding. One that has another desk hold rows, which on a file keeps everything from being written, names
// the tables that are therefore not the same in lines "# not as on a file: TABLE".
//
// The sessions are those beside this file, or those in the folder that BRIMLEY_SESSIONS names.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

#include "company/check.h"
#include "company/create.h"
#include "company/export.h"
#include "company/import.h"
#include "company/login_name.h"
#include "company/transaction.h"
#include "sessions/session_player.h"
#include "support/company_copy.h"

namespace brimley::testing {
namespace {

namespace fs = std::filesystem;

fs::path sessions_folder() {
    const char* const chosen = std::getenv("BRIMLEY_SESSIONS");
    return chosen != nullptr ? chosen : BRIMLEY_SOURCE_DIR "/tests/sessions";
}

std::vector<std::string> session_names() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(sessions_folder()))
        if (entry.path().extension() == ".session") names.push_back(entry.path().stem());
    std::sort(names.begin(), names.end());
    return names;
}

std::string text_of(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

// What stands behind the beginning in each line that has it.
std::vector<std::string> lines_with(const fs::path& path, const std::string& beginning) {
    std::ifstream file(path);
    std::vector<std::string> found;
    for (std::string line; std::getline(file, line);)
        if (line.starts_with(beginning)) found.push_back(line.substr(beginning.size()));
    return found;
}

// As `brimley-company create --sample` makes it, once for all sessions.
CompanyOriginal& sessions_company() {
    static CompanyOriginal original([](const std::string& company) {
        company::create_company_file(company, company::SampleCompany{company::login_name()});
    });
    return original;
}

void import_tables(const std::string& company, const fs::path& folder) {
    const store::OpenCompany open = store::open_company(company, kernel::company_tables());
    company::Transaction transaction(open);
    company::import_folder(*open.database, folder, {true});
    transaction.commit();
}

std::vector<std::string> findings_in(const std::string& company) {
    const store::OpenCompany open = store::open_company(company, kernel::company_tables());
    const company::ReadingMoment moment(open);
    return company::check_company(*open.database);
}

// Each file of an export with its bytes.
std::map<std::string, std::string> exported(const std::string& company) {
    const store::OpenCompany open = store::open_company(company, kernel::company_tables());
    const TemporaryFolder folder;
    const company::ReadingMoment moment(open);
    company::export_tables(*open.database, folder.path());
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::directory_iterator(folder.path()))
        files[entry.path().stem()] = text_of(entry.path());
    return files;
}

class Sessions : public ::testing::TestWithParam<std::string> {
  protected:
    // Places are told by the script's name alone.
    void SetUp() override { fs::current_path(sessions_folder()); }

    [[nodiscard]] static std::string file(const std::string& extension) { return GetParam() + extension; }

    // Prints what the host prints, the company's folder as WORK.
    static std::string play(const ClosedCopy& company, console::Status& status) {
        if (fs::is_directory(file(".tables"))) import_tables(company.path(), file(".tables"));
        opening::HostOptions options;
        options.user = "anna";
        options.path = "/brimley";
        std::ostringstream printed;
        status = play_session(company.path(), file(".session"), options, printed);
        std::string text = printed.str();
        const std::string folder = company.folder().path();
        for (std::size_t at = 0; (at = text.find(folder, at)) != std::string::npos;)
            text.replace(at, folder.size(), "WORK");
        return text;
    }
    static void expect_printed(const std::string& printed) {
        const char* const update = std::getenv("UPDATE");
        if (update != nullptr && std::string(update) == "1") {
            std::ofstream(file(".expected"), std::ios::binary) << printed;
        } else {
            EXPECT_EQ(printed, text_of(file(".expected")));
        }
    }
    // The dialogue is compared already; this is what lies behind it.
    static void expect_same_as_on_file(const std::string& company_on_server) {
        const ClosedCopy on_file(sessions_company(), CompanyPlace::file);
        console::Status status = console::kGood;
        static_cast<void>(play(on_file, status));
        const auto files = exported(on_file.path());
        const auto tables = exported(company_on_server);
        ASSERT_EQ(files.size(), tables.size());
        std::vector<std::string> differing;
        for (const auto& [table, text] : files)
            if (!tables.contains(table) || tables.at(table) != text) differing.push_back(table);
        const auto expected = lines_with(file(".session"), "# not as on a file: ");
        EXPECT_THAT(differing, ::testing::UnorderedElementsAreArray(expected));
        for (const std::string& table : differing) {
            const bool may_differ = std::find(expected.begin(), expected.end(), table) != expected.end();
            EXPECT_TRUE(may_differ || tables.at(table) == files.at(table))
                << table << "\non the server\n"
                << tables.at(table) << "\non a file\n"
                << files.at(table);
        }
    }
};

TEST_P(Sessions, PrintAndLeaveWhatIsExpected) {
    const ClosedCopy company(sessions_company());
    console::Status status = console::kGood;
    expect_printed(play(company, status));
    EXPECT_EQ(status, console::kGood);
    EXPECT_THAT(findings_in(company.path()),
                ::testing::UnorderedElementsAreArray(lines_with(file(".session"), "# check: ")));
    if (tests_run_on_server()) expect_same_as_on_file(company.path());
}

INSTANTIATE_TEST_SUITE_P(, Sessions, ::testing::ValuesIn(session_names()),
                         [](const auto& session) { return session.param; });

}  // namespace
}  // namespace brimley::testing
