// Faults in the void of a check in the list of checks, for each kind of payment (support/fault_sweep.h).
#include <list>

#include "kinds_of_payments.h"
#include "payment_entry.h"
#include "payments/void_check/apform_void_check.h"
#include "support/giving_up.h"
#include "support/lost_connections.h"

namespace brimley::testing {

using ::testing::Contains;

namespace {

struct VoidedKind {
    const char* name;
    payments::PaymentForm& (*enter)(DeskOfUser& user);
    const char* void_failed;
};

// Two items, one with a discount and one with a write-off.
payments::PaymentForm& enter_payment_of_items(DeskOfUser& user) {
    save_invoice(user,
                 {"Invoice",
                  "V1001",
                  "USD",
                  "",
                  {{"5000", "NOTAX", "gross amount", "100.00"}, {"5000", "NOTAX", "gross amount", "60.00"}}});
    user.ap.showform_APform_payment();
    auto& form = *user.ap.frm_payment;
    begin_payment(form, "V1001");
    edit_item_cell(form, 0, "pay amount", "70.00");
    edit_item_cell(form, 1, "write-off", "5.00");
    edit_item_cell(form, 1, "pay amount", "55.00");
    pay_total(form);
    return form;
}

const std::vector<VoidedKind>& voided_kinds() {
    static const std::vector<VoidedKind> kKinds = [] {
        std::vector<VoidedKind> kinds{{"Payment", enter_payment_of_items, "Void check failed"}};
        for (const KindOfPayment& kind : kinds_of_payments())
            kinds.push_back({kind.name, kind.enter, kind.void_failed});
        return kinds;
    }();
    return kKinds;
}

// A check that was picked from the list.
struct CheckSession : FaultedDesk {
    CheckSession(SharedCompany its_company, const VoidedKind& its_kind, const char* paid_on)
        : FaultedDesk(std::move(its_company)), kind(its_kind) {
        using controls::Refusal;
        auto& payment = kind.enter(user);
        EXPECT_EQ(payment.txtpaydate.type(paid_on), Refusal::none);
        EXPECT_EQ(payment.cmbpayby.type("Check"), Refusal::none);
        EXPECT_EQ(payment.cmbbank.type("MAIN"), Refusal::none);
        EXPECT_EQ(payment.txtcheck.type("901"), Refusal::none);
        EXPECT_EQ(payment.txtcheckdate.type(paid_on), Refusal::none);
        EXPECT_EQ(payment.press(101), Refusal::none);
        user.ap.showform_APform_void_check();
        press(104);
        EXPECT_EQ(form().dbgrid1.double_click(0), Refusal::none);
        EXPECT_EQ(form().txtcheck.text(), "901");
    }
    payments::APform_void_check& form() { return *user.ap.frm_void_check; }
    void press(int id) { EXPECT_EQ(form().press(id), controls::Refusal::none); }

