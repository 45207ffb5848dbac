// Somebody holds a row that an act wants, and never lets it go: the act waits as often as it is to, says what
// it is to say, and leaves nothing.
#pragma once

#include <chrono>

#include "support/fault_sweep.h"

namespace brimley::testing {

// A number of waits, after which an act gives up.
inline std::vector<std::chrono::milliseconds> waits(std::size_t count) {
    return std::vector<std::chrono::milliseconds>(count, kernel::kLockRetryWait);
}

// Somebody else is writing alone. On a file nothing more can be held, and so it is whenever anybody writes.
template <class Session>
void give_up_to_who_is_alone(const FaultedAct<Session>& act, std::size_t expected_waits) {
    const auto session = begun(act);
    session->user.desk.waits.clear();
    session->company.workspace().begin_alone();
    act.carry_out(*session);
    session->company.workspace().Rollback();
    EXPECT_FALSE(act.done(*session));
    EXPECT_EQ(session->user.desk.waits, waits(expected_waits));
    check_nothing_left(*session, act);
}

struct HeldTable {
    const char* name;
    std::size_t waits;
};
// Both counters of documents are waited for ten times, balances five times, those of periods never.
inline const std::vector<HeldTable> kHeldTables{{"Docno_master_table", 10},
                                                {"Next_number_fkey_table", 10},
                                                {"Balance_table", 5},
                                                {"Balance_period_table", 0}};

// Every row of one table is held, as it can be on a server: a file is held as a whole.
template <class Session>
void give_up(const FaultedAct<Session>& act, const HeldTable& held) {
    SCOPED_TRACE(held.name);
    const auto session = begun(act);
    session->user.desk.waits.clear();
    session->faults->only_row_locks = true;
    session->faults->only_statements_with = held.name;
    EXPECT_TRUE(session->with_fault(1, store::ErrorKind::locked, true, [&] { act.carry_out(*session); }));
    EXPECT_FALSE(act.done(*session));
    EXPECT_EQ(session->user.desk.waits, waits(held.waits));
    check_nothing_left(*session, act);
}

}  // namespace brimley::testing
