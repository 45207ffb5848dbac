// Company files that somebody has prepared: each is refused in a sentence, and nothing that it holds is run,
// read as a table, or written to.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "store/other_program.h"
#include "store/small_company.h"
#include "support/expect_error.h"

namespace brimley {
namespace {

using testing::OtherProgram;
using testing::small_catalog;

// What a person with a tool for SQLite may do to a company, by the name that the test has.
struct Preparation {
    const char* name;
    const char* sql;
};

void PrintTo(const Preparation& preparation, std::ostream* out) { *out << preparation.name; }

#define IN_SCHEMA "PRAGMA writable_schema = ON; "

constexpr Preparation kPreparations[] = {
    {"TriggerOnInsert", "CREATE TRIGGER t AFTER INSERT ON Line_table BEGIN DELETE FROM Header_table; END"},
    {"TriggerOnUpdate", "CREATE TRIGGER t BEFORE UPDATE ON Header_table BEGIN SELECT RAISE(IGNORE); END"},
    {"TriggerOnUpdateOfAField",
     "CREATE TRIGGER t AFTER UPDATE OF amount ON Header_table BEGIN UPDATE Header_table "
     "SET vendor_no = 'mallory'; END"},
    {"TriggerOnDelete",
     "CREATE TRIGGER t BEFORE DELETE ON Header_table BEGIN SELECT RAISE(ABORT, 'no'); END"},
    {"TriggerUnderANameOfOurs",
     "DROP INDEX Header_table_index_1; CREATE TRIGGER Header_table_index_1 AFTER "
     "INSERT ON Line_table BEGIN DELETE FROM Header_table; END"},
    {"View", "CREATE VIEW v AS SELECT * FROM Header_table"},
    {"ViewInPlaceOfATable", "DROP TABLE Word_table; CREATE VIEW Word_table AS SELECT 1 AS row_id"},
    {"ViewThatNeverEnds",
     "CREATE VIEW v AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) "
     "SELECT i FROM n"},
    {"ViewOfItself",
     "CREATE VIEW a AS SELECT 1; CREATE VIEW b AS SELECT * FROM a; DROP VIEW a; CREATE VIEW a AS "
     "SELECT * FROM b"},
    {"TriggerInsteadOfAnInsert",
     "CREATE VIEW v AS SELECT docno FROM Header_table; CREATE TRIGGER t INSTEAD OF "
     "INSERT ON v BEGIN DELETE FROM Header_table; END"},
    {"AnotherTable", "CREATE TABLE mine (a)"},
    {"TableWithAnEmptyName", "CREATE TABLE \"\" (a)"},
    {"TableInAnotherCase", "ALTER TABLE Word_table RENAME TO w; ALTER TABLE w RENAME TO WORD_TABLE"},
    {"TableWithoutRowKeys",
     "DROP TABLE Word_table; CREATE TABLE Word_table (row_id INTEGER PRIMARY KEY, a TEXT) "
     "WITHOUT ROWID"},
    {"TableThatIsNotStrict",
     "DROP TABLE Word_table; CREATE TABLE Word_table (row_id INTEGER PRIMARY KEY, a)"},
    {"TableOfAModule", "CREATE VIRTUAL TABLE w USING fts5(text)"},
    {"ModuleInPlaceOfATable", "DROP TABLE Word_table; CREATE VIRTUAL TABLE Word_table USING fts4(text)"},
    {"FieldBesideOurs", "ALTER TABLE Header_table ADD COLUMN more TEXT"},
    {"FieldThatIsComputed", "ALTER TABLE Header_table ADD COLUMN twice REAL AS (amount * 2)"},
    {"FieldThatIsComputedByRandom", "ALTER TABLE Header_table ADD COLUMN blob TEXT AS (hex(docno)) VIRTUAL"},
    {"FieldWithADefault", "ALTER TABLE Header_table ADD COLUMN more TEXT DEFAULT 'mallory'"},
    {"FieldWithARule", "ALTER TABLE Header_table ADD COLUMN more TEXT CHECK (length(more) < 5)"},
    {"FieldThatRefersElsewhere",
     "ALTER TABLE Header_table ADD COLUMN more TEXT REFERENCES Word_table(row_id) ON "
     "DELETE CASCADE"},
    {"FieldUnderAnotherName", "ALTER TABLE Header_table RENAME COLUMN amount TO sum"},
    {"FieldLess", "ALTER TABLE Header_table DROP COLUMN amount"},
    {"IndexBesideOurs", "CREATE INDEX i ON Header_table (amount)"},
    {"IndexOfAnExpression", "CREATE INDEX i ON Header_table (upper(docno))"},
    {"IndexThatLetsNothingRepeat", "CREATE UNIQUE INDEX i ON Header_table (vendor_no)"},
    {"IndexOfSomeRows",
     "DROP INDEX Header_table_index_2; CREATE INDEX Header_table_index_2 ON Header_table "
     "(docno, company) WHERE docno < 'M'"},
    {"IndexInAnotherOrder",
     "DROP INDEX Header_table_index_2; CREATE INDEX Header_table_index_2 ON Header_table "
     "(docno DESC, company)"},
    {"IndexOfOtherLetters",
     "DROP INDEX Header_table_index_2; CREATE INDEX Header_table_index_2 ON Header_table "
     "(docno COLLATE NOCASE, company)"},
    {"IndexOfOtherFields",
     "DROP INDEX Header_table_index_2; CREATE INDEX Header_table_index_2 ON Header_table "
     "(vendor_no, company)"},
    {"IndexLess", "DROP INDEX Line_table_index_1"},
    {"Statistics", "ANALYZE"},
    {"OneTableInThePlaceOfAnother",
     IN_SCHEMA "UPDATE sqlite_schema SET rootpage = (SELECT rootpage FROM sqlite_schema WHERE name = "
               "'Header_table') WHERE name = 'Word_table'"},
    {"IndexOnATablesPages",
     IN_SCHEMA "UPDATE sqlite_schema SET rootpage = (SELECT rootpage FROM sqlite_schema "
               "WHERE name = 'Header_table') WHERE name = 'Header_table_index_1'"},
    {"TableOnNoPage", IN_SCHEMA "UPDATE sqlite_schema SET rootpage = 100000 WHERE name = 'Word_table'"},
    {"TableOnTheFirstPage", IN_SCHEMA "UPDATE sqlite_schema SET rootpage = 1 WHERE name = 'Word_table'"},
    {"TableOfAnotherName", IN_SCHEMA "UPDATE sqlite_schema SET name = 'x' WHERE name = 'Word_table'"},
    {"StatementThatIsNone", IN_SCHEMA "UPDATE sqlite_schema SET sql = 'nonsense' WHERE name = 'Word_table'"},
    {"StatementOfAnotherTable",
     IN_SCHEMA "UPDATE sqlite_schema SET sql = 'CREATE TABLE Word_table (a)' WHERE "
               "name = 'Word_table'"},
    {"StatementWithARuleLess", IN_SCHEMA "UPDATE sqlite_schema SET sql = replace(sql, 'NOT NULL', '')"},
    {"StatementWithAFunction", IN_SCHEMA "UPDATE sqlite_schema SET sql = replace(sql, 'CHECK (', 'CHECK "
                                         "(load_extension(''x'') OR ') WHERE name = 'Header_table'"},
    {"StatementTwice",
     IN_SCHEMA "INSERT INTO sqlite_schema SELECT * FROM sqlite_schema WHERE name = 'Word_table'"},
    {"StatementTwiceInAnotherCase",
     IN_SCHEMA "INSERT INTO sqlite_schema SELECT type, 'wOrD_table', 'wOrD_table', rootpage, sql FROM "
               "sqlite_schema WHERE name = 'Word_table'"},
    {"ObjectOfNoKind", IN_SCHEMA "INSERT INTO sqlite_schema VALUES ('thing', 'x', 'x', 2, NULL)"},
    {"ObjectWithoutAName", IN_SCHEMA "INSERT INTO sqlite_schema VALUES (NULL, NULL, NULL, NULL, NULL)"},
    {"VersionToCome", "PRAGMA user_version = 2"},
    {"VersionBelowZero", "PRAGMA user_version = -1"},
    {"AnotherProgramsFile", "PRAGMA application_id = 7"},
};

#undef IN_SCHEMA

class HostileFile : public ::testing::TestWithParam<Preparation> {
  protected:
    testing::TemporaryFolder folder_;
    std::string path_ = folder_.file("c");
};

// Whether the company can be written into, and otherwise why not.
std::string what_stands_in_the_way(const std::string& path) {
    try {
        const auto company = store::open_company(path, small_catalog());
        return company.database->reading_only_because();
    } catch (const store::Error& error) {
        return error.what();
    }
}

std::string bytes_of(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST_P(HostileFile, IsToldAndLeftAsItIs) {
    (void)store::create_company(path_, small_catalog());
    OtherProgram(path_).run(GetParam().sql);
    const std::string before = bytes_of(path_);
    const std::string told = what_stands_in_the_way(path_);
    EXPECT_EQ(told.find(path_), 0U) << told;
    EXPECT_EQ(told.find('\n'), std::string::npos) << told;
    EXPECT_TRUE(bytes_of(path_) == before);
}

INSTANTIATE_TEST_SUITE_P(Prepared, HostileFile, ::testing::ValuesIn(kPreparations),
                         [](const auto& tested) { return std::string(tested.param.name); });

// What stands beside a company file is read with it.
class HostileCompanion : public HostileFile {
  protected:
    HostileCompanion() {
        auto company = store::create_company(path_, small_catalog());
        company.database->Execute("DELETE * FROM Header_table");
    }
    void put_beside(const std::string& suffix, const std::string& bytes) {
        std::ofstream(path_ + suffix, std::ios::binary) << bytes;
    }
    void expect_sound() {
        EXPECT_EQ(what_stands_in_the_way(path_), "");
        EXPECT_THAT(store::open_company(path_, small_catalog()).database->faults_of_storage(),
                    ::testing::IsEmpty());
    }
};

TEST_F(HostileCompanion, LogThatIsNoneIsNotRead) {
    put_beside("-wal", std::string(100000, '\x37'));
    expect_sound();
}

TEST_F(HostileCompanion, LogOfAnotherCompanyIsNotReadBeyondItsSums) {
    const std::string other = folder_.file("other");
    auto company = store::create_company(other, small_catalog());
    company.database->Execute("DELETE * FROM Header_table");
    std::string log = bytes_of(other + "-wal");
    ASSERT_GT(log.size(), 5000U);
    log[4000] = static_cast<char>(log[4000] + 1);
    put_beside("-wal", log);
    expect_sound();
}

TEST_F(HostileCompanion, JournalThatIsNoneIsNotRead) {
    put_beside("-journal", std::string(100000, '\x37'));
    expect_sound();
}

}  // namespace
}  // namespace brimley
