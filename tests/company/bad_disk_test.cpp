// The programs on a disk that is full and on a company that may not be written: one sentence, and nothing
// lost. A limit on the size of files stands for the full disk.
#include <gmock/gmock.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "company/program_run.h"

namespace brimley {
namespace {

using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using testing::Outcome;
using testing::run_program;
using testing::text_of_file;
using testing::write_file;

// In the shell's blocks of 512 bytes: less than any of these changes writes, more than opening a company
// does.
constexpr const char* kFullDisk = "ulimit -f 80 &&";
// Room for the log of a small change, but not for the company's file itself.
constexpr const char* kNearlyFullDisk = "ulimit -f 400 &&";
constexpr const char* kDiskIsFull =
    "brimley-company: the company file cannot be written: the disk is full or cannot be written\n";

class BadDisk : public ::testing::Test {
  protected:
    Outcome company(const std::string& arguments, const std::string& before = {}) {
        return run_program(folder_, {.arguments = arguments, .before = before});
    }
    Outcome console(const std::string& script, const std::string& before = {}) {
        write_file(folder_.file("acts"), script);
        return run_program(
            folder_,
            {.arguments = "a.company acts --user anna", .program = "brimley-console", .before = before});
    }
    void make_sample() { ASSERT_EQ(company("create --sample a.company").status, 0); }
    // Everything in the company, as one text.
    std::string contents() {
        EXPECT_EQ(company("export a.company now").status, 0);
        std::string all;
        std::vector<std::filesystem::path> files;
        for (const auto& entry : std::filesystem::directory_iterator(folder_.file("now")))
            files.push_back(entry.path());
        std::sort(files.begin(), files.end());
        for (const auto& file : files)
            all += file.filename().string() + "\n" + text_of_file(file.string());
        std::filesystem::remove_all(folder_.file("now"));
        return all;
    }
    void expect_kept(const std::string& before) {
        EXPECT_TRUE(contents() == before);
        EXPECT_EQ(company("check a.company").output, "books agree\n");
    }

    testing::TemporaryFolder folder_;
};

TEST_F(BadDisk, NewCompanyOnAFullDiskIsToldAndLeavesNoFile) {
    const Outcome outcome = company("create --sample a.company", kFullDisk);
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.errors,
              "brimley-company: a.company cannot be written: the disk is full or cannot be written\n");
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path()))
        EXPECT_THAT(entry.path().filename().string(), ::testing::AnyOf("out", "err"));
}

TEST_F(BadDisk, NewCompanyIsWholeOrNotThereHoweverSoonTheDiskIsFull) {
    int made = 0;
    constexpr int kLimits = 16;
    for (int limit = 1; limit <= kLimits; ++limit) {
        const std::string blocks = std::to_string(limit * 100);
        const Outcome outcome = company("create --sample a.company", "ulimit -f " + blocks + " &&");
        EXPECT_EQ(outcome.status == 0, std::filesystem::exists(folder_.file("a.company"))) << blocks;
        EXPECT_FALSE(std::filesystem::exists(folder_.file(".a.company.part"))) << blocks;
        if (outcome.status != 0) continue;
        ++made;
        EXPECT_FALSE(std::filesystem::exists(folder_.file("a.company-wal"))) << blocks;
        EXPECT_EQ(company("check a.company").output, "books agree\n");
        std::filesystem::remove(folder_.file("a.company"));
    }
    EXPECT_GT(made, 0);
    EXPECT_LT(made, kLimits);
}

TEST_F(BadDisk, ImportOnAFullDiskIsToldAndLoadsNothing) {
    make_sample();
    const std::string before = contents();
    std::string vendors = "vendor_no,VENDOR_NAME,owing_balance,address\n";
    for (int number = 0; number < 2000; ++number)
        vendors += "X" + std::to_string(number) + ",Somebody,0," + std::string(100, 'a') + "\n";
    write_file(folder_.file("csv/Vendor_table.csv"), vendors);
    const Outcome outcome = company("import a.company csv", kFullDisk);
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.errors, kDiskIsFull);
    expect_kept(before);
    EXPECT_EQ(company("import a.company csv").status, 0);
    EXPECT_THAT(contents(), HasSubstr("\nX1999,"));
}

TEST_F(BadDisk, YearOnAFullDiskIsToldAndNotOpened) {
    make_sample();
    const std::string before = contents();
    const Outcome outcome = company("add-year a.company 2028", kFullDisk);
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.errors, kDiskIsFull);
    expect_kept(before);
    EXPECT_EQ(company("add-year a.company 2028").status, 0);
    EXPECT_EQ(company("check a.company").output, "books agree\n");
}

TEST_F(BadDisk, YearThatFitsIntoTheLogIsKeptThoughTheFileItselfCannotBeWritten) {
    make_sample();
    EXPECT_EQ(company("add-year a.company 2028", kNearlyFullDisk).status, 0);
    EXPECT_GT(std::filesystem::file_size(folder_.file("a.company-wal")), 0U);
    EXPECT_EQ(company("check a.company", kNearlyFullDisk).output, "books agree\n");
    const Outcome again = company("add-year a.company 2028");
    EXPECT_EQ(again.errors, "brimley-company: fiscal year 2028 exists already\n");
}

TEST_F(BadDisk, ExportOnAFullDiskIsToldAndKeepsTheFilesOfBefore) {
    make_sample();
    write_file(folder_.file("csv/Balance_period_table.csv"), "of before\n");
    const Outcome outcome = company("export a.company csv --table Balance_period_table", kFullDisk);
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.errors, MatchesRegex("brimley-company: [^\n]*Balance_period_table.csv[^\n]*\n"));
    EXPECT_EQ(text_of_file(folder_.file("csv/Balance_period_table.csv")), "of before\n");
    for (const auto& entry : std::filesystem::directory_iterator(folder_.file("csv")))
        EXPECT_EQ(entry.path().filename(), "Balance_period_table.csv");
}

