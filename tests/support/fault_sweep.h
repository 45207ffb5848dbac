// Each engine call of an act is made to fail, one after the other, and each time nothing of the act may be
// left, counters included.
//
// A form whose act has failed stays as it was, with its entry, so the act is tried again on the same form
// with the fault one call later, until it is not reached by its fault any more. An act that a retry has
// carried over its fault must have stored exactly what it stores without faults.
//
// A connection that is lost stays so: there each fault meets a desk and a company of its own
// (support/lost_connections.h). What is given up after its waits is in support/giving_up.h.
//
// A form's tests give the way to the act (FaultedAct::begin), the act, and how its end shows.
#pragma once

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "support/all_tables.h"
#include "support/committed_state.h"
#include "support/faulty_engine.h"
#include "support/sample_host.h"

namespace brimley::testing {

using SharedCompany = std::shared_ptr<CompanyCopy>;

inline SharedCompany new_company() { return std::make_shared<CompanyCopy>(sample_original()); }

// A company, its user on an engine that can be made to fail, and a second look at the company from outside.
struct FaultedDesk {
    explicit FaultedDesk(SharedCompany its_company)
        : shared_company(std::move(its_company)),
          faulty_company(company.second_user(faulty(faults))),
          user(faulty_company) {
        // An account that has the currency already is refreshed when the look at it fails; let that be no
        // difference.
        company.db().Execute("UPDATE Account_currency_table SET Description = ' ', revalue = TRUE");
    }
    void remember_tables() {
        state_before = state.now();
        before = all_tables(company.db());
    }
    [[nodiscard]] std::string changed_tables() {
        return state.now() == state_before ? "" : difference(before, all_tables(company.db()));
    }
    // Fails the n-th call of what is done, once or from then on. Whether the fault was reached.
    template <class Done>
    bool with_fault(int nth, store::ErrorKind kind, bool for_good, Done&& done) {
        faults->kind = kind;
        faults->arm(nth, for_good);
        std::forward<Done>(done)();
        const bool reached = faults->calls >= nth;
        faults->disarm();
        return reached;
    }

    std::shared_ptr<Faults> faults = std::make_shared<Faults>();
    SharedCompany shared_company;
    CompanyCopy& company = *shared_company;
    CommittedState state{company.path()};
    store::OpenCompany faulty_company;  // opened last: the connection that can be broken (lost_connections.h)
    DeskOfUser user;
    std::string state_before;
    AllTables before;
};

template <class Session>  // a FaultedDesk with a form
struct FaultedAct {
    // All that comes before the act, without faults.
    std::function<std::unique_ptr<Session>(SharedCompany company)> begin;
    void (*carry_out)(Session& session);
    bool (*done)(Session& session);
    const char* message;  // when it is done; null: it says nothing
    void (*check_failed)(Session& session);
};

template <class Session>
std::unique_ptr<Session> begun(const FaultedAct<Session>& act, SharedCompany company = new_company()) {
    auto session = act.begin(std::move(company));
    static_cast<void>(session->user.messages());
    session->remember_tables();
    return session;
}

// What the act leaves behind without faults.
template <class Session>
AllTables tables_after(const FaultedAct<Session>& act) {
    const auto session = begun(act);
    act.carry_out(*session);
    EXPECT_TRUE(act.done(*session));
    EXPECT_NE(session->changed_tables(), "");
    return all_tables(session->company.db());
}

template <class Session>
void check_nothing_left(Session& session, const FaultedAct<Session>& act) {
    EXPECT_EQ(session.changed_tables(), "");
    EXPECT_FALSE(session.faulty_company.workspace->in_transaction());
    act.check_failed(session);
}

// How many calls there are from one that fails to the next: none is left out on files in the plain build, nor
// in the night. Five meets all of those that acts repeat in twos, threes and fours.
inline int sampled_stride() {
#ifdef BRIMLEY_SANITIZED
    return 5;
#else
    return tests_run_on_server() ? 5 : 1;
#endif
}

// Returns how many failures of the act were seen, or stand for those between.
template <class Session>
int sweep_faults(const FaultedAct<Session>& act, store::ErrorKind kind, bool for_good,
                 int stride = sampled_stride()) {
    const AllTables expected = tables_after(act);
    auto session = begun(act);
    int failed = 0;
    for (int nth = 1;; nth += stride) {
        SCOPED_TRACE(fmt::format("call {}", nth));
        const bool reached = session->with_fault(nth, kind, for_good, [&] { act.carry_out(*session); });
        const bool done = act.done(*session);
        if (done) {
            if (act.message != nullptr) {
                EXPECT_THAT(session->user.messages(), ::testing::Contains(act.message));
            }
            EXPECT_EQ(difference(expected, all_tables(session->company.db())), "");
        } else {
            check_nothing_left(*session, act);
            ++failed;
        }
        ::testing::Test::RecordProperty("failed_acts", failed);
        if (::testing::Test::HasFailure() || !reached) return failed * stride;
        if (done) session = begun(act);
    }
}

// --- the night run: every act with every fault ---

struct SweptFault {
    const char* name;
    store::ErrorKind kind;
    bool for_good;
};
inline const std::vector<SweptFault> kSweptFaults{
    {"IoOnce", store::ErrorKind::io, false},
    {"IoForGood", store::ErrorKind::io, true},
    {"ConstraintOnce", store::ErrorKind::constraint, false},
    {"ConstraintForGood", store::ErrorKind::constraint, true},
    {"LockOnce", store::ErrorKind::locked, false},
    {"LockForGood", store::ErrorKind::locked, true},
};

template <class Session>
struct SweptAct {
    const char* name;
    FaultedAct<Session> act;
};

// For a suite with the parameters SweptAct and SweptFault.
template <class Session>
using SweptParameters = ::testing::WithParamInterface<std::tuple<SweptAct<Session>, SweptFault>>;

template <class Session>
std::string swept_name(const ::testing::TestParamInfo<std::tuple<SweptAct<Session>, SweptFault>>& info) {
    return std::string(std::get<0>(info.param).name) + "_" + std::get<1>(info.param).name;
}

template <class Session>
void sweep_in_the_night(const std::tuple<SweptAct<Session>, SweptFault>& parameters) {
    const auto& [swept, fault] = parameters;
    EXPECT_GT(sweep_faults(swept.act, fault.kind, fault.for_good, 1), 0);
}

// Only the first act of a connection prepares its statements: here each fault meets a connection of its own.
// The company stays the same, since a failed act leaves nothing; what comes before the act may not either.
// Returns how many calls the act failed at, those between the sampled ones included.
template <class Session>
int sweep_first_act(const FaultedAct<Session>& act, int stride) {
    const SharedCompany company = new_company();
    for (int nth = 1;; nth += stride) {
        SCOPED_TRACE(fmt::format("call {}", nth));
        const auto session = begun(act, company);
        const bool reached =
            session->with_fault(nth, store::ErrorKind::io, false, [&] { act.carry_out(*session); });
        ::testing::Test::RecordProperty("failed_acts", nth - 1);
        if (!reached) return nth - 1;
        check_nothing_left(*session, act);
        if (::testing::Test::HasFailure()) return nth;
    }
}

}  // namespace brimley::testing
