// Servers that go away while somebody works: restarted, killed, followed by their standby, too slow, or
// closed for changes. What was typed stands there still, and nothing is saved twice or reported as saved when
// it is not.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "company/check.h"
#include "payments/invoice_payment/apform_payment.h"
#include "support/expect_error.h"
#include "support/faulty_engine.h"
#include "support/private_cluster.h"
#include "support/sample_host.h"

namespace brimley::testing {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using namespace std::chrono_literals;

namespace {

constexpr const char* kSavedMessage = "Add new Invoice complete";

struct RecordingWatch final : store::ConnectionWatch {
    void connection_lost() override { happened.emplace_back("lost"); }
    void connection_back(const std::string& reading_only_because) override {
        happened.emplace_back(reading_only_because.empty() ? "back" : reading_only_because);
    }
    bool go_on_waiting(std::chrono::milliseconds so_far) override {
        ++asked;
        if (while_waiting) while_waiting();
        return so_far < patience;
    }
    std::chrono::milliseconds commit_wait_max() const override { return commit_max; }

    std::vector<std::string> happened;
    int asked = 0;
    std::chrono::milliseconds patience = 1h;
    std::chrono::milliseconds commit_max = 1min;
    std::function<void()> while_waiting;
};

void make_company(const PrivateCluster& cluster) {
    company::create_company_file(cluster.uri("books"), company::SampleCompany{"anna"});
}

// anna at the invoice form of a company, with an invoice typed that is not saved yet.
struct Desk {
    explicit Desk(const std::string& uri)
        : company(store::open_company(uri, kernel::company_tables(), faulty(faults))), user(company) {
        company.workspace->watch(watch);
        user.ap.showform_APform_invoice();
        type_invoice();
    }
    void type_invoice() {
        enter(form(), {.lines = {{"5000", "NOTAX", "taxable amount", "100.00"}}});
        EXPECT_EQ(form().txtremark.type("stands here still"), controls::Refusal::none);
        (void)user.messages();
    }
    invoices::APform_invoice& form() { return *user.ap.frm_invoice; }
    std::vector<std::string> save() {
        EXPECT_EQ(form().press(101), controls::Refusal::none);
        return user.messages();
    }
    [[nodiscard]] bool still_typed() {
        return form().txtremark.text() == "stands here still" && form().txtdocno.text() == "** New **" &&
               form().mode() == frame::Mode::new_entry &&
               form().dbgrid1.cell(0, "purchase account") == "5000";
    }

    std::shared_ptr<RecordingWatch> watch = std::make_shared<RecordingWatch>();
    std::shared_ptr<Faults> faults = std::make_shared<Faults>();
    store::OpenCompany company;
    DeskOfUser user;
};

// The invoices that are stored, as somebody else sees them; the books agree.
int stored_invoices(const std::string& uri) {
    const auto other = store::open_company(uri, kernel::company_tables());
    EXPECT_THAT(company::check_company(*other.database), IsEmpty());
    return static_cast<int>(
        other.database->OpenRecordset("SELECT fkey FROM AP_header_table", store::RecordsetKind::snapshot)
            .RecordCount());
}

}  // namespace

class Outage : public ::testing::Test {
  protected:
    void SetUp() override { make_company(server); }

