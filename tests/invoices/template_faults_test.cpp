// Each engine call of a template's save is made to fail, one after the other, and each time nothing of the
// save may be left, counters included. A save that a retry has carried over its fault must have stored
// exactly what a save without faults stores.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/all_tables.h"
#include "support/faulty_engine.h"
#include "support/template_entry.h"

namespace brimley::testing {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class TemplateFaults : public ::testing::Test {
  protected:
    // A company, its user's form with the template entered, and a second look at the company from outside.
    struct Session {
        Session()
            : company(sample_original()),
              faulty_company(company.second_user(faulty(faults))),
              user(faulty_company) {
            user.ap.showform_APform_invoice();
            enter_template(form());
            before = all_tables(company.db());
        }
        invoices::APform_invoice& form() { return *user.ap.frm_invoice; }
        // Whether the fault was reached.
        bool save_with_fault(int nth, store::ErrorKind kind, bool for_good) {
            faults->kind = kind;
            faults->arm(nth, for_good);
            EXPECT_EQ(form().press(101), controls::Refusal::none);
            const bool reached = faults->calls >= nth;
            faults->disarm();
            return reached;
        }

        std::shared_ptr<Faults> faults = std::make_shared<Faults>();
        CompanyCopy company;
        store::OpenCompany faulty_company;
        DeskOfUser user;
        AllTables before;
    };

    static AllTables saved_tables() {
        Session session;
        EXPECT_EQ(session.form().press(101), controls::Refusal::none);
        EXPECT_THAT(session.user.messages(), ElementsAre("Add Recurring invoice complete"));
        return all_tables(session.company.db());
    }

    static void check_failed(Session& session) {
        EXPECT_THAT(session.user.messages(), IsEmpty());
        EXPECT_EQ(difference(session.before, all_tables(session.company.db())), "");
        EXPECT_FALSE(session.faulty_company.workspace->in_transaction());
        EXPECT_EQ(session.form().mode(), frame::Mode::new_entry);
        EXPECT_EQ(session.form().txtdocno.text(), "** New **");
        EXPECT_EQ(session.form().txtfkey.text() + session.form().txtdoctype.text(), "");
    }

    // A form whose save has failed keeps its entry and is saved again with the fault one call later. Returns
    // how many saves failed.
    static int sweep(store::ErrorKind kind, bool for_good) {
        const AllTables expected = saved_tables();
        auto session = std::make_unique<Session>();
        int failed = 0;
        for (int nth = 1;; ++nth) {
            SCOPED_TRACE(fmt::format("call {}", nth));
            const bool reached = session->save_with_fault(nth, kind, for_good);
            const bool saved = session->form().mode() == frame::Mode::read;
            if (saved) {
                EXPECT_THAT(session->user.messages(), ElementsAre("Add Recurring invoice complete"));
                EXPECT_EQ(difference(expected, all_tables(session->company.db())), "");
                if (reached) session = std::make_unique<Session>();
            } else {
                check_failed(*session);
                ++failed;
            }
            RecordProperty("failed_saves", failed);
            if (HasFailure() || !reached) return failed;
        }
    }
};

// A save of this template makes more engine calls than this.
constexpr int kFewestFailures = 10;

TEST_F(TemplateFaults, IoFailureOnceLeavesNothing) {
    EXPECT_GT(sweep(store::ErrorKind::io, false), kFewestFailures);
}

TEST_F(TemplateFaults, IoFailureForGoodLeavesNothing) {
    EXPECT_GT(sweep(store::ErrorKind::io, true), kFewestFailures);
}

TEST_F(TemplateFaults, ConstraintFailureOnceLeavesNothingOrIsRetried) {
    EXPECT_GT(sweep(store::ErrorKind::constraint, false), kFewestFailures);
}

TEST_F(TemplateFaults, ConstraintFailureForGoodLeavesNothing) {
    EXPECT_GT(sweep(store::ErrorKind::constraint, true), kFewestFailures);
}

TEST_F(TemplateFaults, LockOnceLeavesNothingOrIsRetried) {
    EXPECT_GT(sweep(store::ErrorKind::locked, false), kFewestFailures);
}

TEST_F(TemplateFaults, LockForGoodLeavesNothing) {
    EXPECT_GT(sweep(store::ErrorKind::locked, true), kFewestFailures);
}

TEST_F(TemplateFaults, FailureInTheFirstSaveOfAConnectionLeavesNothing) {
    // Only the first save prepares its statements; each fault meets a connection of its own.
    int failed = 0;
    for (int nth = 1;; ++nth) {
        SCOPED_TRACE(fmt::format("call {}", nth));
        Session session;
        if (!session.save_with_fault(nth, store::ErrorKind::io, false)) break;
        check_failed(session);
        ++failed;
        if (HasFailure()) break;
    }
    EXPECT_GT(failed, kFewestFailures);
    RecordProperty("failed_saves", failed);
}

}  // namespace brimley::testing