    const VoidedKind& kind;
};

void void_check(CheckSession& session) {
    session.user.desk.answers = {true};
    session.press(101);
    session.user.desk.answers.clear();
}

void voided_no_check(CheckSession& session) {
    EXPECT_THAT(session.user.messages(), Contains(session.kind.void_failed));
    EXPECT_EQ(session.form().txtcheck.text(), "901");
    EXPECT_EQ(session.form().dbgrid1.cell(0, "check no"), "901");
}

FaultedAct<CheckSession> voiding_check(const VoidedKind& kind, const char* paid_on = "16/03/2026") {
    const auto begin = [&kind, paid_on](SharedCompany company) {
        return std::make_unique<CheckSession>(std::move(company), kind, paid_on);
    };
    return {begin, void_check, [](CheckSession& session) { return !session.changed_tables().empty(); },
            "Check 901 is void.", voided_no_check};
}

constexpr const char* kLastMonth = "16/02/2026";
// A void makes far more engine calls than this.
constexpr int kFewestFailuresOfAVoid = 15;

}  // namespace

class EachVoidedCheck : public ::testing::TestWithParam<VoidedKind> {};

TEST_P(EachVoidedCheck, IoFailureOnceLeavesNothing) {
    EXPECT_GT(sweep_faults(voiding_check(GetParam()), store::ErrorKind::io, false), kFewestFailuresOfAVoid);
}

TEST_P(EachVoidedCheck, LockForGoodInALaterPeriodLeavesNothing) {
    EXPECT_GT(sweep_faults(voiding_check(GetParam(), kLastMonth), store::ErrorKind::locked, true),
              kFewestFailuresOfAVoid);
}

TEST_P(EachVoidedCheck, IsGivenUpToWhoWritesAlone) { give_up_to_who_is_alone(voiding_check(GetParam()), 0); }

TEST_P(EachVoidedCheck, WaitsForAHeldRowOnAServerAndGivesUp) {
    for (const HeldTable& held : kHeldTables)
        give_up(voiding_check(GetParam(), kLastMonth), held);
}

constexpr auto kNameOfVoided = [](const ::testing::TestParamInfo<VoidedKind>& kind) {
    return std::string(kind.param.name);
};

INSTANTIATE_TEST_SUITE_P(Kinds, EachVoidedCheck, ::testing::ValuesIn(voided_kinds()), kNameOfVoided);

namespace {

std::vector<SweptAct<CheckSession>> voids_of_all_kinds() {
    std::vector<SweptAct<CheckSession>> acts;
    static std::list<std::string> names;
    for (const VoidedKind& kind : voided_kinds()) {
        names.push_back(kind.name);
        acts.push_back({names.back().c_str(), voiding_check(kind)});
        names.push_back(std::string("Later") + kind.name);
        acts.push_back({names.back().c_str(), voiding_check(kind, kLastMonth)});
    }
    return acts;
}

}  // namespace

// A sample; the others in the night.
TEST(VoidedChecks, LostConnectionIsToldAndNothingIsDoneTwice) {
    lose_some_connections<CheckSession>({{"Payment", voiding_check(voided_kinds()[0])},
                                         {"LaterPrepayment", voiding_check(voided_kinds()[1], kLastMonth)}});
}

namespace {

void add_row(store::Database& database, const std::string& table,
             std::initializer_list<std::pair<const char*, store::Value>> fields) {
    auto rows =
        database.OpenRecordset("SELECT * FROM " + table + " WHERE 1 = 2", store::RecordsetKind::dynaset);
    rows.AddNew();
    for (const auto& [field, value] : fields)
        rows.set(field, value);
    rows.Update();
}

int rows_of_check(payments::APform_void_check& form, const char* check_no) {
    int count = 0;
    for (int row = 0; row < form.dbgrid1.array.used_rows(); ++row)
        count += form.dbgrid1.cell(row, "check no") == check_no ? 1 : 0;
    return count;
}

}  // namespace

// The list is read by several queries. What another desk voids or stores between them is listed whole or not
// at all, and the checks after it are all there.
TEST(VoidedChecks, ListIsWholeWhateverOthersStoreWhileItIsRead) {
    CheckSession session(new_company(), voided_kinds()[0], "16/03/2026");
    store::Database& other_desk = session.company.db();
    // Checks of another company are not listed.
    for (const auto& [company, check_no] : {std::pair(1, "902"), std::pair(2, "903")})
        add_row(other_desk, "Payment_header_table",
                {{"fkey", "1pp-9"},
                 {"docno", "PP-26-00009"},
                 {"company", company},
                 {"doctype", "pp"},
                 {"payby", "Check"},
                 {"check_no", check_no},
                 {"check_date", *store::DateTime::from_ymd(2026, 3, 1)}});
    add_row(other_desk, "Payment_transaction_table", {{"fkey", "1pp-9"}, {"pay_amount", 20.0}});
    session.faults->engine_fails_itself = true;
    const auto set_void = [&](bool is_void) {
        other_desk.Execute(std::string("UPDATE Payment_header_table SET void = ") +
                           (is_void ? "TRUE" : "FALSE") + " WHERE fkey = '1py-1'");
    };
    for (const bool becomes_void : {true, false}) {
        int calls = 0;
        for (bool reached = true; reached;) {
            set_void(!becomes_void);
            session.faults->on_fault = [&] { set_void(becomes_void); };
            reached = session.with_fault(++calls, store::ErrorKind::io, false, [&] { session.press(104); });
            EXPECT_EQ(rows_of_check(session.form(), "902"), 1) << calls;
            EXPECT_EQ(rows_of_check(session.form(), "903"), 0) << calls;
            EXPECT_EQ(rows_of_check(session.form(), "901") % 2, 0) << calls;
        }
        EXPECT_GT(calls, 4);
    }
}

// --- the night run ---

class EveryFaultOfAVoidedCheck : public ::testing::Test, public SweptParameters<CheckSession> {};

TEST_P(EveryFaultOfAVoidedCheck, LeavesNothingOrIsRetried) { sweep_in_the_night(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Night, EveryFaultOfAVoidedCheck,
                         ::testing::Combine(::testing::ValuesIn(voids_of_all_kinds()),
                                            ::testing::ValuesIn(kSweptFaults)),
                         swept_name<CheckSession>);

class LostConnectionsOfAVoidedCheck : public ::testing::Test, public LostParameters<CheckSession> {};

TEST_P(LostConnectionsOfAVoidedCheck, AreToldAndNothingIsDoneTwice) {
    lose_connections_in_the_night(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Night, LostConnectionsOfAVoidedCheck,
                         ::testing::Combine(::testing::ValuesIn(voids_of_all_kinds()),
                                            ::testing::ValuesIn(kLostConnections)),
                         lost_name<CheckSession>);

}  // namespace brimley::testing
