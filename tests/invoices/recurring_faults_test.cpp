// Faults while recurring templates are issued (support/fault_sweep.h).
#include "support/giving_up.h"
#include "support/lost_connections.h"
#include "support/recurring_templates.h"

namespace brimley::testing {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;

namespace {

constexpr const char* kGenerated = "Generate invoices complete";
constexpr const char* kGenerationFailed = "Generate invoice from on due recurring-invoice failed";

}  // namespace

class RecurringFaults : public ::testing::Test {
  public:
    // Two templates of vendors with different accounts, with taxes that are refunded and charged.
    struct Session : FaultedDesk {
        explicit Session(SharedCompany its_company) : FaultedDesk(std::move(its_company)) {
            if (company.list("SELECT fkey FROM AP_recur_header_table").empty()) {
                add_template(company, {.number = 1, .lines = {{105, 100, 5, "GST5"}, {107, 100, 7, "EXP7"}}});
                add_template(company,
                             {.number = 2, .vendor = "V2001", .lines = {{112.35, 100, 12.35, "STACK"}}});
            }
            list_due(user);
        }
        invoices::APreport_recur_inquiry& form() { return *user.ap.frm_recur_inquiry; }
    };

    static FaultedAct<Session> generation() {
        return {[](SharedCompany company) { return std::make_unique<Session>(std::move(company)); },
                [](Session& session) { generate(session.form()); },
                [](Session& session) { return session.form().dbgrid1.array.used_rows() == 0; }, kGenerated,
                check_failed};
    }
    // The list stays, with its marks.
    static void check_failed(Session& session) {
        const auto messages = session.user.messages();
        EXPECT_THAT(messages, Not(Contains(kGenerated)));
        EXPECT_THAT(messages, Contains(kGenerationFailed));
        EXPECT_EQ(session.form().dbgrid1.cell(1, "due"), "True");
        EXPECT_FALSE(session.form().Progress1.visible());
    }
    static int sweep(store::ErrorKind kind, bool for_good) {
        return sweep_faults(generation(), kind, for_good);
    }
};

// More engine calls of this run than these give it up when they fail.
constexpr int kFewestGenerationFailures = 40;

TEST_F(RecurringFaults, IoFailureOnceLeavesNothing) {
    EXPECT_GT(sweep(store::ErrorKind::io, false), kFewestGenerationFailures);
}

TEST_F(RecurringFaults, IoFailureForGoodLeavesNothing) {
    EXPECT_GT(sweep(store::ErrorKind::io, true), kFewestGenerationFailures);
}

TEST_F(RecurringFaults, ConstraintFailureOnceLeavesNothingOrIsRetried) {
    EXPECT_GT(sweep(store::ErrorKind::constraint, false), kFewestGenerationFailures);
}

TEST_F(RecurringFaults, ConstraintFailureForGoodLeavesNothing) {
    EXPECT_GT(sweep(store::ErrorKind::constraint, true), kFewestGenerationFailures);
}

TEST_F(RecurringFaults, LockOnceLeavesNothingOrIsRetried) {
    EXPECT_GT(sweep(store::ErrorKind::locked, false), kFewestGenerationFailures);
}

TEST_F(RecurringFaults, LockForGoodLeavesNothing) {
    EXPECT_GT(sweep(store::ErrorKind::locked, true), kFewestGenerationFailures);
}

// Only the first run of a connection prepares its statements. The list that follows a run may fail as well,
// and the invoices stay then.
TEST_F(RecurringFaults, FailureInTheFirstRunOfAConnectionLeavesNothing) {
    const auto act = generation();
    const SharedCompany company = new_company();
    int nth = 0;
    for (bool done = false; !done && !HasFailure();) {
        SCOPED_TRACE(fmt::format("call {}", ++nth));
        const auto session = begun(act, company);
        EXPECT_TRUE(session->with_fault(nth, store::ErrorKind::io, false, [&] { act.carry_out(*session); }));
        done = session->state_before != session->state.now();
        if (!done) check_nothing_left(*session, act);
    }
    EXPECT_GT(nth, kFewestGenerationFailures);
    EXPECT_EQ(company->list("SELECT docno FROM AP_header_table"), "ip1 | ip2");
    EXPECT_EQ(company->list("SELECT docno FROM GL_header_table"), "gl1 | gl2");
}

class EveryRecurringFault : public RecurringFaults, public SweptParameters<RecurringFaults::Session> {
  public:
    static std::vector<SweptAct<Session>> acts() { return {{"Generation", generation()}}; }
};

TEST_P(EveryRecurringFault, LeavesNothingOrIsRetried) { sweep_in_the_night(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Night, EveryRecurringFault,
                         ::testing::Combine(::testing::ValuesIn(EveryRecurringFault::acts()),
                                            ::testing::ValuesIn(kSweptFaults)),
                         swept_name<EveryRecurringFault::Session>);

class LostRecurringConnections : public RecurringFaults, public LostParameters<RecurringFaults::Session> {};

TEST_P(LostRecurringConnections, AreToldAndNothingIsDoneTwice) { lose_connections_in_the_night(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Night, LostRecurringConnections,
                         ::testing::Combine(::testing::ValuesIn(EveryRecurringFault::acts()),
                                            ::testing::ValuesIn(kLostConnections)),
                         lost_name<RecurringFaults::Session>);

TEST_F(RecurringFaults, LostConnectionIsToldAndNothingIsDoneTwice) {
    lose_some_connections(EveryRecurringFault::acts());
}

TEST_F(RecurringFaults, RunIsGivenUpToWhoWritesAlone) { give_up_to_who_is_alone(generation(), 10); }

// What nobody has to write nobody has to wait for.
TEST_F(RecurringFaults, ListingWritesOnlyWhenATemplateHasExpired) {
    const auto session = begun(generation());
    session->faults->only_statements_with = "UPDATE \"AP_recur_header_table\"";
    const auto list_again = [&] {
        EXPECT_EQ(session->form().press(invoices::kListDue), controls::Refusal::none);
    };
    EXPECT_FALSE(session->with_fault(1, store::ErrorKind::io, true, list_again));
    session->user.desk.clock = *store::DateTime::from_iso("2027-01-01 09:30:00");
    EXPECT_TRUE(session->with_fault(1, store::ErrorKind::io, true, list_again));
}

// Counters of keys are not used.
TEST_F(RecurringFaults, RowHeldOnAServerIsWaitedForAndThenGivenUp) {
    for (const HeldTable& held : kHeldTables)
        if (held.name != std::string("Next_number_fkey_table")) give_up(generation(), held);
}

TEST_F(RecurringFaults, CounterOfKeysMayBeHeld) {
    const auto act = generation();
    const auto session = begun(act);
    session->faults->only_row_locks = true;
    session->faults->only_statements_with = "Next_number_fkey_table";
    EXPECT_FALSE(session->with_fault(1, store::ErrorKind::locked, true, [&] { act.carry_out(*session); }));
    EXPECT_TRUE(act.done(*session));
    EXPECT_THAT(session->user.messages(), ElementsAre(kGenerated));
}

}  // namespace brimley::testing
