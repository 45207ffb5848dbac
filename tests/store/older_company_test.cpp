// Companies of an older layout, which have no trail, and their upgrade.
#include <gtest/gtest.h>

#include <thread>

#include "store/other_program.h"
#include "store/trailed_company.h"
#include "support/expect_error.h"

namespace brimley {
namespace {

using store::DateTime;
using store::ErrorKind;
using ::testing::ElementsAre;
using testing::error_of;
using testing::expect_error;
using ::testing::IsEmpty;
using testing::trailed_catalog;
using testing::unwatched_catalog;

class OlderCompany : public ::testing::Test {
  protected:
    OlderCompany()
        : database_(testing::tests_run_on_server() ? std::make_unique<testing::ServerDatabase>() : nullptr),
          path_(database_ ? database_->uri() : folder_.file("older.brimley")) {
        (void)store::create_company(path_, trailed_catalog().of_layout(1), [](store::Database& db) {
            db.Execute("UPDATE Owner_table SET vendor_no = '1'");
            auto rows = db.OpenRecordset("SELECT * FROM Invoice_table", store::RecordsetKind::dynaset);
            rows.AddNew();
            rows.set("docno", "IP-1");
            rows.Update();
        });
    }
    static store::Signature anna() { return {"anna", "desk 3", *DateTime::from_iso("2026-01-15")}; }

