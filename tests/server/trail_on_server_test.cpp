// The trail of a company at which several desks write at the same moment.
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "store/trailed_company.h"
#include "support/expect_error.h"

namespace brimley {
namespace {

using store::ErrorKind;
using testing::add_row;
using ::testing::ElementsAre;
using testing::expect_error;
using ::testing::IsEmpty;
using testing::Trail;

class TrailOnServer : public Trail {
  protected:
    TrailOnServer() : other_(company_.second_user()) { sign(*other_.workspace, "ben"); }

    // Opens this desk again, so that the other one acts just before a call on such a statement; empty: any
    // call.
    template <class Act>
    std::shared_ptr<testing::Faults> meanwhile(const std::string& statement, const Act& act) {
        auto engine = reopen_with_faults(ErrorKind::io, statement);
        engine->engine_fails_itself = true;
        engine->on_fault = act;
        return engine;
    }

    store::OpenCompany other_;
};

TEST_F(TrailOnServer, WhoCommitsMeanwhileWaitsForItsEnd) {
    std::thread desk;
    const auto engine = meanwhile("", [&] {
        desk = std::thread([&] { other_.workspace->CommitTrans(); });
        // Longer than other locks are waited for.
        std::this_thread::sleep_for(std::chrono::milliseconds(400));
    });
    in_transaction([&] { add_invoice("IP-1"); });
    engine->calls = 0;
    in_transaction([&] { add_invoice("IP-2"); });
    other_.workspace->BeginTrans();
    add_invoice(*other_.database, "IP-3");
    engine->arm(engine->last_commit, false);
    in_transaction([&] { add_invoice("IP-4"); });
    desk.join();
    EXPECT_THAT(documents(), ElementsAre("invoice IP-1", "invoice IP-2", "invoice IP-4", "invoice IP-3"));
    EXPECT_THAT(faults(), IsEmpty());
}

constexpr const char* kVoidAll = "UPDATE Invoice_table SET void = TRUE WHERE void = FALSE";

TEST_F(TrailOnServer, RowsThatAChangeReadsAreHeldFromThenOn) {
    add_invoice("IP-1");
    const auto engine = meanwhile(
        " SET ", [&] { expect_error(ErrorKind::locked, [&] { other_.database->Execute(kVoidAll); }); });
    engine->arm(2, false);  // the first call prepares it
    EXPECT_EQ(db().Execute(kVoidAll), 1);
    EXPECT_THAT(faults(), IsEmpty());
}

// A prefetch that is refused goes back to a savepoint: what was read since would be free again.
TEST_F(TrailOnServer, RowsThatAChangeReadsAreHeldThoughAPrefetchWasRefused) {
    add_invoice("IP-1");
    add_invoice("IP-2");
    auto theirs = other_.database->OpenRecordset("SELECT * FROM Invoice_table WHERE docno = 'IP-1'",
                                                 store::RecordsetKind::dynaset);
    theirs.Edit();
    constexpr const char* kVoidSecond = "UPDATE Invoice_table SET void = TRUE WHERE docno = 'IP-2'";
    const auto third = company_.second_user();
    const auto engine = meanwhile(" SET ", [&] {
        EXPECT_EQ(column("SELECT docno FROM Invoice_table").size(), 3);  // all that was asked is answered
        expect_error(ErrorKind::locked, [&] { third.database->Execute(kVoidSecond); });
    });
    in_transaction([&] {
        add_invoice("IP-3");
        auto rows = company_.dynaset("SELECT * FROM Invoice_table");
        rows.edit_first({{"docno", "IP-3"}});
        rows.prefetch_edit_first({{"docno", "IP-1"}});
        engine->arm(2, false);
        EXPECT_EQ(db().Execute(kVoidSecond), 1);
    });
    EXPECT_EQ(engine->calls, 2);
    EXPECT_THAT(faults(), IsEmpty());
}

TEST_F(TrailOnServer, RowsThatComeInBetweenAreNotChangedUnnoticed) {
    add_invoice("IP-1");
    const auto engine = meanwhile(" SET ", [&] { add_invoice(*other_.database, "IP-2"); });
    engine->arm(2, false);
    expect_error(ErrorKind::locked, [&] { db().Execute(kVoidAll); });
    EXPECT_THAT(column("SELECT void FROM Invoice_table"), ElementsAre("FALSE", "FALSE"));
    engine->arm(1, false);
    engine->on_fault = [&] { add_invoice(*other_.database, "IP-3"); };
    company_.workspace().BeginTrans();
    expect_error(ErrorKind::locked, [&] { db().Execute(kVoidAll); });
    expect_error(ErrorKind::state, [&] { company_.workspace().CommitTrans(); });
    company_.workspace().Rollback();
    EXPECT_THAT(documents(), ElementsAre("invoice IP-1", "invoice IP-2", "invoice IP-3"));
    EXPECT_THAT(faults(), IsEmpty());
}

// Whatever the role or the URI prefers.
TEST_F(TrailOnServer, EntriesFollowWhatOthersHaveCommitted) {
    const auto desk = store::open_company(
        company_.path() + "&options=-c%20default_transaction_isolation%3Drepeatable%5C%20read",
        testing::trailed_catalog());
    desk.workspace->BeginTrans();
    add_invoice(*desk.database, "IP-1");
    (void)desk.database->OpenRecordset("SELECT * FROM Invoice_table", store::RecordsetKind::snapshot);
    add_invoice("IP-2");
    desk.workspace->CommitTrans();
    EXPECT_THAT(documents(), ElementsAre("invoice IP-2", "invoice IP-1"));
    EXPECT_THAT(faults(), IsEmpty());
}

TEST_F(TrailOnServer, RowHeldForAMomentIsWaitedFor) {
    add_invoice("IP-1");
    auto rows = other_.database->OpenRecordset("SELECT * FROM Invoice_table", store::RecordsetKind::dynaset);
    rows.Edit();
    std::thread desk([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        rows.CancelUpdate();
    });
    EXPECT_NO_THROW(db().Execute(kVoidAll));
    desk.join();
    EXPECT_THAT(faults(), IsEmpty());
}

// A row that is refused when it is prefetched leaves a savepoint to go back to; the lock must not go with it.
TEST_F(TrailOnServer, EndOfTheTrailStaysHeldUntilTheCommit) {
    add_invoice("IP-1");
    add_invoice("IP-2");
    auto theirs = other_.database->OpenRecordset("SELECT * FROM Invoice_table WHERE docno = 'IP-1'",
                                                 store::RecordsetKind::dynaset);
    theirs.Edit();
    std::string held;
    const auto engine = meanwhile("user_created", [&] {
        held =
            testing::on_server(company_.path(),
                               "SELECT count(*) FROM pg_locks l, pg_database d WHERE l.database = d.oid AND "
                               "d.datname = current_database() AND locktype = 'advisory' AND objid = 1");
    });
    auto rows = company_.dynaset("SELECT * FROM Invoice_table");
    company_.workspace().BeginTrans();
    rows.FindFirst("docno = 'IP-2'");
    rows.Edit();
    rows.set("amount", 3);
    rows.Update();
    rows.prefetch_edit_first({{"docno", "IP-1"}});
    engine->arm(2, false);
    company_.workspace().CommitTrans();
    EXPECT_EQ(held, "1");
    EXPECT_THAT(faults(), IsEmpty());
}

}  // namespace
}  // namespace brimley
