// Companies on a server: making them, and telling them from other databases.
#include <gtest/gtest.h>

#include <cstdlib>

#include "store/small_company.h"
#include "support/expect_error.h"

namespace brimley {
namespace {

using store::Error;
using store::ErrorKind;
using testing::error_of;
using testing::expect_error;
using testing::on_server;
using testing::ServerDatabase;
using testing::small_catalog;

class ServerCompany : public ::testing::Test {
  protected:
    void create(const store::CompanyFiller& fill = {}) {
        (void)store::create_company(database_.uri(), small_catalog(), fill);
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
    expect_no_company("was made by another version of this program: Line_table.Currency is missing");
    sql("COMMENT ON SCHEMA brimley IS 'Brimley company, layout 2'");
    expect_no_company("was made by another version of this program");
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
