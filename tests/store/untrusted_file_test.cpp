// Company files that are not what they should be: laid out in another way, damaged, without their log, in a
// place where several programs cannot share them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "kernel/store/sqlite/sqlite_place.h"
#include "store/other_program.h"
#include "store/small_company.h"
#include "support/expect_error.h"

namespace brimley {
namespace {

using store::ErrorKind;
using store::RecordsetKind;
using testing::error_of;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using testing::OtherProgram;
using testing::small_catalog;

constexpr std::int64_t kPage = 4096;

class UntrustedFile : public ::testing::Test {
  protected:
    UntrustedFile() {
        auto company = open_new();
        add(company, "first");
    }

    store::OpenCompany open_new() { return store::create_company(path_, small_catalog()); }
    [[nodiscard]] store::OpenCompany open() const { return store::open_company(path_, small_catalog()); }
    static void add(const store::OpenCompany& company, const std::string& docno) {
        auto rows = company.database->OpenRecordset("SELECT * FROM Header_table", RecordsetKind::dynaset);
        rows.AddNew();
        rows.set("docno", docno);
        rows.Update();
    }
    static std::int64_t headers(const store::OpenCompany& company) {
        return company.database->OpenRecordset("SELECT * FROM Header_table", RecordsetKind::snapshot)
            .RecordCount();
    }
    void overwrite(std::int64_t at, const std::string& bytes) const {
        std::fstream file(path_, std::ios::in | std::ios::out | std::ios::binary);
        file.seekp(at);
        file << bytes;
    }
    std::string refusal() const {
        const auto error = error_of([&] { (void)open(); });
        return error && error->kind() == ErrorKind::not_a_company ? error->what() : "opened";
    }
    void expect_not_laid_out(const std::string& sql, const std::string& difference) {
        const testing::TemporaryFolder folder;
        const std::string sound = path_;
        path_ = folder.file("c");
        std::filesystem::copy_file(sound, path_);
        OtherProgram(path_).run(sql);
        EXPECT_EQ(refusal(), path_ + " is not laid out as a company of this version: " + difference);
        path_ = sound;
    }
    // Can be looked at, and not be changed.
    void expect_reading_only(const std::string& why) const {
        const store::OpenCompany company = open();
        const std::string told = path_ + " is damaged, and can only be read: " + why;
        EXPECT_EQ(company.database->reading_only_because(), told);
        EXPECT_EQ(headers(company), 1);
        for (const bool within_transaction : {false, true}) {
            if (within_transaction) company.workspace->BeginTrans();
            const auto error = error_of([&] { add(company, "second"); });
            ASSERT_TRUE(error);
            EXPECT_EQ(error->kind(), ErrorKind::io);
            EXPECT_EQ(error->what(), told);
        }
        company.workspace->Rollback();
        const auto error =
            error_of([&] { company.database->Execute("DELETE * FROM Header_table WHERE docno = 'x'"); });
        ASSERT_TRUE(error);
        EXPECT_EQ(error->what(), told);
        EXPECT_THAT(company.database->faults_of_storage(), Not(IsEmpty()));
    }