    PrivateCluster server;
    const std::string uri = server.uri("books");
};

// What only the night has time for.
class OutageInTheNight : public Outage {};

TEST_F(Outage, RestartBetweenTwoActsIsNoticedAndTheNextActGoesThrough) {
    Desk desk(uri);
    server.halt();
    server.resume();
    EXPECT_THAT(desk.save(), ElementsAre(kSavedMessage));
    EXPECT_THAT(desk.watch->happened, ElementsAre("lost", "back"));
    EXPECT_EQ(stored_invoices(uri), 1);
}

TEST_F(Outage, WhatWasTypedStandsThereUntilTheServerIsBackAndIsSavedThen) {
    Desk desk(uri);
    server.kill();
    for (int times = 0; times < 2; ++times) {
        EXPECT_THAT(desk.save(), Contains(frame::kLostForNowMessage));
        EXPECT_TRUE(desk.still_typed());
    }
    EXPECT_THAT(desk.watch->happened, ElementsAre("lost"));
    server.resume();
    EXPECT_THAT(desk.save(), ElementsAre(kSavedMessage));
    EXPECT_THAT(desk.watch->happened, ElementsAre("lost", "back"));
    EXPECT_EQ(stored_invoices(uri), 1);
    // The other commands go on as well: the next document, and the way back to this one.
    desk.type_invoice();
    EXPECT_THAT(desk.save(), ElementsAre(kSavedMessage));
    EXPECT_EQ(desk.form().press(107), controls::Refusal::none);
    EXPECT_EQ(stored_invoices(uri), 2);
}

// A vendor's accounts, a vendor's open items: half of them would be posted as if they were all.
TEST_F(Outage, EntryThatCouldNotBeReadWholeIsNotSavedUntilItIsBegunAnew) {
    Desk desk(uri);
    desk.faults->kind = store::ErrorKind::lost;
    desk.faults->arm(1, false);
    edit_line_cell(desk.form(), 0, "tax code", "GST5");
    EXPECT_GT(desk.company.workspace->lost_calls(), 0);
    EXPECT_THAT(desk.watch->happened, ElementsAre("lost"));
    desk.faults->disarm();
    for (int times = 0; times < 2; ++times)
        EXPECT_THAT(desk.save(), Contains(frame::kHalfReadMessage));
    // New offers to save it; that is refused as well.
    desk.user.desk.answers = {true, false};
    EXPECT_EQ(desk.form().press(105), controls::Refusal::none);
    EXPECT_EQ(desk.form().mode(), frame::Mode::new_entry);
    EXPECT_THAT(desk.save(), Contains(frame::kHalfReadMessage));
    EXPECT_EQ(stored_invoices(uri), 0);
    EXPECT_EQ(desk.form().press(105), controls::Refusal::none);
    EXPECT_EQ(desk.form().mode(), frame::Mode::read);
    desk.type_invoice();
    EXPECT_THAT(desk.save(), ElementsAre(kSavedMessage));
    EXPECT_EQ(stored_invoices(uri), 1);
}

TEST_F(Outage, FormIsNotOpenedWhileTheServerIsAwayAndTheOneBeforeStays) {
    Desk desk(uri);
    const auto before = desk.user.ap.frm_invoice;
    server.kill();
    desk.user.ap.showform_APform_payment();
    EXPECT_THAT(desk.user.messages(), ElementsAre(frame::kLostForNowMessage));
    EXPECT_EQ(desk.user.ap.frm_payment, nullptr);
    desk.user.ap.showform_APform_invoice("cn");
    EXPECT_THAT(desk.user.messages(), ElementsAre(frame::kLostForNowMessage));
    EXPECT_EQ(desk.user.ap.frm_invoice, before);
    EXPECT_TRUE(before->NotifyClients);
    EXPECT_EQ(desk.user.desk.open_forms.size(), 1U);
    EXPECT_TRUE(desk.still_typed());
    server.resume();
    EXPECT_THAT(desk.save(), ElementsAre(kSavedMessage));
    desk.user.ap.showform_APform_payment();
    ASSERT_NE(desk.user.ap.frm_payment, nullptr);
    EXPECT_FALSE(desk.user.ap.frm_payment->dbgrid1.columns.empty());
    EXPECT_EQ(stored_invoices(uri), 1);
}

// Another form of the same company was whole, and stays so.
TEST_F(Outage, CommandThatCouldNotReadItsListDoesNotKeepAnotherFormFromSaving) {
    Desk desk(uri);
    desk.user.ap.showform_APform_inquiry();
    desk.faults->kind = store::ErrorKind::lost;
    desk.faults->arm(1, false);
    EXPECT_EQ(desk.user.desk.open_forms.back()->press(frame::command::kFind), controls::Refusal::none);
    EXPECT_THAT(desk.user.messages(), Contains(frame::kLostForNowMessage));
    desk.faults->disarm();
    EXPECT_THAT(desk.save(), ElementsAre(kSavedMessage));
}

TEST_F(OutageInTheNight, KillInTheMiddleOfASaveLeavesNothingAndTheSaveIsDoneOnceLater) {
    Desk desk(uri);
    desk.faults->engine_fails_itself = true;
    desk.faults->on_fault = [&] { server.kill(); };
    desk.faults->arm(40, false);
    EXPECT_THAT(desk.save(), Contains(frame::kLostForNowMessage));
    EXPECT_TRUE(desk.still_typed());
    desk.faults->disarm();
    server.resume();
    EXPECT_EQ(stored_invoices(uri), 0);
    EXPECT_THAT(desk.save(), ElementsAre(kSavedMessage));
    EXPECT_EQ(stored_invoices(uri), 1);
}

TEST_F(OutageInTheNight, AnotherCompanyInTheSamePlaceIsNotConnectedTo) {
    Desk desk(uri);
    on_server(server.uri("postgres"), "DROP DATABASE books WITH (FORCE)");
    make_company(server);
    EXPECT_THAT(desk.save(), Contains(frame::kLostForNowMessage));
    EXPECT_THAT(desk.save(), Contains(frame::kLostForNowMessage));
    EXPECT_TRUE(desk.still_typed());
    EXPECT_EQ(stored_invoices(uri), 0);
}

TEST_F(Outage, OpenRecordsetsGoOnAndARowThatWasBeingEditedIsLost) {
    const auto company = store::open_company(uri, kernel::company_tables());
    const auto vendors = [&](const char* condition) {
        return company.database->OpenRecordset("SELECT * FROM Vendor_table" + std::string(condition),
                                               store::RecordsetKind::dynaset);
    };
    auto walked = vendors(" ORDER BY vendor_no");
    walked.MoveNext();
    auto edited = vendors(" WHERE vendor_no = 'V1003'");
    edited.Edit();
    edited.set("address", "lost");
    server.halt("immediate");
    EXPECT_FALSE(company.workspace->reconnect());
    expect_error(store::ErrorKind::lost, [&] { walked.MoveNext(); });
    server.resume();
    expect_error(store::ErrorKind::lost, [&] { walked.MoveNext(); });
    EXPECT_TRUE(company.workspace->reconnect());
    walked.MoveNext();
    EXPECT_EQ(walked.text("vendor_no"), "V1003");
    expect_error(store::ErrorKind::lost, [&] { edited.Update(); });
    walked.Edit();
    walked.set("address", "kept");
    walked.Update();
    EXPECT_EQ(on_server(uri, "SELECT address FROM brimley.vendor_table WHERE vendor_no = 'V1003'"), "kept");
}

// --- waiting ---

TEST_F(Outage, StatementThatTakesTooLongIsCancelledByTheUserAndTheEntryStays) {
    Desk desk(uri);
    on_server(
        uri,
        "CREATE FUNCTION public.slow() RETURNS trigger LANGUAGE plpgsql AS 'BEGIN PERFORM pg_sleep(60); "
        "RETURN new; END'");
    on_server(uri,
              "CREATE TRIGGER slow BEFORE INSERT ON brimley.ap_header_table FOR EACH ROW EXECUTE FUNCTION "
              "public.slow()");
    desk.watch->patience = 300ms;
    const auto begun = std::chrono::steady_clock::now();
    EXPECT_THAT(desk.save(), ::testing::Not(Contains(kSavedMessage)));
    EXPECT_LT(std::chrono::steady_clock::now() - begun, 20s);
    EXPECT_GT(desk.watch->asked, 0);
    EXPECT_TRUE(desk.still_typed());
    EXPECT_THAT(desk.watch->happened, IsEmpty());
    on_server(uri, "DROP FUNCTION public.slow CASCADE");
    EXPECT_THAT(desk.save(), ElementsAre(kSavedMessage));
    EXPECT_EQ(stored_invoices(uri), 1);
}

TEST_F(OutageInTheNight, StatementHasTheLimitOfTheUriAndOtherwiseFiveMinutes) {
    const auto limit_seen = [&](const std::string& from) {
        const auto company = store::open_company(from, kernel::company_tables());
        on_server(uri,
                  "CREATE FUNCTION note_limit() RETURNS trigger LANGUAGE plpgsql AS 'BEGIN new.address = "
                  "current_setting(''statement_timeout''); RETURN new; END'");
        on_server(uri,
                  "CREATE TRIGGER note BEFORE UPDATE ON brimley.vendor_table FOR EACH ROW EXECUTE FUNCTION "
                  "note_limit()");
        company.database->Execute("UPDATE Vendor_table SET address = 'x' WHERE vendor_no = 'V1003'");
        on_server(uri, "DROP FUNCTION note_limit() CASCADE");
        return on_server(uri, "SELECT address FROM brimley.vendor_table WHERE vendor_no = 'V1003'");
    };
    EXPECT_EQ(limit_seen(uri), "5min");
    EXPECT_EQ(limit_seen(uri + "&options=-c%20statement_timeout%3D7s"), "7s");
}

TEST_F(OutageInTheNight, NothingCanBeAskedOfTheCompanyWhileItsAnswerIsAwaited) {
    Desk desk(uri);
    on_server(
        uri,
        "CREATE FUNCTION public.slow() RETURNS trigger LANGUAGE plpgsql AS 'BEGIN PERFORM pg_sleep(0.5); "
        "RETURN new; END'");
    on_server(uri,
              "CREATE TRIGGER slow BEFORE INSERT ON brimley.ap_header_table FOR EACH ROW EXECUTE FUNCTION "
              "public.slow()");
    desk.watch->while_waiting = [&] {
        expect_error(store::ErrorKind::state, [&] {
            (void)desk.company.database->OpenRecordset("SELECT * FROM Vendor_table WHERE vendor_no = 'V1003'",
                                                       store::RecordsetKind::snapshot);
        });
    };
    EXPECT_THAT(desk.save(), ElementsAre(kSavedMessage));
    EXPECT_GT(desk.watch->asked, 0);
    EXPECT_EQ(desk.form().txtremark.text(), "stands here still");
}

// --- a standby ---

class Failover : public Outage {
  protected:
    void SetUp() override {
        Outage::SetUp();
        standby.emplace(&server);
    }
    // Both servers, of which the one that takes changes is wanted.
    [[nodiscard]] std::string either() const {
        return "postgresql:///books?user=brimley&target_session_attrs=read-write&host=" + server.folder() +
               "," + standby->folder();
    }

