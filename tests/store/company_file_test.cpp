// Company files: made, opened, refused.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>

#include "store/other_program.h"
#include "store/small_company.h"
#include "support/expect_error.h"

namespace brimley {
namespace {

using store::ErrorKind;
using testing::error_of;
using testing::expect_error;
using testing::OtherProgram;
using testing::small_catalog;
using testing::SmallCompany;

class CompanyFile : public ::testing::Test {
  protected:
    void write(const std::string& name, const std::string& bytes) {
        std::ofstream(folder_.file(name)) << bytes;
    }
    static void open(const std::string& path) { (void)store::open_company(path, small_catalog()); }
    void expect_no_company(const std::string& path, const std::string& message_end) {
        const auto error = error_of([&] { open(path); });
        ASSERT_TRUE(error);
        EXPECT_EQ(error->kind(), ErrorKind::not_a_company) << error->what();
        EXPECT_EQ(error->what(), path + " " + message_end);
    }
    std::vector<std::string> files() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder_.path()))
            names.push_back(entry.path().filename().string());
        return names;
    }

    testing::TemporaryFolder folder_;
};

TEST_F(CompanyFile, IsReadableByItsOwnerAlone) {
    const mode_t before = ::umask(0);
    const std::string path = folder_.file("c");
    {
        auto company = store::create_company(path, small_catalog());
        company.database->Execute("DELETE * FROM Header_table");
        for (const char* const suffix : {"", "-wal", "-shm"}) {
            struct stat status {};
            ASSERT_EQ(::stat((path + suffix).c_str(), &status), 0) << suffix;
            EXPECT_EQ(status.st_mode & 0777, 0600) << suffix;
        }
    }
    ::umask(before);
}

TEST_F(CompanyFile, IsDurableByItsSettings) {
    SmallCompany company;
    OtherProgram other(company.path());
    EXPECT_EQ(other.text("PRAGMA journal_mode"), "wal");
    EXPECT_EQ(other.text("PRAGMA application_id"), std::to_string(0x42724150));
    EXPECT_EQ(other.text("PRAGMA user_version"), "1");
    EXPECT_EQ(other.text("PRAGMA integrity_check"), "ok");
}

TEST_F(CompanyFile, HoldsEveryTableAndIndexOfTheCatalog) {
    SmallCompany company;
    OtherProgram other(company.path());
    EXPECT_EQ(
        other.text(
            "SELECT count(*) FROM pragma_table_list WHERE schema = 'main' AND type = 'table' AND strict AND "
            "name LIKE '%_table'"),
        "4");
    EXPECT_EQ(other.text("SELECT group_concat(type) FROM pragma_table_info('Header_table')"),
              "INTEGER,TEXT,TEXT,TEXT,TEXT,REAL,INTEGER,INTEGER,REAL");
    EXPECT_EQ(
        other.text("SELECT count(*) FROM sqlite_schema WHERE type = 'index' AND tbl_name = 'Header_table'"),
        "2");
    EXPECT_EQ(other.text("SELECT group_concat(name) FROM pragma_index_info('Header_table_index_2')"),
              "docno,company");
    EXPECT_EQ(other.text("SELECT \"unique\" FROM pragma_index_list('Counter_table')"), "1");
}

TEST_F(CompanyFile, DatesAreWhatSqliteReadsAndSubtracts) {
    SmallCompany company;
    company.add("Line_table", {{"due_date", *store::DateTime::from_iso("2026-01-15")},
                               {"created", *store::DateTime::from_iso("2026-01-31 23:59:59")}});
    OtherProgram other(company.path());
    EXPECT_EQ(other.text("SELECT date(due_date) FROM Line_table"), "2026-01-15");
    EXPECT_EQ(other.text("SELECT datetime(created) FROM Line_table"), "2026-01-31 23:59:59");
    EXPECT_EQ(other.text("SELECT CAST(created - due_date AS INTEGER) FROM Line_table"), "16");
}

TEST_F(CompanyFile, FlagsAreZeroOrOneWhoeverWrites) {
    SmallCompany company;
    OtherProgram other(company.path());
    other.run("INSERT INTO Header_table (docno) VALUES ('theirs')");
    EXPECT_EQ(company.list("SELECT paid FROM Header_table"), "FALSE");
    EXPECT_EQ(other.text("SELECT count(*) FROM Header_table WHERE paid = 0"), "1");
}

TEST_F(CompanyFile, RowKeysSurviveVacuum) {
    SmallCompany company;
    for (const char* const docno : {"a", "b", "c"})
        company.add("Header_table", {{"docno", docno}});
    auto rows = company.dynaset("SELECT docno FROM Header_table WHERE docno <> 'b'");
    company.db().Execute("DELETE * FROM Header_table WHERE docno = 'a'");
    OtherProgram(company.path()).run("VACUUM");
    EXPECT_EQ(testing::first_column(rows), "c");
}

