// Faults in the save, the void and the edit of each kind of payment (support/fault_sweep.h).
#include <list>

#include "kinds_of_payments.h"
#include "support/giving_up.h"
#include "support/lost_connections.h"

namespace brimley::testing {

using ::testing::Contains;

namespace {

// A payment of one kind, entered and not saved.
struct KindSession : FaultedDesk {
    KindSession(SharedCompany its_company, const KindOfPayment& its_kind)
        : FaultedDesk(std::move(its_company)), kind(its_kind), form(kind.enter(user)) {}
    void press(int id) { EXPECT_EQ(form.press(id), controls::Refusal::none); }

    const KindOfPayment& kind;
    payments::PaymentForm& form;
};

void save_payment(KindSession& session) { session.press(101); }

void void_saved_payment(KindSession& session) {
    session.user.desk.answers = {true};
    session.press(133);
    session.user.desk.answers.clear();
}

void saved_nothing(KindSession& session) {
    EXPECT_THAT(session.user.messages(), Contains(session.kind.save_failed));
    EXPECT_EQ(session.form.mode(), frame::Mode::new_entry);
    EXPECT_EQ(session.form.txtdocno.text(), "** New **");
    EXPECT_EQ(session.form.txtfkey.text(), "");
    EXPECT_EQ(session.form.txtglfkey.text(), "");
}

void voided_nothing(KindSession& session) {
    EXPECT_THAT(session.user.messages(), Contains(session.kind.void_failed));
    EXPECT_EQ(session.form.chkvoid.value(), 0);
}

void edited_nothing(KindSession& session) {
    EXPECT_THAT(session.user.messages(), Contains("Update failed."));
    EXPECT_EQ(session.form.mode(), frame::Mode::edit);
    const std::string stored = session.company.list("SELECT GLFKEY FROM Payment_header_table WHERE fkey = '" +
                                                    session.form.txtfkey.text() + "'");
    EXPECT_EQ(session.form.txtglfkey.text(), stored);
}

FaultedAct<KindSession> act_on(const KindOfPayment& kind, void (*prepare)(KindSession& session),
                               void (*carry_out)(KindSession& session), const char* message,
                               void (*check_failed)(KindSession& session)) {
    const auto begin = [&kind, prepare](SharedCompany company) {
        auto session = std::make_unique<KindSession>(std::move(company), kind);
        prepare(*session);
        return session;
    };
    return {begin, carry_out, [](KindSession& session) { return !session.changed_tables().empty(); }, message,
            check_failed};
}

FaultedAct<KindSession> saving(const KindOfPayment& kind) {
    return act_on(
        kind, [](KindSession&) {}, save_payment, kind.saved, saved_nothing);
}

FaultedAct<KindSession> voiding(const KindOfPayment& kind) {
    return act_on(kind, save_payment, void_saved_payment, kind.voided, voided_nothing);
}

FaultedAct<KindSession> voiding_in_a_later_period(const KindOfPayment& kind) {
    const auto prepare = [](KindSession& session) {
        EXPECT_EQ(session.form.txtpaydate.type("16/02/2026"), controls::Refusal::none);
        save_payment(session);
    };
    return act_on(kind, prepare, void_saved_payment, kind.voided, voided_nothing);
}

FaultedAct<KindSession> editing(const KindOfPayment& kind) {
    const auto prepare = [](KindSession& session) {
        save_payment(session);
        session.press(106);
        session.kind.change(session.user);
    };
    return act_on(kind, prepare, save_payment, kind.edited, edited_nothing);
}

// Acts make far more engine calls than this.
constexpr int kFewestFailuresOfAKind = 20;

}  // namespace

class EachKindOfPayment : public ::testing::TestWithParam<KindOfPayment> {};

TEST_P(EachKindOfPayment, IoFailureOnceInASaveLeavesNothing) {
    EXPECT_GT(sweep_faults(saving(GetParam()), store::ErrorKind::io, false), kFewestFailuresOfAKind);
}

TEST_P(EachKindOfPayment, LockForGoodInASaveLeavesNothing) {
    EXPECT_GT(sweep_faults(saving(GetParam()), store::ErrorKind::locked, true), kFewestFailuresOfAKind);
}

TEST_P(EachKindOfPayment, ConstraintFailureOnceInAVoidLeavesNothingOrIsRetried) {
    EXPECT_GT(sweep_faults(voiding(GetParam()), store::ErrorKind::constraint, false), kFewestFailuresOfAKind);
}

TEST_P(EachKindOfPayment, IoFailureOnceInAVoidInALaterPeriodLeavesNothing) {
    EXPECT_GT(sweep_faults(voiding_in_a_later_period(GetParam()), store::ErrorKind::io, false),
              kFewestFailuresOfAKind);
}

TEST_P(EachKindOfPayment, RowHeldOnAServerIsWaitedForAndThenGivenUp) {
    for (const HeldTable& held : kHeldTables)
        give_up(saving(GetParam()), held);
}

constexpr auto kNameOfKind = [](const ::testing::TestParamInfo<KindOfPayment>& kind) {
    return std::string(kind.param.name);
};

INSTANTIATE_TEST_SUITE_P(Kinds, EachKindOfPayment, ::testing::ValuesIn(kinds_of_payments()), kNameOfKind);

class EachKindWithAnEdit : public ::testing::TestWithParam<KindOfPayment> {
  public:
    static std::vector<KindOfPayment> kinds() {
        std::vector<KindOfPayment> kinds = kinds_of_payments();
        std::erase_if(kinds, [](const KindOfPayment& kind) { return kind.change == nullptr; });
        return kinds;
    }
};

TEST_P(EachKindWithAnEdit, IoFailureOnceInAnEditLeavesNothing) {
    EXPECT_GT(sweep_faults(editing(GetParam()), store::ErrorKind::io, false), 2);
}

INSTANTIATE_TEST_SUITE_P(Kinds, EachKindWithAnEdit, ::testing::ValuesIn(EachKindWithAnEdit::kinds()),
                         kNameOfKind);

// --- the night run ---

namespace {

std::vector<SweptAct<KindSession>> acts_of_all_kinds() {
    std::vector<SweptAct<KindSession>> acts;
    static std::list<std::string> names;
    const auto add = [&](const char* act, const KindOfPayment& kind, FaultedAct<KindSession> faulted) {
        names.push_back(std::string(act) + kind.name);
        acts.push_back({names.back().c_str(), std::move(faulted)});
    };
    for (const KindOfPayment& kind : kinds_of_payments()) {
        add("Save", kind, saving(kind));
        add("Void", kind, voiding(kind));
        add("LaterVoid", kind, voiding_in_a_later_period(kind));
        if (kind.change != nullptr) add("Edit", kind, editing(kind));
    }
    return acts;
}

}  // namespace

class EveryFaultOfAKind : public ::testing::Test, public SweptParameters<KindSession> {};

TEST_P(EveryFaultOfAKind, LeavesNothingOrIsRetried) { sweep_in_the_night(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Night, EveryFaultOfAKind,
                         ::testing::Combine(::testing::ValuesIn(acts_of_all_kinds()),
                                            ::testing::ValuesIn(kSweptFaults)),
                         swept_name<KindSession>);

class LostConnectionsOfAKind : public ::testing::Test, public LostParameters<KindSession> {};

TEST_P(LostConnectionsOfAKind, AreToldAndNothingIsDoneTwice) { lose_connections_in_the_night(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Night, LostConnectionsOfAKind,
                         ::testing::Combine(::testing::ValuesIn(acts_of_all_kinds()),
                                            ::testing::ValuesIn(kLostConnections)),
                         lost_name<KindSession>);

}  // namespace brimley::testing
