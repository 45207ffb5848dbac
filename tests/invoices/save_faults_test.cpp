// Each engine call of a save is made to fail, one after the other, and each time nothing of the save may be
// left, counters included.
//
// A form whose save has failed stays in New with its entry, so the same form is saved again with the fault
// one call later, until a save is not reached by its fault any more. A save that a retry has carried over its
// fault must have stored exactly what a save without faults stores.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/all_tables.h"
#include "support/faulty_engine.h"
#include "support/sample_host.h"

namespace brimley::testing {

using ::testing::Contains;
using ::testing::ElementsAre;

namespace {

EnteredInvoice base_invoice() {
    return {"Invoice",
            "V1001",
            "USD",
            "",
            {{"5000", "STACK", "taxable amount", "100.00"},
             {"5900", "GST5", "gross amount", "210.00"},
             {"1200", "HALF10", "taxable amount", "55.55"}}};
}

// 5000 and 1200 are opened for the currency by this save.
EnteredInvoice foreign_invoice() {
    EnteredInvoice invoice = base_invoice();
    invoice.currency = "EUR";
    invoice.rate = "1.0837";
    invoice.lines[1].account = "5000";
    return invoice;
}

}  // namespace

class SaveFaults : public ::testing::Test {
  protected:
    // A company, its user's form with the document entered, and a second look at the company from outside.
    struct Session {
        explicit Session(const EnteredInvoice& invoice)
            : company(sample_original()),
              faulty_company(company.second_user(faulty(faults))),
              user(faulty_company) {
            // An account that has the currency already is refreshed when the look at it fails; let that be
            // no difference.
            company.db().Execute("UPDATE Account_currency_table SET Description = ' ', revalue = TRUE");
            user.ap.showform_APform_invoice();
            enter(form(), invoice);
            before = all_tables(company.db());
        }
        invoices::APform_invoice& form() { return *user.ap.frm_invoice; }
        [[nodiscard]] std::string changed_tables() { return difference(before, all_tables(company.db())); }

        std::shared_ptr<Faults> faults = std::make_shared<Faults>();
        CompanyCopy company;
        store::OpenCompany faulty_company;
        DeskOfUser user;
        AllTables before;
    };

    // What a save without faults leaves behind.
    static AllTables saved_tables(const EnteredInvoice& invoice) {
        Session session(invoice);
        EXPECT_EQ(session.form().press(101), controls::Refusal::none);
        EXPECT_THAT(session.user.messages(), Contains("Add new Invoice complete"));
        return all_tables(session.company.db());
    }

    static void check_failed(Session& session) {
        EXPECT_THAT(session.user.messages(), Contains("Add new Invoice failed"));
        EXPECT_EQ(session.changed_tables(), "");
        EXPECT_FALSE(session.faulty_company.workspace->in_transaction());
        EXPECT_EQ(session.form().mode(), frame::Mode::new_entry);
        EXPECT_EQ(session.form().txtdocno.text(), "** New **");
        EXPECT_EQ(session.form().txtfkey.text() + session.form().txtglfkey.text(), "");
    }