TEST_F(CompanyFile, WhatIsNoCompanyIsToldInOneSentence) {
    expect_no_company(folder_.file("absent"), "does not exist");
    expect_no_company(folder_.path().string(), "is a folder, not a company file");
    write("text",
          "not a database at all, but long enough to have held the head of one: " + std::string(200, '.'));
    expect_no_company(folder_.file("text"), "is not a company file");
    write("empty", "");
    expect_no_company(folder_.file("empty"), "is not a company file");
    write("short", "SQLite format 3");
    expect_no_company(folder_.file("short"), "is not a company file");
    EXPECT_EQ(::mkfifo(folder_.file("pipe").c_str(), 0600), 0);
    expect_no_company(folder_.file("pipe"), "is not a company file");
    std::filesystem::create_symlink(folder_.file("loop"), folder_.file("loop"));
    expect_no_company(folder_.file("loop"), "cannot be opened: Too many levels of symbolic links");
    expect_no_company(folder_.file("text/inside"), "cannot be opened: Not a directory");
    const auto nameless = error_of([&] { open(""); });
    ASSERT_TRUE(nameless);
    EXPECT_EQ(nameless->kind(), ErrorKind::not_a_company);
    EXPECT_STREQ(nameless->what(), "\"\" is no file name");
    expect_no_company(":memory:", "does not exist");
}

TEST_F(CompanyFile, ForeignDatabaseIsRefusedAndLeftAlone) {
    const std::string path = folder_.file("foreign");
    {
        OtherProgram other(path);
        other.run("PRAGMA journal_mode = WAL; CREATE TABLE Header_table (docno TEXT)");
    }
    expect_no_company(path, "is not a company file");
    EXPECT_EQ(files(), std::vector<std::string>{"foreign"});
}

TEST_F(CompanyFile, AnotherVersionIsRefused) {
    const std::string path = folder_.file("c");
    (void)store::create_company(path, small_catalog());
    OtherProgram(path).run("ALTER TABLE Line_table DROP COLUMN created");
    expect_no_company(path, "is not laid out as a company of this version: Line_table.created is missing");
    OtherProgram(path).run("DROP TABLE Line_table");
    expect_no_company(path, "is not laid out as a company of this version: table Line_table is missing");
    OtherProgram(path).run("PRAGMA user_version = 2");
    expect_no_company(path, "was made by a newer version of this program");
    OtherProgram(path).run("PRAGMA user_version = 0");
    expect_no_company(path, "was made by another version of this program");
}

TEST_F(CompanyFile, UriOfAServerThatCannotBeReachedIsToldAndNothingIsMadeOfIt) {
    for (const std::string scheme : {"postgresql", "postgres"}) {
        const std::string uri = scheme + "://anna:secret@/books?host=" + folder_.path().string();
        for (const bool create : {false, true}) {
            const auto error = error_of([&] {
                (void)(create ? store::create_company(uri, small_catalog())
                              : store::open_company(uri, small_catalog()));
            });
            ASSERT_TRUE(error);
            EXPECT_EQ(error->kind(), ErrorKind::io);
            const std::string told = error->what();
            EXPECT_TRUE(
                told.starts_with("postgresql://" + folder_.path().string() + "/books cannot be opened: "));
            EXPECT_EQ(told.find("secret"), std::string::npos);
            EXPECT_EQ(told.find('\n'), std::string::npos);
        }
    }
    expect_error(ErrorKind::not_a_company,
                 [&] { (void)store::open_company("postgresql://[", small_catalog()); });
    EXPECT_TRUE(std::filesystem::is_empty(folder_.path()));
}

TEST_F(CompanyFile, FileInAnotherJournalModeIsTakenBackToTheLog) {
    const std::string path = folder_.file("c");
    (void)store::create_company(path, small_catalog());
    EXPECT_EQ(OtherProgram(path).text("PRAGMA journal_mode = DELETE"), "delete");
    auto writer = store::open_company(path, small_catalog());
    EXPECT_EQ(OtherProgram(path).text("PRAGMA journal_mode"), "wal");
    writer.workspace->BeginTrans();
    writer.database->Execute("DELETE * FROM Header_table");
    auto reader = store::open_company(path, small_catalog());
    EXPECT_EQ(reader.database->OpenRecordset("SELECT * FROM Header_table", store::RecordsetKind::snapshot)
                  .RecordCount(),
              0);
    writer.workspace->CommitTrans();
}

