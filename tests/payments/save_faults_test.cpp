// Faults in the save, the void and the edit of a payment (support/fault_sweep.h).
#include "payment_entry.h"
#include "support/giving_up.h"
#include "support/lost_connections.h"

namespace brimley::testing {

using ::testing::Contains;
using ::testing::ElementsAre;

class PaymentFaults : public ::testing::Test {
  public:
    // A vendor's open items, and a payment of them entered and not saved.
    struct Session : FaultedDesk {
        Session(SharedCompany its_company, bool foreign) : FaultedDesk(std::move(its_company)) {
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
    };

    // What is done to an entered payment. It is done when it is stored, whatever came of showing it
    // afterwards.
    struct Act {
        void (*prepare)(Session& session);
        void (*carry_out)(Session& session);
        void (*check_failed)(Session& session);
        const char* message;

        [[nodiscard]] FaultedAct<Session> on(bool foreign) const {
            const auto begin = [way = prepare, foreign](SharedCompany company) {
                auto session = std::make_unique<Session>(std::move(company), foreign);
                way(*session);
                return session;
            };
            return {begin, carry_out, [](Session& session) { return !session.changed_tables().empty(); },
                    message, check_failed};
        }
    };

    static void save(Session& session) { session.press(101); }
    static void void_it(Session& session) {
        session.user.desk.answers = {true};
        session.press(133);
        session.user.desk.answers.clear();
    }

    static constexpr Act kSave{[](Session&) {}, save,
                               [](Session& session) {
                                   EXPECT_THAT(session.user.messages(), Contains("Add new payment failed"));
                                   EXPECT_EQ(session.form().mode(), frame::Mode::new_entry);
                                   EXPECT_EQ(session.form().txtdocno.text(), "** New **");
                                   EXPECT_EQ(session.form().txtfkey.text(), "");
                                   EXPECT_EQ(session.form().dbgrid1.cell(0, "pay amount"), "70.00");
                               },
                               "Add new Payment PY-26-00001 complete"};
    static constexpr Act kVoid{save, void_it,
                               [](Session& session) {
                                   EXPECT_THAT(session.user.messages(), Contains("Void Payment failed"));
                                   EXPECT_EQ(session.form().chkvoid.value(), 0);
                               },
                               "PY-26-00001 is void."};
    static constexpr Act kVoidInALaterPeriod{[](Session& session) {
                                                 EXPECT_EQ(session.form().txtpaydate.type("16/02/2026"),
                                                           controls::Refusal::none);
                                                 save(session);
                                             },
                                             void_it, kVoid.check_failed, kVoid.message};
    static constexpr Act kEdit{[](Session& session) {
                                   save(session);
                                   session.press(106);
                                   EXPECT_EQ(session.form().txtremark.type("by post"),
                                             controls::Refusal::none);
                               },
                               save,
                               [](Session& session) {
                                   EXPECT_THAT(session.user.messages(), ElementsAre("Update failed."));
                                   EXPECT_EQ(session.form().mode(), frame::Mode::edit);
                                   EXPECT_EQ(session.form().txtremark.text(), "by post");
                               },
                               nullptr};

    static int sweep(const Act& act, store::ErrorKind kind, bool for_good, bool foreign = false) {
        return sweep_faults(act.on(foreign), kind, for_good);
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

class EveryPaymentFault : public PaymentFaults, public SweptParameters<PaymentFaults::Session> {
  public:
    static std::vector<SweptAct<Session>> acts() {
        return {{"Save", kSave.on(false)},
                {"ForeignSave", kSave.on(true)},
                {"Void", kVoid.on(false)},
                {"VoidInALaterPeriod", kVoidInALaterPeriod.on(false)},
                {"Edit", kEdit.on(false)}};
    }
};

TEST_P(EveryPaymentFault, LeavesNothingOrIsRetried) { sweep_in_the_night(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Night, EveryPaymentFault,
                         ::testing::Combine(::testing::ValuesIn(EveryPaymentFault::acts()),
                                            ::testing::ValuesIn(kSweptFaults)),
                         swept_name<EveryPaymentFault::Session>);

class LostPaymentConnections : public PaymentFaults, public LostParameters<PaymentFaults::Session> {};

TEST_P(LostPaymentConnections, AreToldAndNothingIsDoneTwice) { lose_connections_in_the_night(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Night, LostPaymentConnections,
                         ::testing::Combine(::testing::ValuesIn(EveryPaymentFault::acts()),
                                            ::testing::ValuesIn(kLostConnections)),
                         lost_name<PaymentFaults::Session>);

TEST_F(PaymentFaults, ActIsGivenUpToWhoWritesAlone) {
    give_up_to_who_is_alone(kSave.on(false), 10);
    give_up_to_who_is_alone(kVoid.on(false), 0);
    give_up_to_who_is_alone(kEdit.on(false), 0);
}

TEST_F(PaymentFaults, RowHeldOnAServerIsWaitedForAndThenGivenUp) {
    for (const HeldTable& held : kHeldTables)
        for (const Act& act : {kSave, kVoidInALaterPeriod})
            give_up(act.on(false), held);
}

TEST_F(PaymentFaults, LostConnectionIsToldAndNothingIsDoneTwice) {
    lose_some_connections(EveryPaymentFault::acts());
}

}  // namespace brimley::testing
