// Faults in the save, the edit, the void, the hold and the release of an invoice (support/fault_sweep.h).
#include "support/giving_up.h"
#include "support/lost_connections.h"

namespace brimley::testing {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

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
  public:
    struct Session : FaultedDesk {
        Session(SharedCompany its_company, const EnteredInvoice& invoice)
            : FaultedDesk(std::move(its_company)) {
            user.ap.showform_APform_invoice();
            enter(form(), invoice);
        }
        invoices::APform_invoice& form() { return *user.ap.frm_invoice; }
        void press(int id) { EXPECT_EQ(form().press(id), controls::Refusal::none); }
        void press_and_agree(int id) {
            user.desk.answers = {true};
            press(id);
            user.desk.answers.clear();
        }
        [[nodiscard]] bool reading() { return form().mode() == frame::Mode::read; }
    };

    // What is done to an entered document.
    struct Act {
        void (*prepare)(Session& session);
        void (*carry_out)(Session& session);
        bool (*done)(Session& session);
        const char* message;
        void (*check_failed)(Session& session);

        [[nodiscard]] FaultedAct<Session> on(const EnteredInvoice& invoice) const {
            const auto begin = [way = prepare, invoice](SharedCompany company) {
                auto session = std::make_unique<Session>(std::move(company), invoice);
                way(*session);
                return session;
            };
            return {begin, carry_out, done, message, check_failed};
        }
    };

    static void save_entry(Session& session) {
        session.press(101);
        ASSERT_TRUE(session.reading());
    }
    static void save_in_february(Session& session) {
        EXPECT_EQ(session.form().txtinvdate.type("16/02/2026"), controls::Refusal::none);
        save_entry(session);
    }
    static void edit_entry(Session& session) {
        session.press(106);
        edit_line_cell(session.form(), 0, "taxable amount", "120.00");
        EXPECT_EQ(session.form().txtremark.type("corrected"), controls::Refusal::none);
    }
    static void stays_in_edit(Session& session) {
        EXPECT_THAT(session.user.messages(), Contains("Update failed."));
        EXPECT_EQ(session.form().mode(), frame::Mode::edit);
        EXPECT_EQ(session.form().txtglfkey.text(), "1gl-1");
        EXPECT_EQ(session.form().txtremark.text(), "corrected");
    }
    static void says_nothing_of_a_void(Session& session) {
        EXPECT_THAT(session.user.messages(), Not(Contains("Invoice IP-26-00001 is void.")));
        EXPECT_EQ(session.form().chkvoid.value(), 0);
    }

    static constexpr Act kSave{[](Session&) {}, [](Session& session) { session.press(101); },
                               [](Session& session) { return session.reading(); }, "Add new Invoice complete",
                               [](Session& session) {
                                   EXPECT_THAT(session.user.messages(), Contains("Add new Invoice failed"));
                                   EXPECT_EQ(session.form().mode(), frame::Mode::new_entry);
                                   EXPECT_EQ(session.form().txtdocno.text(), "** New **");
                                   EXPECT_EQ(session.form().txtfkey.text(), "");
                                   EXPECT_EQ(session.form().txtglfkey.text(), "");
                               }};
    static constexpr Act kEdit{[](Session& session) {
                                   save_entry(session);
                                   edit_entry(session);
                               },
                               [](Session& session) { session.press(101); },
                               [](Session& session) { return session.reading(); }, "Update complete",
                               stays_in_edit};
    static constexpr Act kEditInALaterPeriod{[](Session& session) {
                                                 save_in_february(session);
                                                 edit_entry(session);
                                             },
                                             kEdit.carry_out, kEdit.done, kEdit.message, stays_in_edit};
    static constexpr Act kVoid{save_entry, [](Session& session) { session.press_and_agree(1008); },
                               [](Session& session) { return session.form().chkvoid.is_set(); },
                               "Invoice IP-26-00001 is void.", says_nothing_of_a_void};
    static constexpr Act kVoidInALaterPeriod{save_in_february, kVoid.carry_out, kVoid.done, kVoid.message,
                                             says_nothing_of_a_void};
    static constexpr Act kHold{save_entry, [](Session& session) { session.press_and_agree(1009); },
                               [](Session& session) { return session.form().chkhold.is_set(); },
                               "Invoice IP-26-00001 was hold.",
                               [](Session& session) {
                                   EXPECT_THAT(session.user.messages(), Not(IsEmpty()));
                                   EXPECT_EQ(session.form().chkhold.value(), 0);
                               }};
    static constexpr Act kRelease{[](Session& session) {
                                      save_entry(session);
                                      session.press_and_agree(1009);
                                  },
                                  [](Session& session) { session.press_and_agree(1010); },
                                  [](Session& session) { return !session.form().chkhold.is_set(); },
                                  "Invoice IP-26-00001 was released.",
                                  [](Session& session) {
                                      EXPECT_THAT(session.user.messages(), Not(IsEmpty()));
                                      EXPECT_EQ(session.form().chkhold.value(), 1);
                                  }};

