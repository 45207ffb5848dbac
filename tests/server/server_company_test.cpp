// Companies on a server: making them, and telling them from other databases.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <future>
#include <thread>
#include <vector>

#include "store/small_company.h"
#include "support/expect_error.h"

namespace brimley {
namespace {

using store::Error;
using store::ErrorKind;
using ::testing::AnyOf;
using ::testing::Each;
using ::testing::EndsWith;
using testing::error_of;
using testing::expect_error;
using testing::on_server;
using testing::ServerDatabase;
using testing::small_catalog;

class ServerCompany : public ::testing::Test {
  protected:
    // The server lets each connection with this option of its URI wait for a second.
    static constexpr const char* kSlow = "&options=-c%20post_auth_delay%3D1";

    void create(const store::CompanyFiller& fill = {}, const std::string& options = {}) {
        (void)store::create_company(database_.uri() + options, small_catalog(), fill);
    }
    void expect_no_company(const std::string& why) {
        const auto error = error_of([&] { (void)store::open_company(database_.uri(), small_catalog()); });
        ASSERT_TRUE(error);
        EXPECT_EQ(error->kind(), ErrorKind::not_a_company);
        EXPECT_TRUE(std::string(error->what()).ends_with(why)) << error->what();
    }
    [[nodiscard]] bool database_exists() const {
        return !on_server(testing::server_uri("postgres"),
                          "SELECT 1 FROM pg_database WHERE datname = '" + database_.name() + "'")
                    .empty();
    }
    // What another desk is told that makes the company, and closes it at once; empty: nothing.
    [[nodiscard]] std::string make_elsewhere(const std::string& options = {}) const {
        try {
            (void)store::create_company(database_.uri() + options, small_catalog());
            return {};
        } catch (const Error& error) {
            return error.what();
        }
    }
    // The same, at the same time: until the other desk waits for the one that makes the company now, or has
    // waited too long.
    [[nodiscard]] std::future<std::string> begin_to_make_elsewhere() const {
        auto told = std::async(std::launch::async, [this] { return make_elsewhere(); });
        const std::string waits =
            "SELECT 1 FROM pg_stat_activity WHERE wait_event_type = 'Lock' AND datname = '" +
            database_.name() + "'";
        while (told.wait_for(std::chrono::milliseconds(10)) == std::future_status::timeout)
            if (!on_server(testing::server_uri("postgres"), waits).empty()) break;
        return told;
    }
    std::string sql(const std::string& statement) { return on_server(database_.uri(), statement); }
    void make_empty_database() {
        on_server(testing::server_uri("postgres"), "CREATE DATABASE " + database_.name());
    }