    testing::TemporaryFolder folder_;
    std::string path_ = folder_.file("c");
};

TEST_F(UntrustedFile, WhatDoesNotBelongToACompanyIsRefusedByItsName) {
    expect_not_laid_out(
        "CREATE TRIGGER pays_mallory AFTER INSERT ON Header_table BEGIN UPDATE Header_table "
        "SET amount = 1000000; END",
        "trigger pays_mallory does not belong to it");
    expect_not_laid_out("CREATE VIEW all_docs AS SELECT docno FROM Header_table",
                        "view all_docs does not belong to it");
    expect_not_laid_out("CREATE TABLE notes (text)", "table notes does not belong to it");
    expect_not_laid_out("CREATE INDEX mine ON Header_table (amount)", "index mine does not belong to it");
    expect_not_laid_out("ANALYZE", "table sqlite_stat1 does not belong to it");
    expect_not_laid_out("ALTER TABLE Header_table ADD COLUMN extra TEXT",
                        "Header_table.extra does not belong to it");
    expect_not_laid_out("CREATE VIRTUAL TABLE words USING fts4(text)", "table words does not belong to it");
}

TEST_F(UntrustedFile, WhatACompanyLacksIsNamed) {
    expect_not_laid_out("DROP INDEX Header_table_index_2", "index Header_table_index_2 is missing");
    expect_not_laid_out("DROP TABLE Word_table", "table Word_table is missing");
    expect_not_laid_out("ALTER TABLE Line_table DROP COLUMN created", "Line_table.created is missing");
    expect_not_laid_out(
        "DROP INDEX Counter_table_index_1; CREATE INDEX Counter_table_index_1 ON "
        "Counter_table (company, doctype)",
        "index Counter_table_index_1 is not as it should be");
}

TEST_F(UntrustedFile, TablesThatTakeOtherValuesAreRefused) {
    const std::string fields =
        "(row_id INTEGER PRIMARY KEY, fkey TEXT, docno TEXT, pay_item TEXT, lineno INTEGER, due_date REAL, "
        "created REAL, Currency TEXT, hold INTEGER NOT NULL DEFAULT 0 CHECK (hold IN (0, 1)), open_amount "
        "REAL)";
    const auto made_anew = [](const std::string& definition) {
        return "DROP TABLE Line_table; CREATE TABLE Line_table " + definition +
               "; CREATE INDEX Line_table_index_1 ON Line_table (fkey, pay_item)";
    };
    const std::string told = "table Line_table is not as it should be";
    expect_not_laid_out(made_anew(fields), told);
    std::string without_case = fields;
    without_case.replace(without_case.find("fkey TEXT"), 9, "fkey TEXT COLLATE NOCASE");
    expect_not_laid_out(made_anew(without_case + " STRICT"), told);
}

TEST_F(UntrustedFile, TextsInAnotherEncodingAreRefused) {
    path_ = folder_.file("utf16");
    {
        OtherProgram other(path_);
        other.run(
            "PRAGMA encoding = 'UTF-16le'; PRAGMA application_id = 1114784080; PRAGMA user_version = 1; "
            "CREATE TABLE Header_table (docno TEXT)");
    }
    EXPECT_EQ(refusal(), path_ + " is not laid out as a company: its texts are not UTF-8");
}

TEST_F(UntrustedFile, FileWithSeveralNamesIsRefusedUntilItHasOne) {
    const std::string other = folder_.file("other");
    std::filesystem::create_hard_link(path_, other);
    EXPECT_THAT(refusal(), HasSubstr(path_ + " has 2 names (hard links)"));
    std::filesystem::remove(other);
    std::filesystem::create_symlink(path_, other);
    EXPECT_EQ(headers(store::open_company(other, small_catalog())), 1);
}

TEST(NetworkFileSystem, IsKnownByItsKindOrByTheProgramThatServesIt) {
    constexpr long kNfs = 0x6969;
    constexpr long kCifs = 0xFF534D42;
    constexpr long kExt4 = 0xEF53;
    constexpr long kFuse = 0x65735546;
    EXPECT_EQ(store::network_file_system(kNfs, ""), "NFS");
    EXPECT_EQ(store::network_file_system(kCifs, ""), "CIFS");
    EXPECT_EQ(store::network_file_system(kFuse, "fuse.sshfs"), "fuse.sshfs");
    EXPECT_EQ(store::network_file_system(kFuse, "fuse.ntfs"), "");
    EXPECT_EQ(store::network_file_system(kExt4, "fuse.sshfs"), "");
}

TEST_F(UntrustedFile, CopyOfAFileInUseWithoutItsLogIsKnownForWhatItIs) {
    const std::string original = path_;
    {
        const auto company = open();
        add(company, "second");
        path_ = folder_.file("copy");
        std::filesystem::copy_file(original, path_);
        expect_reading_only(
            "its log is missing, and what was saved last with it: it was copied while it was in use");
        // Looking at it does not make it a sound one.
        expect_reading_only(
            "its log is missing, and what was saved last with it: it was copied while it was in use");
    }
    path_ = original;
    EXPECT_EQ(open().database->reading_only_because(), "");
    EXPECT_EQ(headers(open()), 2);
}

TEST_F(UntrustedFile, CopyOfAFileThatNobodyWritesToIsWhole) {
    const auto company = open();
    add(company, "second");
    company.workspace->tidy();
    const std::string copy = folder_.file("copy");
    std::filesystem::copy_file(path_, copy);
    const auto copied = store::open_company(copy, small_catalog());
    EXPECT_EQ(copied.database->reading_only_because(), "");
    EXPECT_EQ(headers(copied), 2);
    // And the next save is told from it again.
    add(company, "third");
    const std::string later = folder_.file("later");
    std::filesystem::copy_file(path_, later);
    EXPECT_THAT(store::open_company(later, small_catalog()).database->reading_only_because(),
                HasSubstr("its log is missing"));
}

TEST_F(UntrustedFile, CopyWithItsLogHasEverything) {
    const auto company = open();
    add(company, "second");
    const std::string copy = folder_.file("copy");
    for (const char* const suffix : {"", "-wal"})
        std::filesystem::copy_file(path_ + suffix, copy + suffix);
    const auto copied = store::open_company(copy, small_catalog());
    EXPECT_EQ(copied.database->reading_only_because(), "");
    EXPECT_EQ(headers(copied), 2);
}

TEST_F(UntrustedFile, TidyingWithinATransactionOrBesideAWriterChangesNothing) {
    const auto company = open();
    const auto other = open();
    add(company, "second");
    company.workspace->BeginTrans();
    add(company, "third");
    company.workspace->tidy();
    other.workspace->tidy();
    company.workspace->CommitTrans();
    EXPECT_EQ(headers(other), 3);
    const std::string copy = folder_.file("copy");
    std::filesystem::copy_file(path_, copy);
    EXPECT_THAT(store::open_company(copy, small_catalog()).database->reading_only_because(),
                HasSubstr("its log is missing"));
}

TEST_F(UntrustedFile, FileThatWasCutOffIsOnlyRead) {
    std::filesystem::resize_file(path_, std::filesystem::file_size(path_) - kPage);
    const std::int64_t pages = static_cast<std::int64_t>(std::filesystem::file_size(path_)) / kPage;
    expect_reading_only("it says that it has " + std::to_string(pages + 1) + " pages and has " +
                        std::to_string(pages));
}

TEST_F(UntrustedFile, FileWithHalfAPageIsOnlyRead) {
    std::filesystem::resize_file(path_, std::filesystem::file_size(path_) + kPage / 2);
    expect_reading_only("its last page is not whole");
}

TEST_F(UntrustedFile, TableThatBeginsWithAnotherPageIsOnlyRead) {
    const std::string page =
        OtherProgram(path_).text("SELECT rootpage FROM sqlite_schema WHERE name = 'Word_table'");
    overwrite((std::stoll(page) - 1) * kPage, std::string(8, '\x07'));
    expect_reading_only("page " + page + " is not what it should be");
}

TEST_F(UntrustedFile, DamageThatOpeningDoesNotSeeIsFoundByReadingEverything) {
    EXPECT_THAT(open().database->faults_of_storage(), IsEmpty());
    const std::string page =
        OtherProgram(path_).text("SELECT rootpage FROM sqlite_schema WHERE name = 'Header_table_index_2'");
    overwrite(std::stoll(page) * kPage - 8, "damaged!");
    const auto company = open();
    EXPECT_EQ(company.database->reading_only_because(), "");
    EXPECT_THAT(company.database->faults_of_storage(), Not(IsEmpty()));
}

TEST_F(UntrustedFile, CopyIsMadeBesideAWriterAndHoldsWhatIsSaved) {
    const auto company = open();
    const auto writer = open();
    add(writer, "second");
    writer.workspace->BeginTrans();
    add(writer, "not yet");
    const std::string copy = folder_.file("copy");
    EXPECT_TRUE(company.database->copy_file(copy));
    writer.workspace->CommitTrans();
    const auto copied = store::open_company(copy, small_catalog());
    EXPECT_EQ(copied.database->reading_only_because(), "");
    EXPECT_EQ(headers(copied), 2);
    const auto error = error_of([&] { (void)company.database->copy_file(copy); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind(), ErrorKind::state);
}

}  // namespace
}  // namespace brimley