    static int sweep(const EnteredInvoice& invoice, store::ErrorKind kind, bool for_good,
                     const Act& act = kSave) {
        return sweep_faults(act.on(invoice), kind, for_good);
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

// Reading the screen's document again, reversing, posting: an edit makes more calls than a save.
TEST_F(SaveFaults, IoFailureOnceInAnEditLeavesNothing) {
    EXPECT_GT(sweep(base_invoice(), store::ErrorKind::io, false, kEdit), kFewestFailures);
}

TEST_F(SaveFaults, ConstraintFailureForGoodInAnEditLeavesNothing) {
    EXPECT_GT(sweep(base_invoice(), store::ErrorKind::constraint, true, kEdit), kFewestFailures);
}

TEST_F(SaveFaults, LockOnceInAnEditLeavesNothingOrIsRetried) {
    EXPECT_GT(sweep(base_invoice(), store::ErrorKind::locked, false, kEdit), kFewestFailures);
}

TEST_F(SaveFaults, IoFailureOnceInAnEditInALaterPeriodLeavesNothing) {
    EXPECT_GT(sweep(base_invoice(), store::ErrorKind::io, false, kEditInALaterPeriod), kFewestFailures);
}

TEST_F(SaveFaults, IoFailureOnceInAVoidLeavesNothing) {
    EXPECT_GT(sweep(base_invoice(), store::ErrorKind::io, false, kVoid), kFewestFailures);
}

TEST_F(SaveFaults, ConstraintFailureOnceInAVoidLeavesNothingOrIsRetried) {
    EXPECT_GT(sweep(base_invoice(), store::ErrorKind::constraint, false, kVoid), kFewestFailures);
}

TEST_F(SaveFaults, LockForGoodInAVoidLeavesNothing) {
    EXPECT_GT(sweep(base_invoice(), store::ErrorKind::locked, true, kVoid), kFewestFailures);
}

TEST_F(SaveFaults, IoFailureOnceInAVoidInALaterPeriodLeavesNothing) {
    EXPECT_GT(sweep(base_invoice(), store::ErrorKind::io, false, kVoidInALaterPeriod), kFewestFailures);
}

TEST_F(SaveFaults, LockOnceInAVoidInALaterPeriodLeavesNothingOrIsRetried) {
    EXPECT_GT(sweep(base_invoice(), store::ErrorKind::locked, false, kVoidInALaterPeriod), kFewestFailures);
}

constexpr int kFewestHoldFailures = 5;

TEST_F(SaveFaults, IoFailureOnceInAHoldIsToldAndLeavesNothing) {
    EXPECT_GT(sweep(base_invoice(), store::ErrorKind::io, false, kHold), kFewestHoldFailures);
}

TEST_F(SaveFaults, LockForGoodInAHoldIsToldAndLeavesNothing) {
    EXPECT_GT(sweep(base_invoice(), store::ErrorKind::locked, true, kHold), kFewestHoldFailures);
}

TEST_F(SaveFaults, IoFailureOnceInAReleaseIsToldAndLeavesNothing) {
    EXPECT_GT(sweep(base_invoice(), store::ErrorKind::io, false, kRelease), kFewestHoldFailures);
}

TEST_F(SaveFaults, ConstraintFailureForGoodInAReleaseIsToldAndLeavesNothing) {
    EXPECT_GT(sweep(base_invoice(), store::ErrorKind::constraint, true, kRelease), kFewestHoldFailures);
}

class FirstSave : public SaveFaults, public ::testing::WithParamInterface<int> {};

TEST_P(FirstSave, FailureInTheFirstSaveOfAConnectionLeavesNothing) {
    EXPECT_GT(sweep_first_act(kSave.on(base_invoice()), GetParam()), kFewestFailures);
}

INSTANTIATE_TEST_SUITE_P(Sampled, FirstSave, ::testing::Values(sampled_stride()));
INSTANTIATE_TEST_SUITE_P(Night, FirstSave, ::testing::Values(1));

TEST_F(SaveFaults, FailureWhileAnEditBeginsNeverOpensHalfADocument) {
    const auto session = begun(kVoid.on(base_invoice()));
    const std::string total = session->form().txttotal.text();
    int refused = 0;
    for (int nth = 1;; ++nth) {
        SCOPED_TRACE(fmt::format("call {}", nth));
        const bool reached =
            session->with_fault(nth, store::ErrorKind::io, false, [&] { session->press(106); });
        if (session->reading()) {
            ++refused;
            session->press(136);
        } else {
            EXPECT_EQ(session->form().txttotal.text(), total);
            EXPECT_EQ(session->form().dbgrid1.cell(2, "gross amount"), "61.11");
            EXPECT_EQ(session->form().cmbterm.text(), "2% 10 days, net 30");
            session->user.desk.answers = {false};
            session->press(106);
        }
        if (HasFailure() || !reached) break;
    }
    EXPECT_GT(refused, kFewestHoldFailures);
    EXPECT_EQ(session->changed_tables(), "");
}

class EveryInvoiceFault : public SaveFaults, public SweptParameters<SaveFaults::Session> {
  public:
    static std::vector<SweptAct<Session>> acts() {
        return {{"Save", kSave.on(base_invoice())},
                {"ForeignSave", kSave.on(foreign_invoice())},
                {"Edit", kEdit.on(base_invoice())},
                {"EditInALaterPeriod", kEditInALaterPeriod.on(base_invoice())},
                {"Void", kVoid.on(base_invoice())},
                {"VoidInALaterPeriod", kVoidInALaterPeriod.on(base_invoice())},
                {"Hold", kHold.on(base_invoice())},
                {"Release", kRelease.on(base_invoice())}};
    }
};

TEST_P(EveryInvoiceFault, LeavesNothingOrIsRetried) { sweep_in_the_night(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Night, EveryInvoiceFault,
                         ::testing::Combine(::testing::ValuesIn(EveryInvoiceFault::acts()),
                                            ::testing::ValuesIn(kSweptFaults)),
                         swept_name<EveryInvoiceFault::Session>);

class LostInvoiceConnections : public SaveFaults, public LostParameters<SaveFaults::Session> {};

TEST_P(LostInvoiceConnections, AreToldAndNothingIsDoneTwice) { lose_connections_in_the_night(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Night, LostInvoiceConnections,
                         ::testing::Combine(::testing::ValuesIn(EveryInvoiceFault::acts()),
                                            ::testing::ValuesIn(kLostConnections)),
                         lost_name<SaveFaults::Session>);

TEST_F(SaveFaults, ActIsGivenUpToWhoWritesAlone) {
    give_up_to_who_is_alone(kSave.on(base_invoice()), 10);
    give_up_to_who_is_alone(kEdit.on(base_invoice()), 5);
    give_up_to_who_is_alone(kVoid.on(base_invoice()), 5);
    give_up_to_who_is_alone(kVoidInALaterPeriod.on(base_invoice()), 10);
    give_up_to_who_is_alone(kHold.on(base_invoice()), 0);
}

TEST_F(SaveFaults, RowHeldOnAServerIsWaitedForAndThenGivenUp) {
    for (const HeldTable& held : kHeldTables)
        for (const Act& act : {kSave, kVoidInALaterPeriod})
            give_up(act.on(base_invoice()), held);
}

TEST_F(SaveFaults, LostConnectionIsToldAndNothingIsDoneTwice) {
    lose_some_connections(EveryInvoiceFault::acts());
}

// --- the retry of a ledger line
//
// Another desk may hold the ledger when a line is written: the line is tried again after a wait, up to five
// times, within the same save.
class LedgerLineRetry : public SaveFaults {
  protected:
    LedgerLineRetry() {
        session.remember_tables();
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
        EXPECT_EQ(difference(tables_after(kSave.on(base_invoice())), all_tables(session.company.db())), "");
    }

    Session session{new_company(), base_invoice()};
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
    check_nothing_left(session, kSave.on(base_invoice()));
    session.faults->disarm();
    save();
    expect_saved_as_ever();
}

}  // namespace brimley::testing