    // Returns how many saves failed.
    static int sweep(const EnteredInvoice& invoice, store::ErrorKind kind, bool for_good) {
        const AllTables expected = saved_tables(invoice);
        auto session = std::make_unique<Session>(invoice);
        int failed = 0;
        for (int nth = 1;; ++nth) {
            SCOPED_TRACE(fmt::format("call {}", nth));
            Faults& faults = *session->faults;
            faults.kind = kind;
            faults.arm(nth, for_good);
            EXPECT_EQ(session->form().press(101), controls::Refusal::none);
            const bool reached = faults.calls >= nth;
            faults.disarm();
            const bool saved = session->form().mode() == frame::Mode::read;
            if (saved) {
                EXPECT_THAT(session->user.messages(), Contains("Add new Invoice complete"));
                EXPECT_EQ(difference(expected, all_tables(session->company.db())), "");
            } else {
                check_failed(*session);
                ++failed;
            }
            RecordProperty("failed_saves", failed);
            if (HasFailure() || !reached) return failed;
            if (saved) session = std::make_unique<Session>(invoice);
        }
    }
};

// A save of these documents makes far more engine calls than this.
constexpr int kFewestFailures = 40;

TEST_F(SaveFaults, IoFailureOnceLeavesNothing) {
    EXPECT_GT(sweep(base_invoice(), store::ErrorKind::io, false), kFewestFailures);
}

TEST_F(SaveFaults, IoFailureForGoodLeavesNothing) {
    EXPECT_GT(sweep(base_invoice(), store::ErrorKind::io, true), kFewestFailures);
}

TEST_F(SaveFaults, ConstraintFailureOnceLeavesNothingOrIsRetried) {
    EXPECT_GT(sweep(base_invoice(), store::ErrorKind::constraint, false), kFewestFailures);
}

TEST_F(SaveFaults, ConstraintFailureForGoodLeavesNothing) {
    EXPECT_GT(sweep(base_invoice(), store::ErrorKind::constraint, true), kFewestFailures);
}

TEST_F(SaveFaults, LockOnceLeavesNothingOrIsRetried) {
    EXPECT_GT(sweep(base_invoice(), store::ErrorKind::locked, false), kFewestFailures);
}

TEST_F(SaveFaults, LockForGoodLeavesNothing) {
    EXPECT_GT(sweep(base_invoice(), store::ErrorKind::locked, true), kFewestFailures);
}

TEST_F(SaveFaults, IoFailureOnceInAForeignDocumentLeavesNothing) {
    EXPECT_GT(sweep(foreign_invoice(), store::ErrorKind::io, false), kFewestFailures);
}

TEST_F(SaveFaults, IoFailureForGoodInAForeignDocumentLeavesNothing) {
    EXPECT_GT(sweep(foreign_invoice(), store::ErrorKind::io, true), kFewestFailures);
}

TEST_F(SaveFaults, ConstraintFailureOnceInAForeignDocumentLeavesNothingOrIsRetried) {
    EXPECT_GT(sweep(foreign_invoice(), store::ErrorKind::constraint, false), kFewestFailures);
}

TEST_F(SaveFaults, ConstraintFailureForGoodInAForeignDocumentLeavesNothing) {
    EXPECT_GT(sweep(foreign_invoice(), store::ErrorKind::constraint, true), kFewestFailures);
}

TEST_F(SaveFaults, LockOnceInAForeignDocumentLeavesNothingOrIsRetried) {
    EXPECT_GT(sweep(foreign_invoice(), store::ErrorKind::locked, false), kFewestFailures);
}

TEST_F(SaveFaults, LockForGoodInAForeignDocumentLeavesNothing) {
    EXPECT_GT(sweep(foreign_invoice(), store::ErrorKind::locked, true), kFewestFailures);
}

TEST_F(SaveFaults, FailureInTheFirstSaveOfAConnectionLeavesNothing) {
    // Only the first save prepares its statements; each fault meets a connection of its own.
    int failed = 0;
    for (int nth = 1;; ++nth) {
        SCOPED_TRACE(fmt::format("call {}", nth));
        Session session(base_invoice());
        session.faults->kind = store::ErrorKind::io;
        session.faults->arm(nth, false);
        EXPECT_EQ(session.form().press(101), controls::Refusal::none);
        const bool reached = session.faults->calls >= nth;
        session.faults->disarm();
        if (!reached) break;
        check_failed(session);
        ++failed;
        if (HasFailure()) break;
    }
    EXPECT_GT(failed, kFewestFailures);
    RecordProperty("failed_saves", failed);
}

// --- the retry of a ledger line
//
// Another desk may hold the ledger when a line is written: the line is tried again after a wait, up to five
// times, within the same save.
class LedgerLineRetry : public SaveFaults {
  protected:
    LedgerLineRetry() {
        session.faults->kind = store::ErrorKind::locked;
        session.faults->only_statements_with = "INSERT INTO \"GL_transaction_table\"";
        session.faults->arm(2, true);  // the first line goes through, the second one is held
    }
    // The ledger is let go in this wait.
    void free_in_wait(int number) {
        session.user.desk.on_wait = [this, number](int wait) {
            if (wait == number) session.faults->disarm();
        };
    }
    void save() { ASSERT_EQ(session.form().press(101), controls::Refusal::none); }
    [[nodiscard]] std::size_t waits() const { return session.user.desk.waits.size(); }
    void expect_saved_as_ever() {
        EXPECT_THAT(session.user.messages(), ElementsAre("Add new Invoice complete"));
        EXPECT_EQ(difference(saved_tables(base_invoice()), all_tables(session.company.db())), "");
    }

    Session session{base_invoice()};
};

TEST_F(LedgerLineRetry, HeldOnceTheLineStandsOnceAfterOneWait) {
    free_in_wait(1);
    save();
    EXPECT_EQ(waits(), 1U);
    EXPECT_EQ(session.user.desk.waits[0], kernel::kLockRetryWait);
    expect_saved_as_ever();
}

TEST_F(LedgerLineRetry, HeldFiveTimesTheSixthTrySaves) {
    free_in_wait(5);
    save();
    EXPECT_EQ(waits(), 5U);
    expect_saved_as_ever();
}

TEST_F(LedgerLineRetry, HeldSixTimesTheSaveIsRefusedAndNothingIsLeft) {
    save();
    EXPECT_EQ(waits(), 5U);
    EXPECT_EQ(session.faults->calls, 1 + 6);
    EXPECT_THAT(session.user.desk.messages, ElementsAre("Add new Invoice failed"));
    check_failed(session);
    session.faults->disarm();
    save();
    expect_saved_as_ever();
}

}  // namespace brimley::testing