TEST_F(CompanyFile, FileThatAnotherProgramKeepsInAnotherJournalModeIsLocked) {
    const std::string path = folder_.file("c");
    (void)store::create_company(path, small_catalog());
    OtherProgram other(path);
    other.run("PRAGMA journal_mode = DELETE; BEGIN; SELECT count(*) FROM Header_table");
    const auto error = error_of([&] { open(path); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind(), ErrorKind::locked);
    EXPECT_EQ(error->what(), path + " is in use by another program");
}

TEST_F(CompanyFile, FileWhoseLogCannotBeMadeIsRefusedInWords) {
    const std::string path = folder_.file("c");
    (void)store::create_company(path, small_catalog());
    EXPECT_EQ(OtherProgram(path).text("PRAGMA journal_mode = DELETE"), "delete");
    // Its folder stands for every reason why a file cannot be made there.
    std::filesystem::create_directory(path + "-wal");
    const auto error = error_of([&] { open(path); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind(), ErrorKind::io);
    EXPECT_EQ(error->what(), path + " cannot be written: the disk is full or cannot be written");
}

TEST_F(CompanyFile, FileInUseByAnotherProgramIsLocked) {
    const std::string path = folder_.file("c");
    (void)store::create_company(path, small_catalog());
    OtherProgram other(path);
    other.run("PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE; UPDATE Header_table SET paid = 0");
    const auto error = error_of([&] { open(path); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind(), ErrorKind::locked);
    EXPECT_EQ(error->what(), path + " is in use by another program");
}

TEST_F(CompanyFile, DamagedFileIsToldAndNotOpened) {
    const std::string path = folder_.file("c");
    (void)store::create_company(path, small_catalog());
    {
        std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
        file.seekp(100);
        file << std::string(3900, 'x');
    }
    const auto error = error_of([&] { open(path); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind(), ErrorKind::io);
    EXPECT_EQ(std::string(error->what()).find(path), 0);
}

TEST_F(CompanyFile, IsNeverMadeOverAnotherFile) {
    write("c", "precious");
    expect_error(ErrorKind::state, [&] { (void)store::create_company(folder_.file("c"), small_catalog()); });
    expect_error(ErrorKind::state,
                 [&] { (void)store::create_company(folder_.path().string(), small_catalog()); });
    std::ifstream kept(folder_.file("c"));
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(kept), {}), "precious");
}

TEST_F(CompanyFile, NothingIsLeftBehindWhenMakingItFails) {
    expect_error(ErrorKind::io,
                 [&] { (void)store::create_company(folder_.file("no/folder/c"), small_catalog()); });
    expect_error(ErrorKind::io, [&] { (void)store::create_company("", small_catalog()); });
    const store::Catalog twice(
        {store::Table{"T", {{"a"}}, {}, false, {}, {}}, store::Table{"T", {{"a"}}, {}, false, {}, {}}});
    EXPECT_THROW((void)store::create_company(folder_.file("c"), twice), store::Error);
    EXPECT_EQ(files(), std::vector<std::string>{});
}

// What a full disk looks like: files of this process may not grow beyond a size.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t bytes) {
        ::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{bytes, before_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { ::setrlimit(RLIMIT_FSIZE, &before_); }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

  private:
    rlimit before_{};
};

TEST_F(CompanyFile, NothingIsLeftBehindWhenTheDiskIsFull) {
    const FileSizeLimit limit(8192);
    const auto error = error_of([&] { (void)store::create_company(folder_.file("c"), small_catalog()); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind(), ErrorKind::io);
    EXPECT_EQ(error->what(), folder_.file("c") + " cannot be written: the disk is full or cannot be written");
    EXPECT_EQ(files(), std::vector<std::string>{});
}

TEST_F(CompanyFile, OpeningOnAFullDiskIsToldByTheFilesName) {
    const std::string path = folder_.file("c");
    (void)store::create_company(path, small_catalog());
    const FileSizeLimit limit(4096);
    const auto error = error_of([&] { open(path); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind(), ErrorKind::io);
    EXPECT_EQ(error->what(), path + " cannot be written: the disk is full or cannot be written");
}

TEST_F(CompanyFile, FullDiskIsToldAndLosesNothing) {
    const std::string path = folder_.file("c");
    auto company = store::create_company(path, small_catalog());
    company.database->Execute("DELETE * FROM Header_table");
    const auto add = [&](int rows) {
        auto header = company.database->OpenRecordset("SELECT * FROM Header_table WHERE 1 = 2",
                                                      store::RecordsetKind::dynaset);
        for (int i = 0; i < rows; ++i) {
            header.AddNew();
            header.set("docno", std::string(4000, 'd'));
            header.Update();
        }
    };
    add(3);
    {
        const FileSizeLimit limit(200000);
        company.workspace->BeginTrans();
        const auto error = error_of([&] {
            add(5000);
            company.workspace->CommitTrans();
        });
        ASSERT_TRUE(error);
        EXPECT_EQ(error->kind(), ErrorKind::io);
        EXPECT_STREQ(error->what(),
                     "the company file cannot be written: the disk is full or cannot be written");
        company.workspace->Rollback();
        EXPECT_EQ(
            company.database->OpenRecordset("SELECT * FROM Header_table", store::RecordsetKind::snapshot)
                .RecordCount(),
            3);
    }
    add(2);
    company = {};
    EXPECT_EQ(OtherProgram(path).text("SELECT count(*) FROM Header_table"), "5");
    EXPECT_EQ(OtherProgram(path).text("PRAGMA integrity_check"), "ok");
}

}  // namespace
}  // namespace brimley
