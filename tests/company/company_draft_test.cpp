// A company file on its way into its place: what is in the way, and what a program that was killed leaves.
#include "company/company_draft.h"

#include <fcntl.h>
#include <limits.h>
#include <sys/file.h>
#include <unistd.h>

#include <filesystem>

#include "company/company_fixture.h"
#include "company/program_run.h"

namespace brimley {
namespace {

using company::CompanyDraft;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::text_of_file;
using testing::write_file;

class Draft : public ::testing::Test {
  protected:
    [[nodiscard]] std::string place() const { return folder_.file("books.company"); }
    [[nodiscard]] std::string hidden() const { return folder_.file(".books.company.part"); }
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(folder_.path()))
            found.push_back(entry.path().filename());
        return found;
    }
    // What a killed program leaves: the folder, nobody's lock, and half a company.
    void leave_half_a_company() {
        for (const char* name : {"lock", "company", "company-wal", "company-shm", "company-journal"})
            write_file(hidden() + "/" + name, "half");
    }
    static void expect_refused(const std::function<void()>& act, store::ErrorKind kind,
                               const std::string& message) {
        try {
            act();
            ADD_FAILURE() << "not refused";
        } catch (const store::Error& error) {
            EXPECT_EQ(error.kind(), kind);
            EXPECT_EQ(error.what(), message);
        }
    }

    testing::TemporaryFolder folder_;
};

TEST_F(Draft, PublishedFileIsAllThatIsThere) {
    {
        CompanyDraft draft(place());
        write_file(draft.file(), "whole");
        EXPECT_FALSE(std::filesystem::exists(place()));
        draft.publish();
    }
    EXPECT_THAT(names(), ElementsAre("books.company"));
    EXPECT_EQ(text_of_file(place()), "whole");
}

TEST_F(Draft, WhatIsNotPublishedGoes) {
    {
        CompanyDraft draft(place());
        for (const char* suffix : {"", "-wal", "-shm", "-journal"})
            write_file(draft.file() + suffix, "half");
    }
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(Draft, FileThatCameMeanwhileIsNotReplaced) {
    {
        CompanyDraft draft(place());
        write_file(draft.file(), "late");
        write_file(place(), "first");
        expect_refused([&] { draft.publish(); }, store::ErrorKind::state, place() + " already exists");
    }
    EXPECT_EQ(text_of_file(place()), "first");
    EXPECT_THAT(names(), ElementsAre("books.company"));
}

TEST_F(Draft, LinkThatLeadsNowhereIsInTheWayToo) {
    std::filesystem::create_symlink(folder_.file("elsewhere"), place());
    expect_refused([&] { CompanyDraft draft(place()); }, store::ErrorKind::state,
                   place() + " already exists");
    EXPECT_THAT(names(), ElementsAre("books.company"));
}

TEST_F(Draft, FileWhoseLogIsNotInItIsNotPublished) {
    CompanyDraft draft(place());
    write_file(draft.file(), "half");
    write_file(draft.file() + "-wal", "the other half");
    expect_refused([&] { draft.publish(); }, store::ErrorKind::io,
                   place() + " cannot be written: the disk is full or cannot be written");
    EXPECT_FALSE(std::filesystem::exists(place()));
}

TEST_F(Draft, LeftOversOfAKilledProgramAreTakenOverAndRemoved) {
    leave_half_a_company();
    {
        const CompanyDraft draft(place());
        EXPECT_FALSE(std::filesystem::exists(draft.file()));
        EXPECT_FALSE(std::filesystem::exists(draft.file() + "-wal"));
    }
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(Draft, CompanyThatAnotherProgramIsMakingIsRefusedAndLeftToIt) {
    leave_half_a_company();
    const int other = ::open((hidden() + "/lock").c_str(), O_RDWR);
    ASSERT_EQ(::flock(other, LOCK_EX), 0);
    expect_refused([&] { CompanyDraft draft(place()); }, store::ErrorKind::state,
                   place() + " is being made by another program");
    EXPECT_EQ(text_of_file(hidden() + "/company"), "half");
    ::close(other);
    company::create_company_file(place(), company::EmptyCompany{});
    EXPECT_THAT(names(), ElementsAre("books.company"));
}

TEST_F(Draft, FolderThatCannotBeLockedIsNotLeftBehind) {
    // The folder can be made, and nothing in it: its path has room for no more letters.
    std::string deep = folder_.path().string();
    const std::string name = "/c";
    const std::size_t longest = PATH_MAX - 1 - std::string("/.c.part").size() - 2;
    while (longest - deep.size() > 201)
        deep += "/" + std::string(199, 'd');
    deep += "/" + std::string(longest - deep.size() - 1, 'd');
    std::filesystem::create_directories(deep);
    EXPECT_THROW(company::create_company_file(deep + name, company::EmptyCompany{}), store::Error);
    EXPECT_TRUE(std::filesystem::is_empty(deep));
}

TEST_F(Draft, LogOfACompanyThatIsGoneIsNotReadIntoTheNewOne) {
    for (const char* suffix : {"-wal", "-shm", "-journal"})
        write_file(place() + suffix, "of another company");
    company::create_company_file(place(), company::EmptyCompany{});
    EXPECT_THAT(names(), ElementsAre("books.company"));
}

TEST_F(Draft, LogBesideACompanyThatStandsIsLeftAlone) {
    write_file(place(), "a company");
    write_file(place() + "-wal", "its log");
    expect_refused([&] { CompanyDraft draft(place()); }, store::ErrorKind::state,
                   place() + " already exists");
    EXPECT_EQ(text_of_file(place() + "-wal"), "its log");
}

TEST_F(Draft, PathThatIsNoFilesIsRefusedInTheStoresWords) {
    const auto create = [](const std::string& path) {
        return [path] { company::create_company_file(path, company::EmptyCompany{}); };
    };
    expect_refused(create(""), store::ErrorKind::io, "\"\" is no file name");
    expect_refused(create(folder_.file("new/")), store::ErrorKind::io,
                   folder_.file("new/") + " cannot be made: Is a directory");
    expect_refused(create("postgresql://["), store::ErrorKind::not_a_company,
                   "the URI of the company cannot be read");
    EXPECT_THAT(names(), IsEmpty());
}

// Wherever the program is killed; what it leaves is in nobody's way.
TEST_F(Draft, HalfMadeCompanyIsNeverSeenUnderItsName) {
    const auto company = [&](const std::string& arguments, const std::string& before = {}) {
        return testing::run_program(folder_, {.arguments = arguments, .before = before});
    };
    for (int wait_ms = 3; wait_ms <= 75; wait_ms += 8) {
        const std::string wait_seconds = std::to_string(wait_ms / 1000.0);
        (void)company("create --sample books.company", "timeout --foreground -s KILL " + wait_seconds);
        if (!std::filesystem::exists(place())) {
            EXPECT_EQ(company("create --sample books.company").errors, "") << wait_ms;
            EXPECT_FALSE(std::filesystem::exists(hidden())) << wait_ms;
        }
        EXPECT_EQ(company("check books.company").output, "books agree\n") << wait_ms;
        std::filesystem::remove(place());
    }
}

}  // namespace
}  // namespace brimley