    ServerDatabase database_;
};

TEST_F(ServerCompany, CreateMakesTheDatabaseWhereThereIsNone) {
    create();
    (void)store::open_company(database_.uri(), small_catalog());
    EXPECT_EQ(sql("SELECT count(*) FROM brimley.header_table"), "0");
}

TEST_F(ServerCompany, CreateFillsAnEmptyDatabaseAndRefusesACompany) {
    make_empty_database();
    create([](store::Database& company) {
        auto rows =
            company.OpenRecordset("SELECT * FROM Header_table WHERE 1 = 2", store::RecordsetKind::dynaset);
        rows.AddNew();
        rows.set("docno", "first");
        rows.Update();
    });
    EXPECT_EQ(sql("SELECT docno FROM brimley.header_table"), "first");
    expect_error(ErrorKind::state, [&] { create(); });
    EXPECT_EQ(sql("SELECT docno FROM brimley.header_table"), "first");
}

TEST_F(ServerCompany, FailedCreateTakesItsDatabaseAway) {
    const auto fail = [](store::Database&) { throw Error(ErrorKind::constraint, "made by the test"); };
    expect_error(ErrorKind::constraint, [&] { create(fail); });
    EXPECT_FALSE(database_exists());
}

TEST_F(ServerCompany, FailedCreateLeavesADatabaseThatWasThereEmpty) {
    make_empty_database();
    const auto fail = [](store::Database&) { throw Error(ErrorKind::constraint, "made by the test"); };
    expect_error(ErrorKind::constraint, [&] { create(fail); });
    EXPECT_EQ(sql("SELECT count(*) FROM pg_namespace WHERE nspname = 'brimley'"), "0");
    create();
}

TEST_F(ServerCompany, NobodySeesACompanyInTheMaking) {
    make_empty_database();
    create([&](store::Database&) { expect_no_company("holds no company"); });
    (void)store::open_company(database_.uri(), small_catalog());
}

TEST_F(ServerCompany, CompanyInTheMakingIsRefusedToASecondMaker) {
    create([&](store::Database&) {
        const auto refused = error_of([&] { create(); });
        ASSERT_TRUE(refused);
        EXPECT_EQ(refused->kind(), ErrorKind::state);
        EXPECT_THAT(refused->what(), EndsWith(database_.name() + " is being made by another program"));
    });
    (void)store::open_company(database_.uri(), small_catalog());
}

TEST_F(ServerCompany, WhoWaitedForTheMakerOfACompanyIsToldThatItExists) {
    std::future<std::string> told;
    create([&](store::Database&) { told = begin_to_make_elsewhere(); });
    // The other sentence, when the wait was too long.
    EXPECT_THAT(told.get(),
                AnyOf(EndsWith(" already exists"), EndsWith(" is being made by another program")));
    (void)store::open_company(database_.uri(), small_catalog());
}

TEST_F(ServerCompany, FailedCreateLeavesTheDatabaseToWhoeverMakesACompanyThere) {
    std::future<std::string> told;
    expect_error(ErrorKind::constraint, [&] {
        create([&](store::Database&) {
            told = begin_to_make_elsewhere();
            throw Error(ErrorKind::constraint, "made by the test");
        });
    });
    if (const std::string refused = told.get(); !refused.empty())  // the wait was too long
        EXPECT_THAT(refused, EndsWith(" is being made by another program"));
    else
        (void)store::open_company(database_.uri(), small_catalog());
}

// The other desk has made it, and has left, before the first one can drop its database.
TEST_F(ServerCompany, FailedCreateLeavesACompanyThatWasMadeThereMeanwhile) {
    std::future<std::string> told;
    expect_error(ErrorKind::constraint, [&] {
        create(
            [&](store::Database&) {
                told = begin_to_make_elsewhere();
                throw Error(ErrorKind::constraint, "made by the test");
            },
            kSlow);
    });
    ASSERT_EQ(told.get(), "");
    (void)store::open_company(database_.uri(), small_catalog());
}

// All find no database; the first two of the slow ones try to make it at the same moment, the last one when
// it is there; and before they go on the company has mostly been made. Whoever is first, the others leave the
// company as it is.
TEST_F(ServerCompany, OfSeveralWhoMakeItOneDoesAndTheOthersLeaveItAsItIs) {
    constexpr int kSlowMakers = 3;
    std::vector<std::future<std::string>> slow;
    for (int each = 0; each < kSlowMakers; ++each) {
        if (each == kSlowMakers - 1) std::this_thread::sleep_for(std::chrono::milliseconds(300));
        slow.push_back(std::async(std::launch::async, [this] { return make_elsewhere(kSlow); }));
    }
    EXPECT_TRUE(testing::comes_true_on_server(
        testing::server_uri("postgres"),
        "SELECT 1 FROM pg_database WHERE datname = '" + database_.name() + "'"));
    std::vector<std::string> told{make_elsewhere()};
    for (std::future<std::string>& each : slow)
        told.push_back(each.get());
    EXPECT_EQ(std::ranges::count(told, ""), 1);
    std::erase(told, "");
    EXPECT_THAT(told, Each(AnyOf(EndsWith(database_.name() + " already exists"),
                                 EndsWith(database_.name() + " is being made by another program"))));
    (void)store::open_company(database_.uri(), small_catalog());
}

TEST_F(ServerCompany, AbsentOrForeignOrOtherDatabaseIsRefused) {
    const auto absent = error_of([&] { (void)store::open_company(database_.uri(), small_catalog()); });
    ASSERT_TRUE(absent);
    EXPECT_EQ(absent->kind(), ErrorKind::io);
    make_empty_database();
    expect_no_company("holds no company");
    sql("CREATE SCHEMA brimley");
    expect_no_company("holds no company, but something of that name");
    sql("DROP SCHEMA brimley");
    create();
    sql("ALTER TABLE brimley.line_table DROP COLUMN currency");
    expect_no_company("is not laid out as a company of this version: Line_table.Currency is missing");
    sql("COMMENT ON SCHEMA brimley IS 'Brimley company, layout 2'");
    expect_no_company("was made by a newer version of this program");
    for (const char* const layout : {"one", "0", "-1", "1a", ""}) {
        sql(std::string("COMMENT ON SCHEMA brimley IS 'Brimley company, layout ") + layout + "'");
        expect_no_company("was made by another version of this program");
    }
}

// What was made and taken back again leaves a sound company behind.
TEST_F(ServerCompany, WhatDoesNotBelongToACompanyIsRefusedByItsName) {
    create();
    struct Change {
        const char* made;
        const char* taken_back;
        const char* difference;
    };
    for (const Change& change : std::initializer_list<Change>{
             {"CREATE FUNCTION public.pay() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN NEW.amount = "
              "1000000; "
              "RETURN NEW; END $$; CREATE TRIGGER pays_mallory BEFORE INSERT ON brimley.header_table FOR "
              "EACH "
              "ROW EXECUTE FUNCTION public.pay()",
              "DROP FUNCTION public.pay CASCADE", "trigger pays_mallory does not belong to it"},
             {"CREATE RULE nothing AS ON UPDATE TO brimley.header_table DO INSTEAD NOTHING",
              "DROP RULE nothing ON brimley.header_table", "rule nothing does not belong to it"},
             {"CREATE VIEW brimley.docs AS SELECT 1", "DROP VIEW brimley.docs",
              "view docs does not belong to it"},
             {"CREATE TABLE brimley.notes (a text)", "DROP TABLE brimley.notes",
              "table notes does not belong to it"},
             {"CREATE INDEX mine ON brimley.header_table (amount)", "DROP INDEX brimley.mine",
              "index mine does not belong to it"},
             {"ALTER TABLE brimley.header_table ADD COLUMN extra text",
              "ALTER TABLE brimley.header_table DROP COLUMN extra",
              "Header_table.extra does not belong to it"},
             {"ALTER TABLE brimley.header_table ALTER COLUMN amount SET DEFAULT 5",
              "ALTER TABLE brimley.header_table ALTER COLUMN amount DROP DEFAULT",
              "Header_table.amount is not as it should be"},
             {"ALTER TABLE brimley.header_table ALTER COLUMN docno TYPE text COLLATE \"und-x-icu\"",
              "ALTER TABLE brimley.header_table ALTER COLUMN docno TYPE text COLLATE \"C\"",
              "Header_table.docno is not as it should be"},
             {"ALTER TABLE brimley.header_table ALTER COLUMN paid DROP NOT NULL",
              "ALTER TABLE brimley.header_table ALTER COLUMN paid SET NOT NULL",
              "Header_table.paid is not as it should be"},
             {"ALTER TABLE brimley.header_table ADD CONSTRAINT small CHECK (amount < 10)",
              "ALTER TABLE brimley.header_table DROP CONSTRAINT small",
              "constraint small does not belong to it"},
             {"ALTER TABLE brimley.header_table ENABLE ROW LEVEL SECURITY",
              "ALTER TABLE brimley.header_table DISABLE ROW LEVEL SECURITY",
              "table Header_table is not as it should be"},
             {"CREATE POLICY hides ON brimley.header_table USING (FALSE)",
              "DROP POLICY hides ON brimley.header_table", "policy hides does not belong to it"},
             {"CREATE TABLE public.more () INHERITS (brimley.header_table)", "DROP TABLE public.more",
              "inheritance public.more does not belong to it"},
             {"CREATE FUNCTION brimley.lower(a text) RETURNS text LANGUAGE sql AS $$ SELECT 'x' $$",
              "DROP FUNCTION brimley.lower", "function lower does not belong to it"},
             {"CREATE TYPE brimley.colour AS ENUM ('red')", "DROP TYPE brimley.colour",
              "type brimley.colour does not belong to it"},
             {"ALTER SEQUENCE brimley.row_keys CYCLE", "ALTER SEQUENCE brimley.row_keys NO CYCLE",
              "sequence row_keys is not as it should be"},
             {"ALTER TABLE brimley.header_table SET UNLOGGED", "ALTER TABLE brimley.header_table SET LOGGED",
              "table Header_table is not as it should be"}}) {
        SCOPED_TRACE(change.made);
        sql(change.made);
        expect_no_company(std::string("is not laid out as a company of this version: ") + change.difference);
        sql(change.taken_back);
        (void)store::open_company(database_.uri(), small_catalog());
    }
    sql("DROP INDEX brimley.header_table_index_2");
    expect_no_company("is not laid out as a company of this version: index header_table_index_2 is missing");
}

TEST_F(ServerCompany, ServerThatDoesNotKeepWhatIsSavedIsRefused) {
    const testing::TemporaryFolder folder;
    const std::string script = BRIMLEY_SOURCE_DIR "/tests/support/server-cluster ";
    const std::string where = folder.file("where");
    ASSERT_EQ(std::system((script + "start " + where + " 'fsync = off'").c_str()), 0);
    std::string options;
    std::getline(std::ifstream(where), options);
    const auto error =
        error_of([&] { (void)store::create_company("postgresql:///careless?" + options, small_catalog()); });
    EXPECT_EQ(std::system((script + "stop " + where).c_str()), 0);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind(), ErrorKind::io);
    EXPECT_TRUE(std::string(error->what()).ends_with("fsync is off")) << error->what();
}

TEST_F(ServerCompany, PeopleWithoutTheOwnersRightsSeeNothing) {
    create();
    const std::string guest = "guest_of_" + database_.name();
    sql("CREATE ROLE " + guest);
    EXPECT_EQ(sql("SELECT has_schema_privilege('" + guest + "', 'brimley', 'USAGE')"), "f");
    sql("DROP ROLE " + guest);
}

}  // namespace
}  // namespace brimley
