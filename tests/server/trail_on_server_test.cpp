// The trail of a company at which several desks write at the same moment.
#include <gtest/gtest.h>

#include <fmt/format.h>

#include <chrono>
#include <future>
#include <thread>

#include "kernel/store/postgresql/postgresql_company.h"
#include "store/trailed_company.h"
#include "support/expect_error.h"
#include "support/test_server.h"

namespace brimley {
namespace {

using store::ErrorKind;
using testing::add_row;
using ::testing::ElementsAre;
using testing::expect_error;
using ::testing::IsEmpty;
using testing::Trail;
using ::testing::UnorderedElementsAre;

// Somebody who holds the end of the trail for a while.
class EndHeld {
  public:
    EndHeld(const std::string& company, const std::string& seconds)
        : held_(std::async(std::launch::async, [=, this] {
              const std::unique_ptr<PGconn, decltype(&PQfinish)> server(PQconnectdb(company.c_str()),
                                                                        &PQfinish);
              const auto run = [&](const std::string& sql) { return testing::result_of(server.get(), sql); };
              run("BEGIN");
              run(fmt::format("SELECT pg_advisory_xact_lock({}, {})", store::kAdvisoryLocks,
                              static_cast<int>(store::AdvisoryLock::end_of_trail)));
              begun_.set_value();
              run(fmt::format("SELECT pg_sleep({})", seconds));
              const auto entries = run("SELECT count(*) FROM brimley.trail_table");
              run("COMMIT");
              return std::string(PQgetvalue(entries.get(), 0, 0));
          })) {
        begun_.get_future().wait();
    }
    // How many there were when it was let go.
    std::string entries_at_its_end() { return held_.get(); }

  private:
    std::promise<void> begun_;
    std::future<std::string> held_;
};

// Gives up a wait when it is first asked.
struct Impatient : store::ConnectionWatch {
    [[nodiscard]] bool go_on_waiting(std::chrono::milliseconds) override { return false; }
};

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
    in_transaction([&] { add_invoice("IP-1"); });
    other_.workspace->BeginTrans();
    add_invoice(*other_.database, "IP-2");
    company_.workspace().BeginTrans();
    add_invoice("IP-3");
    // Longer than other locks are waited for.
    EndHeld held(company_.path(), "0.4");
    std::thread desk([&] { other_.workspace->CommitTrans(); });
    company_.workspace().CommitTrans();
    desk.join();
    EXPECT_EQ(held.entries_at_its_end(), "1");
    EXPECT_THAT(documents(), UnorderedElementsAre("invoice IP-1", "invoice IP-2", "invoice IP-3"));
    EXPECT_THAT(faults(), IsEmpty());
}

// Nothing is in doubt then: the transaction has not been asked to commit.
TEST_F(TrailOnServer, WaitForItsEndCanBeGivenUp) {
    in_transaction([&] { add_invoice("IP-1"); });
    company_.workspace().watch(std::make_shared<Impatient>());
    company_.workspace().BeginTrans();
    add_invoice("IP-2");
    EndHeld held(company_.path(), "0.6");
    const auto begun = std::chrono::steady_clock::now();
    EXPECT_THROW(company_.workspace().CommitTrans(), store::Error);
    EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::milliseconds(500));
    EXPECT_EQ(company_.workspace().doubts(), 0);
    company_.workspace().Rollback();
    EXPECT_EQ(held.entries_at_its_end(), "1");
    in_transaction([&] { add_invoice("IP-3"); });
    EXPECT_THAT(documents(), ElementsAre("invoice IP-1", "invoice IP-3"));
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
TEST_F(TrailOnServer, NothingIsAppendedWithoutHoldingItsEnd) {
    add_invoice("IP-1");
    add_invoice("IP-2");
    testing::on_server(company_.path(), R"(
        CREATE FUNCTION brimley.look() RETURNS trigger LANGUAGE plpgsql AS $$
        BEGIN
            IF NOT EXISTS (SELECT FROM pg_locks WHERE pid = pg_backend_pid() AND locktype = 'advisory' AND
                           objid = 1 AND granted) THEN
                RAISE 'nobody holds the end';
            END IF;
            RETURN NEW;
        END $$;
        CREATE TRIGGER looks BEFORE INSERT ON brimley.trail_table
            FOR EACH ROW EXECUTE FUNCTION brimley.look())");
    auto theirs = other_.database->OpenRecordset("SELECT * FROM Invoice_table WHERE docno = 'IP-1'",
                                                 store::RecordsetKind::dynaset);
    theirs.Edit();
    auto rows = company_.dynaset("SELECT * FROM Invoice_table");
    company_.workspace().BeginTrans();
    rows.FindFirst("docno = 'IP-2'");
    rows.Edit();
    rows.set("amount", 3);
    rows.Update();
    rows.prefetch_edit_first({{"docno", "IP-1"}});
    company_.workspace().CommitTrans();
    EndHeld held(company_.path(), "0.2");
    in_transaction([&] { add_invoice("IP-3"); });
    EXPECT_EQ(held.entries_at_its_end(), "3");
    EXPECT_THAT(documents(), ElementsAre("invoice IP-1", "invoice IP-2", "invoice IP-2", "invoice IP-3"));
    EXPECT_THAT(faults(), IsEmpty());
}

}  // namespace
}  // namespace brimley
