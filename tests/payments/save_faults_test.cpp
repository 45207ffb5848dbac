// Each engine call of the save, the void and the edit of a payment is made to fail, one after the other, and
// each time nothing of the act may be left, counters included.
//
// A form whose act has failed stays as it was, so the act is tried again on it with the fault one call later,
// until no fault reaches it any more. An act that a retry has carried over its fault must have stored exactly
// what it stores without faults.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "payment_entry.h"
#include "support/all_tables.h"
#include "support/faulty_engine.h"

namespace brimley::testing {

using ::testing::Contains;
using ::testing::Not;

class PaymentFaults : public ::testing::Test {
  protected:
    // A company with open items, and its user's payment of them, entered and not saved.
    struct Session {
        explicit Session(bool foreign)
            : company(sample_original()),
              faulty_company(company.second_user(faulty(faults))),
              user(faulty_company) {
            // An account that has the currency already is refreshed when the look at it fails; let that be
            // no difference.
            company.db().Execute("UPDATE Account_currency_table SET Description = ' ', revalue = TRUE");
            const char* vendor = foreign ? "V2001" : "V1001";
            const char* currency = foreign ? "EUR" : "USD";
            const EnteredInvoice invoice{
                "Invoice",
                vendor,
                currency,
                foreign ? "1.1" : "",
                {{"5000", "NOTAX", "gross amount", "100.00"}, {"5000", "NOTAX", "gross amount", "60.00"}}};
            save_invoice(user, invoice);
            user.ap.showform_APform_payment();
            begin_payment(form(), vendor, currency, foreign ? "1.2" : "");
            edit_item_cell(form(), 0, "pay amount", "70.00");
            edit_item_cell(form(), 1, "write-off", "5.00");
            edit_item_cell(form(), 1, "pay amount", "55.00");
            pay_total(form());
        }
        payments::APform_payment& form() { return *user.ap.frm_payment; }
        void press(int id) { EXPECT_EQ(form().press(id), controls::Refusal::none); }
        [[nodiscard]] bool reading() { return form().mode() == frame::Mode::read; }

        std::shared_ptr<Faults> faults = std::make_shared<Faults>();
        CompanyCopy company;
        store::OpenCompany faulty_company;
        DeskOfUser user;
        AllTables before;
    };

    // The way there without faults, the act, and how its end shows.
    struct Act {
        void (*prepare)(Session& session);
        void (*carry_out)(Session& session);
        bool (*stored)(const AllTables& before, const AllTables& now);
        void (*check_failed)(Session& session);
    };

    static bool changed(const AllTables& before, const AllTables& now) {
        return !difference(before, now).empty();
    }
    static void save(Session& session) { session.press(101); }
    static void void_it(Session& session) {
        session.user.desk.answers = {true};
        session.press(133);
        session.user.desk.answers.clear();
    }

    static constexpr Act kSave{[](Session&) {}, save, changed,
                               [](Session& session) {
                                   EXPECT_THAT(session.user.messages(), Contains("Add new payment failed"));
                                   EXPECT_EQ(session.form().mode(), frame::Mode::new_entry);
                                   EXPECT_EQ(session.form().txtdocno.text(), "** New **");
                                   EXPECT_EQ(session.form().txtfkey.text(), "");
                                   EXPECT_EQ(session.form().dbgrid1.cell(0, "pay amount"), "70.00");
                               }};
    static constexpr Act kVoid{save, void_it, changed, [](Session& session) {
                                   EXPECT_THAT(session.user.messages(), Contains("Void Payment failed"));
                                   EXPECT_EQ(session.form().chkvoid.value(), 0);
                               }};
    static constexpr Act kVoidInALaterPeriod{[](Session& session) {
                                                 EXPECT_EQ(session.form().txtpaydate.type("16/02/2026"),
                                                           controls::Refusal::none);
                                                 save(session);
                                             },
                                             void_it, changed, kVoid.check_failed};
    static constexpr Act kEdit{[](Session& session) {
                                   save(session);
                                   session.press(106);
                                   EXPECT_EQ(session.form().txtremark.type("by post"),
                                             controls::Refusal::none);
                               },
                               save, changed,
                               [](Session& session) {
                                   EXPECT_EQ(session.form().mode(), frame::Mode::edit);
                                   EXPECT_EQ(session.form().txtremark.text(), "by post");
                               }};

