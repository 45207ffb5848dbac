// Faults in the save of a template (support/fault_sweep.h).
#include "support/giving_up.h"
#include "support/lost_connections.h"
#include "support/template_entry.h"

namespace brimley::testing {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

class TemplateFaults : public ::testing::Test {
  public:
    struct Session : FaultedDesk {
        explicit Session(SharedCompany its_company) : FaultedDesk(std::move(its_company)) {
            user.ap.showform_APform_invoice();
            enter_template(form());
        }
        invoices::APform_invoice& form() { return *user.ap.frm_invoice; }
    };

    static FaultedAct<Session> save() {
        return {[](SharedCompany company) { return std::make_unique<Session>(std::move(company)); },
                [](Session& session) { EXPECT_EQ(session.form().press(101), controls::Refusal::none); },
                [](Session& session) { return session.form().mode() == frame::Mode::read; },
                "Add Recurring invoice complete", check_failed};
    }
    static void check_failed(Session& session) {
        EXPECT_THAT(session.user.messages(), Not(Contains("Add Recurring invoice complete")));
        EXPECT_EQ(session.form().mode(), frame::Mode::new_entry);
        EXPECT_EQ(session.form().txtdocno.text(), "** New **");
        EXPECT_EQ(session.form().txtfkey.text() + session.form().txtdoctype.text(), "");
    }
    static int sweep(store::ErrorKind kind, bool for_good) { return sweep_faults(save(), kind, for_good); }
};

// More engine calls of this save than these give it up when they fail; a counter that cannot be taken is
// tried again.
constexpr int kFewestTemplateFailures = 6;

TEST_F(TemplateFaults, IoFailureOnceLeavesNothing) {
    EXPECT_GT(sweep(store::ErrorKind::io, false), kFewestTemplateFailures);
}

TEST_F(TemplateFaults, IoFailureForGoodLeavesNothing) {
    EXPECT_GT(sweep(store::ErrorKind::io, true), kFewestTemplateFailures);
}

TEST_F(TemplateFaults, ConstraintFailureOnceLeavesNothingOrIsRetried) {
    EXPECT_GT(sweep(store::ErrorKind::constraint, false), kFewestTemplateFailures);
}

TEST_F(TemplateFaults, ConstraintFailureForGoodLeavesNothing) {
    EXPECT_GT(sweep(store::ErrorKind::constraint, true), kFewestTemplateFailures);
}

TEST_F(TemplateFaults, LockOnceLeavesNothingOrIsRetried) {
    // One fewer: a lock that goes away while a counter is taken is waited out.
    EXPECT_GE(sweep(store::ErrorKind::locked, false), kFewestTemplateFailures);
}

TEST_F(TemplateFaults, LockForGoodLeavesNothing) {
    EXPECT_GT(sweep(store::ErrorKind::locked, true), kFewestTemplateFailures);
}

class FirstTemplate : public TemplateFaults, public ::testing::WithParamInterface<int> {};

TEST_P(FirstTemplate, FailureInTheFirstSaveOfAConnectionLeavesNothing) {
    EXPECT_GT(sweep_first_act(save(), GetParam()), kFewestTemplateFailures);
}

INSTANTIATE_TEST_SUITE_P(Sampled, FirstTemplate, ::testing::Values(sampled_stride()));
INSTANTIATE_TEST_SUITE_P(Night, FirstTemplate, ::testing::Values(1));

class EveryTemplateFault : public TemplateFaults, public SweptParameters<TemplateFaults::Session> {
  public:
    static std::vector<SweptAct<Session>> acts() { return {{"Save", save()}}; }
};

TEST_P(EveryTemplateFault, LeavesNothingOrIsRetried) { sweep_in_the_night(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Night, EveryTemplateFault,
                         ::testing::Combine(::testing::ValuesIn(EveryTemplateFault::acts()),
                                            ::testing::ValuesIn(kSweptFaults)),
                         swept_name<EveryTemplateFault::Session>);

class LostTemplateConnections : public TemplateFaults, public LostParameters<TemplateFaults::Session> {};

TEST_P(LostTemplateConnections, AreToldAndNothingIsDoneTwice) { lose_connections_in_the_night(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Night, LostTemplateConnections,
                         ::testing::Combine(::testing::ValuesIn(EveryTemplateFault::acts()),
                                            ::testing::ValuesIn(kLostConnections)),
                         lost_name<TemplateFaults::Session>);

TEST_F(TemplateFaults, SaveIsGivenUpToWhoWritesAlone) { give_up_to_who_is_alone(save(), 10); }

// The kernel draws a number with errors ignored: what failed there, as a counter locked while it is written,
// comes back as no number.
TEST_F(TemplateFaults, FailureIgnoredWhileANumberIsDrawnIsReportedOnce) {
    const auto act = save();
    for (const std::size_t counter : {0U, 1U}) {
        for (const auto kind : {store::ErrorKind::io, store::ErrorKind::locked}) {
            SCOPED_TRACE(kHeldTables[counter].name);
            const auto session = begun(act);
            session->faults->only_statements_with =
                fmt::format("UPDATE \"{}\" SET", kHeldTables[counter].name);
            EXPECT_TRUE(session->with_fault(1, kind, true, [&] { act.carry_out(*session); }));
            EXPECT_THAT(session->user.messages(), ElementsAre("a failure made by the test"));
            check_nothing_left(*session, act);
        }
    }
}

// A counter that stays locked has not failed: the waits end without a number, and nothing is said.
TEST_F(TemplateFaults, CounterThatSomebodyHoldsIsGivenUpWithoutAMessage) {
    const auto act = save();
    for (const std::size_t counter : {0U, 1U}) {
        SCOPED_TRACE(kHeldTables[counter].name);
        const auto session = begun(act);
        session->faults->only_row_locks = true;
        session->faults->only_statements_with = kHeldTables[counter].name;
        EXPECT_TRUE(session->with_fault(1, store::ErrorKind::locked, true, [&] { act.carry_out(*session); }));
        EXPECT_THAT(session->user.messages(), IsEmpty());
        check_nothing_left(*session, act);
    }
}

TEST_F(TemplateFaults, RowHeldOnAServerIsWaitedForAndThenGivenUp) {
    for (const std::size_t counter : {0U, 1U})
        give_up(save(), kHeldTables[counter]);
}

TEST_F(TemplateFaults, LostConnectionIsToldAndNothingIsDoneTwice) {
    lose_some_connections(EveryTemplateFault::acts());
}

}  // namespace brimley::testing