    testing::TemporaryFolder folder_;
    std::unique_ptr<testing::ServerDatabase> database_;
    std::string path_;
};

TEST_F(OlderCompany, IsOpenedAndWrittenWithoutATrail) {
    const auto company = store::open_company(path_, trailed_catalog());
    EXPECT_EQ(company.database->catalog().layout(), 1);
    EXPECT_EQ(company.database->catalog().find("Trail_table"), nullptr);
    company.database->Execute("UPDATE Invoice_table SET amount = 3");
    EXPECT_EQ(company.database->end_of_trail(), std::nullopt);
    EXPECT_THAT(company.database->faults_of_trail(), IsEmpty());
    EXPECT_THAT(company.database->faults_of_trail({3, "abc"}),
                ElementsAre("the company has no trail, but the end of one was sealed"));
}

TEST_F(OlderCompany, UpgradeBeginsATrailWithWhatStandsThere) {
    EXPECT_TRUE(store::upgrade_company(path_, trailed_catalog(), anna()));
    EXPECT_FALSE(store::upgrade_company(path_, trailed_catalog(), anna()));
    const auto company = store::open_company(path_, trailed_catalog());
    EXPECT_EQ(company.database->catalog().layout(), 2);
    EXPECT_EQ(company.database->end_of_trail()->number, 1);
    EXPECT_THAT(company.database->faults_of_trail(), IsEmpty());
    (void)store::open_company(path_, unwatched_catalog())
        .database->Execute("UPDATE Invoice_table SET amount = 3");
    EXPECT_THAT(
        company.database->faults_of_trail(),
        ElementsAre("what stood here before the trail is not as anna wrote it on 2026-01-15 (entry 1 of "
                    "the trail)",
                    "invoice IP-1 has a row that the trail does not know"));
}

TEST_F(OlderCompany, UpgradeTakesRowsAsTheyAreStored) {
    if (testing::tests_run_on_server())
        testing::on_server(path_, "UPDATE brimley.invoice_table SET created = '2026-01-15 09:30:00.1'");
    else
        testing::OtherProgram(path_).run("UPDATE Invoice_table SET created = 2461056.1234567");
    EXPECT_TRUE(store::upgrade_company(path_, trailed_catalog(), anna()));
    EXPECT_THAT(store::open_company(path_, trailed_catalog()).database->faults_of_trail(), IsEmpty());
}

TEST_F(OlderCompany, NobodyWritesOnWithoutATrailAfterAnUpgrade) {
    const auto other = store::open_company(path_, trailed_catalog());
    if (testing::tests_run_on_server()) {
        expect_error(ErrorKind::locked,
                     [&] { (void)store::upgrade_company(path_, trailed_catalog(), anna()); });
        other.database->Execute("UPDATE Invoice_table SET amount = 3");
        return;
    }
    EXPECT_TRUE(store::upgrade_company(path_, trailed_catalog(), anna()));
    const auto refused = error_of([&] {
        other.workspace->BeginTrans();
        other.database->Execute("UPDATE Invoice_table SET amount = 3");
    });
    ASSERT_TRUE(refused);
    EXPECT_STREQ(refused->what(), "the company was upgraded meanwhile: it must be opened again");
    // What was begun for it is over.
    const auto again = store::open_company(path_, trailed_catalog());
    again.database->Execute("UPDATE Invoice_table SET amount = 4");
    other.workspace->Rollback();
    const auto refused_alone =
        error_of([&] { other.database->Execute("UPDATE Owner_table SET vendor_no = '2'"); });
    ASSERT_TRUE(refused_alone);
    EXPECT_STREQ(refused_alone->what(), refused->what());
    EXPECT_THAT(again.database->faults_of_trail(), IsEmpty());
    // Nor does it take the company back to its own layout.
    const std::string copy = folder_.file("copy.brimley");
    EXPECT_TRUE(other.database->copy_file(copy));
    other.workspace->tidy();
    for (const std::string& company : {copy, path_})
        EXPECT_EQ(store::open_company(company, trailed_catalog()).database->catalog().layout(), 2) << company;
}

TEST_F(OlderCompany, NobodyWritesBetweenTheBackupAndTheUpgrade) {
    const auto write_meanwhile = [&] {
        const auto other = store::open_company(path_, trailed_catalog());
        expect_error(ErrorKind::locked,
                     [&] { other.database->Execute("UPDATE Owner_table SET vendor_no = '2'"); });
    };
    EXPECT_TRUE(store::upgrade_company(path_, trailed_catalog(), anna(), write_meanwhile));
    const auto company = store::open_company(path_, trailed_catalog());
    EXPECT_EQ(company.database->catalog().layout(), 2);
}

// What makes a table waits there, so that an upgrade can be met in the middle.
TEST_F(OlderCompany, OnAServerNobodyOpensItWhileItIsUpgraded) {
    if (!testing::tests_run_on_server()) return;
    testing::on_server(path_,
                       "CREATE FUNCTION public.wait() RETURNS event_trigger LANGUAGE plpgsql AS "
                       "$$ BEGIN PERFORM pg_advisory_xact_lock(7); END $$; "
                       "CREATE EVENT TRIGGER waits ON ddl_command_end EXECUTE FUNCTION public.wait()");
    std::unique_ptr<PGconn, decltype(&PQfinish)> gate(PQconnectdb(path_.c_str()), &PQfinish);
    (void)testing::result_of(gate.get(), "SELECT pg_advisory_lock(7)");
    std::thread desk(
        [&] { EXPECT_NO_THROW((void)store::upgrade_company(path_, trailed_catalog(), anna())); });
    EXPECT_TRUE(testing::comes_true_on_server(path_,
                                              "SELECT 1 FROM pg_locks l, pg_database d WHERE l.database = "
                                              "d.oid AND datname = current_database() AND locktype = "
                                              "'advisory' AND objid = 7 AND NOT granted"));
    const auto refused = error_of([&] { (void)store::open_company(path_, trailed_catalog()); });
    gate.reset();
    desk.join();
    ASSERT_TRUE(refused);
    EXPECT_EQ(refused->kind(), ErrorKind::locked);
    EXPECT_THAT(refused->what(), ::testing::EndsWith(" is being upgraded"));
    EXPECT_EQ(store::open_company(path_, trailed_catalog()).database->catalog().layout(), 2);
}

TEST_F(OlderCompany, UpgradeWithoutABackupLeavesItAsItWas) {
    const auto fail = [] { throw store::Error(ErrorKind::io, "made by the test"); };
    expect_error(ErrorKind::io,
                 [&] { (void)store::upgrade_company(path_, trailed_catalog(), anna(), fail); });
    const auto company = store::open_company(path_, trailed_catalog());
    EXPECT_EQ(company.database->catalog().layout(), 1);
    company.database->Execute("UPDATE Owner_table SET vendor_no = '2'");
}

TEST_F(OlderCompany, UpgradeThatFailsLeavesItAsItWas) {
    {
        const auto busy = store::open_company(path_, trailed_catalog());
        busy.workspace->BeginTrans();
        busy.database->Execute("UPDATE Invoice_table SET amount = 3");
        expect_error(ErrorKind::locked,
                     [&] { (void)store::upgrade_company(path_, trailed_catalog(), anna()); });
    }
    EXPECT_EQ(store::open_company(path_, trailed_catalog()).database->catalog().layout(), 1);
    EXPECT_TRUE(store::upgrade_company(path_, trailed_catalog(), anna()));
}

}  // namespace
}  // namespace brimley