constexpr const char* kEnterInvoice =
    "today 2026-03-16\n"
    "call showform_APform_invoice\n"
    "press 105\n"
    "set cmbdoctype Invoice\n"
    "set cmbvendor V1001\n"
    "cell dbgrid1 0 \"purchase account\" 5000\n"
    "cell dbgrid1 0 \"gross amount\" 30.00\n"
    "press 101\n";

TEST_F(BadDisk, InvoiceOnAFullDiskIsToldAndNotSaved) {
    make_sample();
    const std::string before = contents();
    const Outcome failed = console(std::string(kEnterInvoice) +
                                       "expect message \"Add new Invoice failed\"\n"
                                       "expect nothing\n"
                                       "expect pressed 105\n"
                                       "expect txtdocno = \"** New **\"\n"
                                       "expect cell dbgrid1 0 \"gross amount\" = 30.00\n",
                                   kFullDisk);
    EXPECT_EQ(failed.status, 0);
    EXPECT_EQ(failed.errors, "");
    EXPECT_EQ(failed.output, "message: Add new Invoice failed\n5 passed, 0 failed\n");
    expect_kept(before);
    const Outcome saved = console(std::string(kEnterInvoice) + "expect txtdocno = IP-26-00001\n");
    EXPECT_EQ(saved.status, 0) << saved.output;
    EXPECT_EQ(company("check a.company").output, "books agree\n");
}

TEST_F(BadDisk, ConsoleThatCannotOpenItsCompanyOnAFullDiskSaysSo) {
    make_sample();
    const Outcome outcome = console("today 2026-03-16\n", "ulimit -f 8 &&");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.errors,
              "brimley-console: a.company cannot be written: the disk is full or cannot be written\n");
}

// --- a company that may be read but not written
//
// Reading beside a writer rests on the log beside the file, so whoever opens a company must be able to write
// both. Root may write everything; the right to do so is taken from the program then.
class ReadOnlyCompany : public BadDisk {
  protected:
    ReadOnlyCompany() {
        make_sample();
        before_ = text_of_file(folder_.file("a.company"));
    }
    ~ReadOnlyCompany() override { allow(std::filesystem::perms::owner_all); }
    void allow(std::filesystem::perms permissions) {
        std::filesystem::permissions(folder_.file("a.company"), permissions);
    }
    static std::string as_anybody() {
        return ::geteuid() == 0 ? "setpriv --bounding-set=-dac_override,-dac_read_search" : "";
    }
    void expect_refused(const std::string& arguments, const std::string& reason) {
        const Outcome outcome = company(arguments, as_anybody());
        EXPECT_EQ(outcome.status, 3) << arguments;
        EXPECT_EQ(outcome.output, "") << arguments;
        EXPECT_EQ(outcome.errors, "brimley-company: " + reason + "\n") << arguments;
    }
    void expect_untouched() {
        EXPECT_TRUE(text_of_file(folder_.file("a.company")) == before_);
        EXPECT_FALSE(std::filesystem::exists(folder_.file("csv")));
    }

  private:
    std::string before_;
};

TEST_F(ReadOnlyCompany, WriteProtectedFileIsToldByItsNameAndLeftAlone) {
    allow(std::filesystem::perms::owner_read);
    for (const char* arguments :
         {"check a.company", "export a.company csv", "add-year a.company 2028", "import a.company ."})
        expect_refused(arguments, "a.company cannot be written");
    write_file(folder_.file("acts"), "call showform_APform_invoice\n");
    const Outcome outcome = run_program(
        folder_, {.arguments = "a.company acts", .program = "brimley-console", .before = as_anybody()});
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.errors, "brimley-console: a.company cannot be written\n");
    expect_untouched();
}

TEST_F(ReadOnlyCompany, FileThatMayNotBeReadEitherIsToldWithTheReason) {
    allow(std::filesystem::perms::none);
    expect_refused("check a.company", "a.company cannot be read: Permission denied");
    allow(std::filesystem::perms::owner_all);
    expect_untouched();
}

TEST_F(ReadOnlyCompany, FolderOfFilesThatMayNotBeReadIsToldByItsName) {
    const std::string before = contents();
    const std::filesystem::path locked = folder_.file("locked");
    std::filesystem::create_directory(locked);
    std::filesystem::permissions(locked, std::filesystem::perms::none);
    expect_refused("import a.company locked", "locked: Permission denied");
    expect_refused("import a.company locked/files", "locked/files: Permission denied");
    std::filesystem::permissions(locked, std::filesystem::perms::owner_all);
    expect_kept(before);
}

TEST_F(ReadOnlyCompany, FileInAWriteProtectedFolderIsToldByItsNameAndLeftAlone) {
    const std::filesystem::path shelf = folder_.file("shelf");
    std::filesystem::create_directory(shelf);
    std::filesystem::copy_file(folder_.file("a.company"), shelf / "a.company");
    std::filesystem::permissions(shelf,
                                 std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
    for (const char* arguments : {"check shelf/a.company", "export shelf/a.company csv"})
        expect_refused(arguments, "shelf/a.company cannot be written: the disk is full or cannot be written");
    expect_refused("create shelf/b.company", "shelf/b.company cannot be made: Permission denied");
    std::filesystem::permissions(shelf, std::filesystem::perms::owner_all);
    EXPECT_TRUE(text_of_file((shelf / "a.company").string()) == text_of_file(folder_.file("a.company")));
    expect_untouched();
}

}  // namespace
}  // namespace brimley
