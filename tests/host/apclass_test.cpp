#include "host/apclass.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "payments/invoice_payment/apform_payment.h"
#include "support/sample_host.h"

namespace brimley::testing {

using host::call_by_name;
using host::CallOutcome;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class HostClass : public ::testing::Test {
  protected:
    [[nodiscard]] invoices::APform_invoice& form() { return *user.ap.frm_invoice; }
    // Saves one document of this kind through the newest form.
    void save(const char* kind) {
        EnteredInvoice invoice;
        invoice.kind = kind;
        invoice.lines = {{"5000", "NOTAX", "taxable amount", "100.00"}};
        enter(form(), invoice);
        ASSERT_EQ(form().press(101), controls::Refusal::none);
        ASSERT_EQ(form().mode(), frame::Mode::read);
    }

    CompanyCopy company{sample_original()};
    DeskOfUser user{company.open()};
    host::APclass& ap = user.ap;
};

TEST_F(HostClass, EachMethodIsCallableByName) {
    const std::vector<std::string> one_or_none{"showform_APform_invoice", "showform_APform_payment",
                                               "showform_APform_prepayment", "showform_APform_payhistory",
                                               "showform_APform_aging"};
    const std::vector<std::string> none{"showform_APform_misc",    "showform_APform_creditcard_payment",
                                        "showform_APform_inquiry", "showform_APform_void_check",
                                        "showform_APform_revalue", "showform_APreport_recur_inquiry",
                                        "frm_invoice_Exit",        "frm_payment_Exit",
                                        "frm_prepayment_Exit",     "frm_misc_Exit",
                                        "frm_creditcard_Exit",     "frm_recur_inquiry_Exit",
                                        "frm_revalue_Exit",        "frm_void_check_Exit",
                                        "frm_aging_Exit",          "frm_inquiry_Exit",
                                        "frm_payhistory_Exit"};
    const std::vector<std::string> one{"OPENdb",
                                       "basecurrency",
                                       "BRuser",
                                       "BRtheme",
                                       "switch_APform_invoice",
                                       "APform_invoice_goto_fkey",
                                       "APform_invoice_goto_docno",
                                       "APform_payment_goto_docno",
                                       "APform_prepayment_goto_docno",
                                       "APform_misc_goto_docno",
                                       "APform_creditcard_goto_docno",
                                       "APform_revalue_goto_docno"};
    const std::vector<std::string> three{
        "frm_invoice_NotifyClients", "frm_payment_NotifyClients",    "frm_prepayment_NotifyClients",
        "frm_misc_NotifyClients",    "frm_creditcard_NotifyClients", "frm_recur_inquiry_NotifyClients",
        "frm_revalue_NotifyClients", "frm_void_check_NotifyClients", "frm_aging_NotifyClients",
        "frm_inquiry_NotifyClients", "frm_payhistory_NotifyClients", "frm_ledger_NotifyClients"};
    const std::vector<std::string> arguments(4, "x");
    const auto takes = [&](const std::vector<std::string>& methods, std::size_t least, std::size_t most) {
        for (const std::string& method : methods) {
            for (std::size_t count = 0; count <= 4; ++count) {
                const auto outcome =
                    call_by_name(ap, method, {arguments.begin(), arguments.begin() + std::ptrdiff_t(count)});
                EXPECT_EQ(outcome,
                          count >= least && count <= most ? CallOutcome::done : CallOutcome::wrong_arguments)
                    << method << ' ' << count;
            }
        }
        return methods.size();
    };
    const std::size_t called =
        takes(one_or_none, 0, 1) + takes(none, 0, 0) + takes(one, 1, 1) + takes({"showform_Master"}, 1, 2) +
        takes({"showform_Ledger_journal", "showform_Ledger_entry"}, 0, 1) +
        takes({"showform_Ledger_trial_balance"}, 0, 0) + takes({"pay_this_invoice"}, 2, 2) +
        takes(three, 3, 3) + takes({"class_terminate"}, 0, 0);
    EXPECT_EQ(called, host::method_names().size());
}

TEST_F(HostClass, UnknownMethodIsToldAndDoesNothing) {
    EXPECT_EQ(call_by_name(ap, "showform_APform_Invoice", {}), CallOutcome::no_such_method);
    EXPECT_EQ(call_by_name(ap, "", {}), CallOutcome::no_such_method);
    EXPECT_THAT(user.desk.open_forms, IsEmpty());
}

TEST_F(HostClass, ShowingAgainOpensASecondForm) {
    ap.showform_APform_invoice();
    const auto first = ap.frm_invoice;
    ap.showform_APform_invoice();
    EXPECT_NE(ap.frm_invoice, first);
    EXPECT_EQ(user.desk.open_forms.size(), 2U);
    EXPECT_TRUE(first->is_open());
}

TEST_F(HostClass, OnlyTheNewestFormsRequestsReachTheHost) {
    ap.showform_APform_invoice();
    const auto first = ap.frm_invoice;
    ap.showform_APform_invoice();
    EXPECT_EQ(first->press(207), controls::Refusal::none);
    EXPECT_THAT(user.notifications, IsEmpty());
    EXPECT_EQ(form().press(207), controls::Refusal::none);
    EXPECT_THAT(user.notifications, ElementsAre("pdf viewer|C:\\Brimley\\Help\\Account Payable system "
                                                "Help.pdf|Account Payable Help"));
}

TEST_F(HostClass, OlderFormGoesOnWorkingAndExitReachesTheNewestOnly) {
    ap.showform_APform_invoice();
    const auto first = ap.frm_invoice;
    ap.showform_APform_invoice();
    ap.frm_invoice_Exit();
    EXPECT_FALSE(form().is_open());
    EXPECT_TRUE(first->is_open());
    EXPECT_EQ(user.desk.closed, 1);
    EXPECT_THAT(user.notifications, IsEmpty());
    enter(*first, {"Invoice", "V1001", "USD", "", {{"5000", "NOTAX", "taxable amount", "1.00"}}});
    EXPECT_EQ(first->press(101), controls::Refusal::none);
    EXPECT_EQ(company.list("SELECT docno FROM AP_header_table"), "IP-26-00001");
}

TEST_F(HostClass, ExitCommandClosesTheFormAndAsksForTheNextApplication) {
    ap.showform_APform_invoice();
    EXPECT_EQ(form().press(100), controls::Refusal::none);
    EXPECT_THAT(user.notifications, ElementsAre("Next App||"));
    EXPECT_THAT(user.desk.open_forms, IsEmpty());
    EXPECT_NE(ap.frm_invoice, nullptr);
    EXPECT_EQ(form().press(100), controls::Refusal::disabled);
}

TEST_F(HostClass, HostMayShowAFormOfTheSameKindFromWithinAnEvent) {
    ap.showform_APform_invoice();
    ap.NotifyClients = [&](const std::string& formx, const std::string&, const std::string&) {
        user.notifications.push_back(formx);
        ap.showform_APform_invoice();
    };
    EXPECT_EQ(form().press(100), controls::Refusal::none);
    EXPECT_THAT(user.notifications, ElementsAre("Next App"));
    EXPECT_EQ(user.desk.open_forms.size(), 1U);
    EXPECT_TRUE(form().is_open());
}

TEST_F(HostClass, EventIsForwardedUnchangedAndTheHostBreathesOnce) {
    const int pumps = user.desk.pumps;
    ap.frm_payment_NotifyClients("a", "b", "c");
    EXPECT_THAT(user.notifications, ElementsAre("a|b|c"));
    EXPECT_EQ(user.desk.pumps, pumps + 1);
    ap.NotifyClients = nullptr;
    ap.frm_invoice_NotifyClients("a", "b", "c");
    EXPECT_EQ(user.desk.pumps, pumps + 2);
}

TEST_F(HostClass, ShowTakesItsOwnKeysOfKinds) {
    ap.showform_APform_invoice();
    save("Invoice");
    save("Debit Note");
    save("Credit Note");
    ap.showform_APform_invoice("cn");
    EXPECT_EQ(form().txtdocno.text(), "VCN-26-00001");
    ap.showform_APform_invoice("dn");
    EXPECT_EQ(form().txtdocno.text(), "VDN-26-00001");
    ap.showform_APform_invoice("vcn");
    EXPECT_EQ(form().cmbdoctype.text(), "Invoice");
}

TEST_F(HostClass, SwitchTakesItsOwnKeysAndAnyOtherIsInvoice) {
    ap.showform_APform_invoice();
    save("Invoice");
    save("Invoice");
    save("Credit Note");
    ap.switch_APform_invoice("anything");
    EXPECT_EQ(form().cmbdoctype.text(), "Invoice");
    EXPECT_EQ(form().txtdocno.text(), "IP-26-00002");
    ap.switch_APform_invoice("vcn");
    EXPECT_EQ(form().txtdocno.text(), "VCN-26-00001");
    ap.switch_APform_invoice("cn");
    EXPECT_EQ(form().txtdocno.text(), "IP-26-00002");
}

TEST_F(HostClass, SwitchToTheKindOnScreenStaysOnItsRecord) {
    ap.showform_APform_invoice();
    save("Invoice");
    save("Invoice");
    ap.APform_invoice_goto_docno("IP-26-00001");
    ap.switch_APform_invoice("whatever");
    EXPECT_EQ(form().txtdocno.text(), "IP-26-00001");
}

TEST_F(HostClass, GotoShowsTheDocumentByKeyOrNumber) {
    ap.showform_APform_invoice();
    save("Invoice");
    save("Debit Note");
    ap.APform_invoice_goto_fkey("1ip-1");
    EXPECT_EQ(form().txtdocno.text(), "IP-26-00001");
    ap.APform_invoice_goto_docno("VDN-26-00001");
    EXPECT_EQ(form().txtfkey.text(), "1vdn-1");
}

TEST_F(HostClass, NavigationBeforeAnyShowDoesNothing) {
    ap.switch_APform_invoice("vcn");
    ap.APform_invoice_goto_fkey("1ip-1");
    ap.APform_invoice_goto_docno("IP-26-00001");
    ap.pay_this_invoice("IP-26-00001", "V1001");
    ap.frm_invoice_Exit();
    EXPECT_THAT(user.desk.open_forms, IsEmpty());
    EXPECT_THAT(user.messages(), IsEmpty());
}

TEST_F(HostClass, NavigationOnAClosedFormOpensNothingAgain) {
    ap.showform_APform_invoice();
    save("Invoice");
    ap.frm_invoice_Exit();
    ap.switch_APform_invoice("vcn");
    ap.APform_invoice_goto_fkey("1ip-1");
    ap.APform_invoice_goto_docno("IP-26-00001");
    ap.frm_invoice_Exit();
    EXPECT_FALSE(form().is_open());
    EXPECT_EQ(user.desk.closed, 1);
    EXPECT_THAT(user.desk.raised, IsEmpty());
    EXPECT_THAT(user.notifications, IsEmpty());
}

TEST_F(HostClass, PayingOnAClosedFormShowsNothingAndDoesNothing) {
    ap.showform_APform_invoice();
    save("Invoice");
    static_cast<void>(user.messages());
    ap.showform_APform_payment();
    ap.frm_payment_Exit();
    ap.pay_this_invoice("IP-26-00001", "V1001");
    EXPECT_FALSE(ap.frm_payment->is_open());
    EXPECT_THAT(user.desk.open_forms, ElementsAre(ap.frm_invoice));
    EXPECT_THAT(user.desk.raised, IsEmpty());
    EXPECT_EQ(ap.frm_payment->cmbvendor.text(), "");
    EXPECT_EQ(ap.frm_payment->mode(), frame::Mode::read);
    EXPECT_THAT(user.messages(), IsEmpty());
    EXPECT_THAT(user.notifications, IsEmpty());
    // A form that is shown again can be paid on.
    ap.showform_APform_payment();
    ap.pay_this_invoice("IP-26-00001", "V1001");
    EXPECT_EQ(ap.frm_payment->dbgrid1.cell(0, "AP document no"), "IP-26-00001");
}

TEST_F(HostClass, HostMayCloseTheSenderFromWithinItsEvent) {
    ap.showform_APform_invoice();
    ap.NotifyClients = [&](const std::string&, const std::string&, const std::string&) {
        ap.frm_invoice_Exit();
        ap.frm_invoice.reset();
    };
    const std::weak_ptr<invoices::APform_invoice> sender = ap.frm_invoice;
    EXPECT_EQ(form().press(207), controls::Refusal::none);
    EXPECT_THAT(user.desk.open_forms, IsEmpty());
    EXPECT_TRUE(sender.expired());
}

TEST_F(HostClass, FormWithoutADatabaseOpensWithoutData) {
    ap.db(nullptr);
    ap.showform_APform_invoice();
    EXPECT_TRUE(form().is_open());
    EXPECT_EQ(form().txtdocno.text(), "");
    EXPECT_TRUE(form().dbgrid1.columns.empty());
}

TEST_F(HostClass, FormsOnOneDatabaseShareItsKernel) {
    // The Current Earnings account is looked up once in the life of a kernel.
    ap.showform_APform_invoice();
    save("Invoice");
    company.db().Execute("UPDATE Account_master_table SET type = 'A' WHERE type = 'X'");
    ap.showform_APform_invoice();
    save("Invoice");
    EXPECT_EQ(company.list("SELECT docno FROM AP_header_table"), "IP-26-00001 | IP-26-00002");
}

TEST_F(HostClass, TerminateLetsGoOfDatabaseAndWorkspaceAndKeepsTheRest) {
    ap.cnx = 7;
    auto own = company.second_user();
    ap.dbe = own.workspace;
    ap.abcdb = own.database;
    ap.showform_APform_invoice();
    std::weak_ptr<store::Database> database = own.database;
    std::weak_ptr<store::Workspace> workspace = own.workspace;
    own = {};
    ap.class_terminate();
    EXPECT_EQ(ap.abcdb, nullptr);
    EXPECT_EQ(ap.dbe, nullptr);
    EXPECT_TRUE(ap.cnx.has_value());
    EXPECT_NE(ap.frm_invoice, nullptr);
    // The form on the screen has its own hold on both, and is the last one that has.
    EXPECT_FALSE(database.expired());
    ap.frm_invoice_Exit();
    ap.frm_invoice.reset();
    EXPECT_TRUE(database.expired());
    EXPECT_TRUE(workspace.expired());
}

TEST(HostClassLife, FormOutlivesTheHostObject) {
    CompanyCopy company{sample_original()};
    auto user = std::make_unique<DeskOfUser>(company.open());
    RecordingDesk desk;
    auto ap = std::make_unique<host::APclass>(desk);
    static_cast<frame::HostContext&>(*ap) = user->ap;
    ap->showform_APform_invoice();
    ap.reset();
    ASSERT_EQ(desk.open_forms.size(), 1U);
    EXPECT_EQ(desk.open_forms[0]->press(207), controls::Refusal::none);
    EXPECT_EQ(desk.open_forms[0]->press(100), controls::Refusal::none);
    EXPECT_EQ(desk.closed, 1);
}

}  // namespace brimley::testing
