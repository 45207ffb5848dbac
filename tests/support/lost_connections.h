// Each engine call of an act loses the connection, one after the other: the user is told so, what was not
// committed is gone, and what has been is whole. A commit without an answer is told to be in doubt.
//
// A file cannot be reached again: whoever presses again is told again, and nothing is done twice. A server is
// connected to by the next press: an act that was lost is done then, once, as if nothing had been; of one in
// doubt only what became of it is told.
//
// On the server the connection really breaks, too: the server ends it before the call is made.
#pragma once

#include <algorithm>
#include <set>

#include "support/fault_sweep.h"

namespace brimley::testing {

struct LostConnection {
    const char* name;
    bool commit_done;  // when it is lost in the commit, that has been carried out
    bool really;       // broken by the server; else made up
};
inline const std::vector<LostConnection> kLostConnections{
    {"CommitNotDone", false, false},
    {"CommitDone", true, false},
    {"Broken", false, true},  // on files as the first
};

// Ends the connection to the company that was opened last.
inline void break_last_connection(const std::string& company) {
    on_server(company,
              "SELECT pg_terminate_backend(pid, 5000) FROM pg_stat_activity WHERE datname = "
              "current_database() AND pid <> pg_backend_pid() ORDER BY backend_start DESC LIMIT 1");
}

// An act that nothing has disturbed.
struct WholeAct {
    AllTables tables;  // behind it
    int calls = 0;
    int commit = 0;  // which call it was
};

template <class Session>
WholeAct whole_act(const FaultedAct<Session>& act) {
    const auto session = begun(act);
    session->faults->arm(0, false);
    act.carry_out(*session);
    EXPECT_TRUE(act.done(*session));
    return {all_tables(session->company.db()), session->faults->calls, session->faults->last_commit};
}

inline void expect_told_once(const std::vector<std::string>& messages, const std::string& text) {
    EXPECT_EQ(std::count(messages.begin(), messages.end(), text), 1) << text;
}

// Takes the first message of this text away.
inline void take_message(std::vector<std::string>& messages, const std::string& text) {
    const auto found = std::find(messages.begin(), messages.end(), text);
    if (found != messages.end()) messages.erase(found);
}

inline std::string lost_message(bool in_doubt) {
    if (tests_run_on_server()) return in_doubt ? frame::kInDoubtForNowMessage : frame::kLostForNowMessage;
    return in_doubt ? frame::kInDoubtMessage : frame::kLostMessage;
}

// The user presses again, on a server.
template <class Session>
void check_reconnected(Session& session, const FaultedAct<Session>& act, const WholeAct& whole, bool in_doubt,
                       bool stored) {
    auto& messages = session.user.desk.messages;
    messages.clear();
    act.carry_out(session);
    if (!in_doubt) {
        EXPECT_TRUE(act.done(session)) << ::testing::PrintToString(messages);
        EXPECT_EQ(difference(whole.tables, all_tables(session.company.db())), "");
        return;
    }
    const std::string told = stored ? frame::kWasStoredMessage : frame::kWasNotStoredMessage;
    EXPECT_THAT(messages, ::testing::Contains(::testing::StartsWith(told)));
    if (stored) {
        EXPECT_EQ(difference(whole.tables, all_tables(session.company.db())), "");
    } else {
        EXPECT_EQ(session.changed_tables(), "");
    }
}

// After the connection was lost in the n-th call: what is told, what is shown, what is stored.
template <class Session>
void check_lost(Session& session, const FaultedAct<Session>& act, const WholeAct& whole, int nth,
                const LostConnection& how) {
    auto& messages = session.user.desk.messages;
    const bool in_doubt =
        session.faulty_company.workspace->connection_state() == store::ConnectionState::in_doubt;
    // What travels with the commit may be lost with it.
    EXPECT_TRUE(in_doubt == (nth == whole.commit) || (how.really && nth < whole.commit));
    const bool stored = nth > whole.commit || (in_doubt && how.commit_done);
    if (stored) {
        EXPECT_EQ(difference(whole.tables, all_tables(session.company.db())), "");
    } else {
        EXPECT_EQ(session.changed_tables(), "");
    }
    expect_told_once(messages, lost_message(in_doubt));
    if (nth > whole.commit) return;
    if (act.message != nullptr) {
        EXPECT_THAT(messages, ::testing::Not(::testing::Contains(act.message)));
    }
    if (in_doubt) {
        EXPECT_THAT(messages, ::testing::Not(::testing::Contains(::testing::HasSubstr("failed"))));
        messages.clear();
    } else {
        take_message(messages, lost_message(false));
        act.check_failed(session);
    }
    if (tests_run_on_server()) return check_reconnected(session, act, whole, in_doubt, stored);
    const std::string state = session.state.now();
    act.carry_out(session);
    EXPECT_EQ(session.state.now(), state);
    expect_told_once(messages, lost_message(in_doubt));
}

// The calls that are lost: each stride-th, those around the commit, and the last.
inline std::set<int> lost_calls(const WholeAct& whole, int stride) {
    std::set<int> calls{whole.commit - 1, whole.commit, whole.commit + 1, whole.calls};
    for (int nth = 1; nth <= whole.calls; nth += stride)
        calls.insert(nth);
    calls.erase(0);
    calls.erase(calls.upper_bound(whole.calls), calls.end());
    return calls;
}

// Returns in how many calls the connection was lost.
template <class Session>
int sweep_lost_connections(const FaultedAct<Session>& act, const LostConnection& how, int stride = 1) {
    const WholeAct whole = whole_act(act);
    const bool really = how.really && tests_run_on_server();
    int lost = 0;
    for (const int nth : lost_calls(whole, stride)) {
        SCOPED_TRACE(fmt::format("call {} of {}, commit {}", nth, whole.calls, whole.commit));
        const auto session = begun(act);
        session->faults->commit_done = how.commit_done;
        session->faults->engine_fails_itself = really;
        if (really) session->faults->on_fault = [&] { break_last_connection(session->company.path()); };
        EXPECT_TRUE(
            session->with_fault(nth, store::ErrorKind::lost, !really, [&] { act.carry_out(*session); }));
        check_lost(*session, act, whole, nth, how);
        if (::testing::Test::HasFailure()) break;
        ++lost;
    }
    ::testing::Test::RecordProperty("lost_connections", lost);
    return lost;
}

// For a suite with the parameters SweptAct and LostConnection, in the night.
template <class Session>
using LostParameters = ::testing::WithParamInterface<std::tuple<SweptAct<Session>, LostConnection>>;

template <class Session>
std::string lost_name(const ::testing::TestParamInfo<std::tuple<SweptAct<Session>, LostConnection>>& info) {
    return std::string(std::get<0>(info.param).name) + "_" + std::get<1>(info.param).name;
}

template <class Session>
void lose_connections_in_the_night(const std::tuple<SweptAct<Session>, LostConnection>& parameters) {
    const auto& [swept, how] = parameters;
    EXPECT_GT(sweep_lost_connections(swept.act, how), 0);
}

// A sample: some calls of each act.
template <class Session>
void lose_some_connections(const std::vector<SweptAct<Session>>& acts) {
    constexpr int kStride = 97;
    for (const LostConnection& how : kLostConnections) {
        if (how.really != tests_run_on_server()) continue;
        for (const SweptAct<Session>& each : acts) {
            SCOPED_TRACE(fmt::format("{} {}", each.name, how.name));
            EXPECT_GT(sweep_lost_connections(each.act, how, kStride), 0);
        }
    }
}

}  // namespace brimley::testing