    static std::unique_ptr<Session> prepared(const Act& act, bool foreign) {
        auto session = std::make_unique<Session>(foreign);
        act.prepare(*session);
        static_cast<void>(session->user.messages());
        session->before = all_tables(session->company.db());
        return session;
    }

    // Returns how many times the act failed.
    static int sweep(const Act& act, store::ErrorKind kind, bool for_good, bool foreign = false) {
        const auto unharmed = prepared(act, foreign);
        act.carry_out(*unharmed);
        const AllTables expected = all_tables(unharmed->company.db());
        EXPECT_NE(difference(unharmed->before, expected), "");
        EXPECT_TRUE(unharmed->reading());
        auto session = prepared(act, foreign);
        int failed = 0;
        for (int nth = 1;; ++nth) {
            SCOPED_TRACE(fmt::format("call {}", nth));
            Faults& faults = *session->faults;
            faults.kind = kind;
            faults.arm(nth, for_good);
            act.carry_out(*session);
            const bool reached = faults.calls >= nth;
            faults.disarm();
            const AllTables now = all_tables(session->company.db());
            const bool stored = act.stored(session->before, now);
            EXPECT_FALSE(session->faulty_company.workspace->in_transaction());
            if (stored) {
                EXPECT_EQ(difference(expected, now), "");
                session = prepared(act, foreign);
            } else {
                act.check_failed(*session);
                ++failed;
            }
            RecordProperty("failed_acts", failed);
            if (HasFailure() || !reached) return failed;
        }
    }
};

// These acts make far more engine calls than this.
constexpr int kFewestFailures = 30;
constexpr int kFewestEditFailures = 2;

TEST_F(PaymentFaults, IoFailureOnceInASaveLeavesNothing) {
    EXPECT_GT(sweep(kSave, store::ErrorKind::io, false), kFewestFailures);
}

TEST_F(PaymentFaults, ConstraintFailureForGoodInASaveLeavesNothing) {
    EXPECT_GT(sweep(kSave, store::ErrorKind::constraint, true), kFewestFailures);
}

TEST_F(PaymentFaults, LockOnceInASaveLeavesNothingOrIsRetried) {
    EXPECT_GT(sweep(kSave, store::ErrorKind::locked, false), kFewestFailures);
}

TEST_F(PaymentFaults, IoFailureForGoodInAForeignSaveLeavesNothing) {
    EXPECT_GT(sweep(kSave, store::ErrorKind::io, true, true), kFewestFailures);
}

TEST_F(PaymentFaults, ConstraintFailureOnceInAForeignSaveLeavesNothingOrIsRetried) {
    EXPECT_GT(sweep(kSave, store::ErrorKind::constraint, false, true), kFewestFailures);
}

TEST_F(PaymentFaults, IoFailureOnceInAVoidLeavesNothing) {
    EXPECT_GT(sweep(kVoid, store::ErrorKind::io, false), kFewestFailures);
}

TEST_F(PaymentFaults, LockForGoodInAVoidLeavesNothing) {
    EXPECT_GT(sweep(kVoid, store::ErrorKind::locked, true), kFewestFailures);
}

TEST_F(PaymentFaults, IoFailureOnceInAVoidInALaterPeriodLeavesNothing) {
    EXPECT_GT(sweep(kVoidInALaterPeriod, store::ErrorKind::io, false), kFewestFailures);
}

TEST_F(PaymentFaults, ConstraintFailureOnceInAVoidInALaterPeriodLeavesNothingOrIsRetried) {
    EXPECT_GT(sweep(kVoidInALaterPeriod, store::ErrorKind::constraint, false), kFewestFailures);
}

TEST_F(PaymentFaults, IoFailureOnceInAnEditLeavesNothing) {
    EXPECT_GT(sweep(kEdit, store::ErrorKind::io, false), kFewestEditFailures);
}

}  // namespace brimley::testing
