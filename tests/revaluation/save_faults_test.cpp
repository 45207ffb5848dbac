// Faults in the save of a run (support/fault_sweep.h).
#include "revaluation_entry.h"
#include "support/giving_up.h"
#include "support/lost_connections.h"

namespace brimley::testing {

using ::testing::Contains;

namespace {

// A run that is found and not saved.
struct RevaluationSession : FaultedDesk {
    explicit RevaluationSession(SharedCompany its_company) : FaultedDesk(std::move(its_company)) {
        add_three_items(company);
        enter_revaluation(user);
    }
    revaluation::APform_revalue& form() { return *user.ap.frm_revalue; }
};

void save_revaluation(RevaluationSession& session) {
    EXPECT_EQ(session.form().press(101), controls::Refusal::none);
}

void saved_no_revaluation(RevaluationSession& session) {
    EXPECT_THAT(session.user.messages(), Contains("Add new revaluation failed"));
    EXPECT_EQ(session.form().mode(), frame::Mode::new_entry);
    EXPECT_EQ(session.form().txtdocno.text(), "** New **");
    EXPECT_EQ(session.form().txtfkey.text(), "");
    EXPECT_EQ(session.form().txtglfkey.text(), "");
    EXPECT_EQ(session.form().dbgrid1.cell(0, "document no"), "A");
    EXPECT_EQ(session.form().dbgrid2.cell(0, "account no"), "2010");
}

FaultedAct<RevaluationSession> saving_revaluation() {
    return {[](SharedCompany company) { return std::make_unique<RevaluationSession>(std::move(company)); },
            save_revaluation, [](RevaluationSession& session) { return !session.changed_tables().empty(); },
            "Add new revaluation complete", saved_no_revaluation};
}

// A save makes far more engine calls than this.
constexpr int kFewestFailures = 20;

}  // namespace

TEST(RevaluationFaults, IoFailureOnceInASaveLeavesNothing) {
    EXPECT_GT(sweep_faults(saving_revaluation(), store::ErrorKind::io, false), kFewestFailures);
}

TEST(RevaluationFaults, LockForGoodInASaveLeavesNothing) {
    EXPECT_GT(sweep_faults(saving_revaluation(), store::ErrorKind::locked, true), kFewestFailures);
}

TEST(RevaluationFaults, ConstraintFailureOnceLeavesNothingOrIsRetried) {
    EXPECT_GT(sweep_faults(saving_revaluation(), store::ErrorKind::constraint, false), kFewestFailures);
}

TEST(RevaluationFaults, SaveIsGivenUpToWhoWritesAlone) { give_up_to_who_is_alone(saving_revaluation(), 10); }

TEST(RevaluationFaults, RowHeldOnAServerIsWaitedForAndThenGivenUp) {
    for (const HeldTable& held : kHeldTables)
        give_up(saving_revaluation(), held);
}

TEST(RevaluationFaults, LostConnectionIsToldAndNothingIsDoneTwice) {
    lose_some_connections<RevaluationSession>({{"Save", saving_revaluation()}});
}

// Looking for items changes nothing, whatever fails; what could not be read counts for nothing.
TEST(RevaluationFaults, FailureInARunStoresNothing) {
    RevaluationSession session(new_company());
    session.remember_tables();
    for (int nth = 1;; ++nth) {
        const bool reached = session.with_fault(nth, store::ErrorKind::io, false, [&] {
            EXPECT_EQ(session.form().press(104), controls::Refusal::none);
        });
        EXPECT_EQ(session.changed_tables(), "") << nth;
        EXPECT_EQ(session.form().mode(), frame::Mode::new_entry) << nth;
        if (!reached) break;
    }
    EXPECT_EQ(session.form().dbgrid2.cell(0, "credit (USD)"), "45.00");
}

// --- the night run ---

class EveryFaultOfARevaluation : public ::testing::Test, public SweptParameters<RevaluationSession> {};

TEST_P(EveryFaultOfARevaluation, LeavesNothingOrIsRetried) { sweep_in_the_night(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Night, EveryFaultOfARevaluation,
                         ::testing::Combine(::testing::Values(SweptAct<RevaluationSession>{
                                                "Save", saving_revaluation()}),
                                            ::testing::ValuesIn(kSweptFaults)),
                         swept_name<RevaluationSession>);

class LostConnectionsOfARevaluation : public ::testing::Test, public LostParameters<RevaluationSession> {};

TEST_P(LostConnectionsOfARevaluation, AreToldAndNothingIsDoneTwice) {
    lose_connections_in_the_night(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Night, LostConnectionsOfARevaluation,
                         ::testing::Combine(::testing::Values(SweptAct<RevaluationSession>{
                                                "Save", saving_revaluation()}),
                                            ::testing::ValuesIn(kLostConnections)),
                         lost_name<RevaluationSession>);

}  // namespace brimley::testing