    [[nodiscard]] static std::string reading_only(const std::string& folders) {
        return "postgresql://" + folders +
               "/books is on a server that takes no changes, and can only be read";
    }

    std::optional<PrivateCluster> standby;
};

class FailoverInTheNight : public Failover {};

TEST_F(Failover, PromotedStandbyTakesOverAndTheEntryIsSavedThere) {
    Desk desk(either());
    EXPECT_THAT(desk.save(), ElementsAre(kSavedMessage));
    desk.type_invoice();
    server.kill();
    EXPECT_THAT(desk.save(), Contains(frame::kLostForNowMessage));
    EXPECT_TRUE(desk.still_typed());
    standby->promote();
    EXPECT_THAT(desk.save(), ElementsAre(kSavedMessage));
    EXPECT_THAT(desk.watch->happened, ElementsAre("lost", "back"));
    EXPECT_EQ(stored_invoices(standby->uri("books")), 2);
}

TEST_F(FailoverInTheNight, SaveThatTheStandbyHasIsToldAsStoredAfterTheFailover) {
    Desk desk(either());
    desk.faults->commit_done = true;
    desk.faults->kind = store::ErrorKind::lost;
    // The second save makes as many calls as the third.
    for (int saves = 0; saves < 2; ++saves) {
        desk.faults->arm(0, false);
        EXPECT_THAT(desk.save(), ElementsAre(kSavedMessage));
        desk.type_invoice();
    }
    desk.faults->arm(desk.faults->last_commit, true);
    EXPECT_THAT(desk.save(), ElementsAre(frame::kInDoubtForNowMessage));
    desk.faults->disarm();
    server.kill();
    standby->promote();
    EXPECT_THAT(desk.save(), ElementsAre(StartsWith(frame::kWasStoredMessage)));
    EXPECT_EQ(stored_invoices(standby->uri("books")), 3);
}

TEST_F(Failover, SaveThatTheStandbyDoesNotHaveIsToldAsNotStoredAndCanBeSavedThere) {
    Desk desk(either());
    standby->halt();
    desk.watch->commit_max = 300ms;
    EXPECT_THAT(desk.save(), ElementsAre(frame::kInDoubtForNowMessage));
    EXPECT_TRUE(desk.still_typed());
    server.kill();
    standby->resume();
    standby->promote();
    EXPECT_THAT(desk.save(), ElementsAre(frame::kWasNotStoredMessage));
    EXPECT_TRUE(desk.still_typed());
    EXPECT_EQ(stored_invoices(standby->uri("books")), 0);
    EXPECT_THAT(desk.save(), ElementsAre(kSavedMessage));
    EXPECT_EQ(stored_invoices(standby->uri("books")), 1);
}

// Committed here, and nobody knows whether anywhere else: it is not repeated, and not told as lost or stored.
TEST_F(FailoverInTheNight, CommitThatWaitsForALostStandbyStaysInDoubtUntilTheStandbyIsBack) {
    Desk desk(uri);
    standby->halt();
    desk.watch->commit_max = 300ms;
    EXPECT_THAT(desk.save(), ElementsAre(frame::kInDoubtForNowMessage));
    for (int times = 0; times < 2; ++times) {
        EXPECT_THAT(desk.save(), ElementsAre(frame::kUndecidedMessage));
        EXPECT_TRUE(desk.still_typed());
    }
    standby->resume();
    std::vector<std::string> told;
    for (int tries = 0; tries < 20 && (told.empty() || told.front() == frame::kUndecidedMessage); ++tries)
        told = desk.save();
    EXPECT_THAT(told, ElementsAre(StartsWith(frame::kWasStoredMessage)));
    EXPECT_EQ(stored_invoices(uri), 1);
}

TEST_F(FailoverInTheNight, CommitThatTheUserNoLongerWaitsForIsInDoubt) {
    Desk desk(uri);
    standby->halt();
    desk.watch->patience = 300ms;
    EXPECT_THAT(desk.save(), ElementsAre(frame::kInDoubtForNowMessage));
    EXPECT_THAT(desk.watch->happened, ElementsAre("lost"));
    standby->resume();
}

TEST_F(FailoverInTheNight, StandbyIsOpenedForReadingAndSaysSo) {
    // What was committed is there a moment later.
    const auto company = store::open_company(standby->uri("books"), kernel::company_tables());
    EXPECT_EQ(company.database->reading_only_because(), reading_only(standby->folder()));
    EXPECT_THAT(company::check_company(*company.database), IsEmpty());
    EXPECT_EQ(store::open_company(uri, kernel::company_tables()).database->reading_only_because(), "");
    on_server(uri, "ALTER DATABASE books SET default_transaction_read_only = on");
    EXPECT_EQ(store::open_company(uri, kernel::company_tables()).database->reading_only_because(),
              reading_only(server.folder()));
}

TEST_F(FailoverInTheNight, ReconnectionToAStandbySaysThatItOnlyReads) {
    Desk desk("postgresql:///books?user=brimley&host=" + server.folder() + "," + standby->folder());
    server.kill();
    // The first act may be under way when the loss shows.
    for (int times = 0; times < 2; ++times)
        EXPECT_THAT(desk.save(), ::testing::Not(Contains(kSavedMessage)));
    EXPECT_THAT(desk.watch->happened,
                ElementsAre("lost", reading_only(server.folder() + "," + standby->folder())));
    EXPECT_TRUE(desk.still_typed());
    standby->promote();
}

}  // namespace brimley::testing
