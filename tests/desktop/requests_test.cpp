// What the window answers to the requests of a form: another form, at the document.
#include <QStatusBar>
#include <deque>

#include "desktop/host_window.h"
#include "desktop/review_windows.h"
#include "inquiries/apreport_inquiry.h"
#include "inquiries/apreport_payhistory.h"
#include "payments/invoice_payment/apform_payment.h"
#include "payments/prepayment/apform_prepayment.h"

namespace brimley::testing {

TEST_F(Host, PayThisInvoiceOpensThePaymentAtTheVendor) {
    save_invoice();
    window->desk().windows().back()->press(1006);
    ASSERT_NE(window->ap()->frm_payment, nullptr);
    EXPECT_EQ(window->ap()->frm_payment->cmbvendor.text(), "V1001");
    EXPECT_EQ(window->ap()->frm_payment->mode(), frame::Mode::new_entry);
    EXPECT_EQ(window->ap()->frm_payment->dbgrid1.cell(0, "AP document no"), "IP-26-00001");
}

TEST_F(Host, PaymentHistoryOfAnInvoiceOpensBesideIt) {
    save_invoice();
    window->desk().windows().back()->press(1007);
    ASSERT_NE(window->ap()->frm_payhistory, nullptr);
    EXPECT_EQ(window->ap()->frm_payhistory->txtdocno.text(), "IP-26-00001");
    EXPECT_EQ(window->ap()->frm_payhistory->cmbvendor.text(), "V1001");
    EXPECT_EQ(window->desk().windows().size(), 2U);
}

TEST_F(Host, InvoiceThatAnInquiryListsGoesToTheOpenInvoiceForm) {
    save_invoice();
    save_another_invoice();
    ASSERT_TRUE(window->show_form("APreport_inquiry"));
    window->desk().windows().back()->press(104);
    EXPECT_EQ(window->ap()->frm_inquiry->dbgrid1.cell(1, "document no"), "IP-26-00002");
    window->desk().windows().back()->press(1001);
    EXPECT_EQ(window->ap()->frm_invoice->txtdocno.text(), "IP-26-00001");
    EXPECT_EQ(window->desk().windows().size(), 2U);
}

TEST_F(Host, BillRecordGoesToTheOpenInvoiceForm) {
    save_invoice();
    auto& form = *window->ap()->frm_invoice;
    ask("Bill Entry : Docno", "IP-26-00001");
    EXPECT_EQ(&form, window->ap()->frm_invoice.get());
    EXPECT_EQ(form.txtdocno.text(), "IP-26-00001");
}

TEST_F(Host, BillRecordOpensAnotherInvoiceFormWhenOneIsBeingTypedIn) {
    save_invoice();
    ASSERT_EQ(window->ap()->frm_invoice->press(105), controls::Refusal::none);
    ask("Bill Entry", "1ip-1");
    EXPECT_EQ(window->desk().windows().size(), 2U);
    EXPECT_EQ(window->desk().windows().front()->form().mode(), frame::Mode::new_entry);
    EXPECT_EQ(window->ap()->frm_invoice->txtdocno.text(), "IP-26-00001");
}

TEST_F(Host, BillRecordIsNotLookedForAmongTheTemplates) {
    save_invoice();
    auto& form = *window->ap()->frm_invoice;
    form.CommandBars1().set_pressed(1005, true);
    ask("Bill Entry : Docno", "IP-26-00001");
    EXPECT_EQ(boxes, std::vector<std::string>{});
    EXPECT_NE(&form, window->ap()->frm_invoice.get());
    EXPECT_EQ(window->ap()->frm_invoice->txtdocno.text(), "IP-26-00001");
}

TEST_F(Host, RequestWithoutADocumentOnlyBringsTheFormUp) {
    save_invoice();
    save_another_invoice();
    auto& form = *window->ap()->frm_invoice;
    ASSERT_EQ(form.press(107), controls::Refusal::none);
    ASSERT_EQ(form.txtdocno.text(), "IP-26-00001");
    ask("Bill Entry : Docno");
    EXPECT_EQ(&form, window->ap()->frm_invoice.get());
    EXPECT_EQ(form.txtdocno.text(), "IP-26-00001");
}

TEST_F(Host, RequestForAPaymentGoesToTheOpenFormOfItsKind) {
    for (const char* formx : {"Payment Entry", "A/P Payment Entry", "A/P Prepayment", "Credit Card Payment"})
        ask(formx);
    EXPECT_EQ(window->desk().windows().size(), 3U);
    ask("A/P Prepayment", "PP-26-00009");
    ask("Credit Card Payment", "PC-26-00009");
    EXPECT_EQ(boxes, (std::vector<std::string>{"PP-26-00009 not found.", "PC-26-00009 not found."}));
    EXPECT_EQ(window->desk().windows().size(), 3U);
    // One that is being typed in is left alone.
    ASSERT_EQ(window->ap()->frm_prepayment->press(105), controls::Refusal::none);
    ask("A/P Prepayment");
    EXPECT_EQ(window->desk().windows().size(), 4U);
}

TEST_F(Host, OlderOfTwoWindowsOfAFormIsNotHeard) {
    save_invoice();
    window->show_form("APform_invoice");
    ASSERT_EQ(window->desk().windows().size(), 2U);
    window->desk().windows().front()->press(204);
    EXPECT_EQ(newest<desktop::ListWindow>(), nullptr);
    window->desk().windows().back()->press(204);
    EXPECT_NE(newest<desktop::ListWindow>(), nullptr);
}

TEST_F(Host, DocumentOfAnotherModuleIsTold) {
    ask("Receipt Entry", "RC-7");
    EXPECT_EQ(window->statusBar()->currentMessage(), "Receipt Entry RC-7 is a document of another module.");
}

}  // namespace brimley::testing
