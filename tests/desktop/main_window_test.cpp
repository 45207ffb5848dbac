// The window around the forms: companies, and what it answers to the requests of a form.
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QSettings>
#include <QStatusBar>
#include <QTableView>
#include <QTextDocument>

#include "desktop/live_desk.h"
#include "desktop/main_window.h"
#include "desktop/paper_windows.h"
#include "desktop/review_windows.h"

namespace brimley::testing {

class Host : public ::testing::Test {
  protected:
    void SetUp() override {
        QSettings("Brimley", "Brimley AP").clear();
        sample_original().copy_to(path);
        options.user = "anna";
        window = std::make_unique<desktop::MainWindow>(options);
        window->desk().on_box = [this](QMessageBox& box) {
            boxes.push_back(box.text().toStdString());
            box.button(box.standardButtons().testFlag(QMessageBox::Ok) ? QMessageBox::Ok : QMessageBox::Yes)
                ->click();
        };
        window->show();
        window->open_company(QString::fromStdString(path));
    }
    // The newest window in the area that is of this kind; null when there is none.
    template <class Kind>
    Kind* newest() {
        Kind* found = nullptr;
        for (QMdiSubWindow* const at : window->area().subWindowList())
            if (auto* const kind = dynamic_cast<Kind*>(at->widget())) found = kind;
        return found;
    }
    void ask(const char* formx, const char* docnox = "", const char* arg2 = "") {
        window->ap()->NotifyClients(formx, docnox, arg2);
    }
    // One invoice and its ledger document.
    void save_invoice() {
        ASSERT_TRUE(window->show_form("APform_invoice"));
        auto& form = *window->ap()->frm_invoice;
        enter(form, {.lines = {{"5000", "", "gross amount", "100.00"}}});
        ASSERT_EQ(form.press(101), controls::Refusal::none);
        boxes.clear();
    }

    TemporaryFolder folder;
    std::string path = folder.file("company.brimley");
    opening::HostOptions options;
    std::unique_ptr<desktop::MainWindow> window;
    std::vector<std::string> boxes;
};

TEST_F(Host, CompanyThatWasOpenedIsRemembered) {
    EXPECT_EQ(desktop::Settings().recent_companies(), QStringList{QString::fromStdString(path)});
    window->close_company();
    EXPECT_EQ(window->ap(), nullptr);
}

TEST_F(Host, CompanyThatCannotBeOpenedLeavesTheOpenOneAsItIs) {
    window->show_form("APform_invoice");
    EXPECT_THROW(window->open_company("/nowhere/company.brimley"), std::exception);
    ASSERT_NE(window->ap(), nullptr);
    EXPECT_EQ(window->desk().windows().size(), 1U);
}

TEST_F(Host, FormThatTheVersionDoesNotHaveIsTold) {
    EXPECT_FALSE(window->show_form("APreport_aging"));
    EXPECT_EQ(window->statusBar()->currentMessage(),
              "Vendor aging: this version does not have that form yet.");
    EXPECT_FALSE(window->show_form("APform_nothing"));
}

TEST_F(Host, LeavingTheCompanyTakesItsFormsDown) {
    save_invoice();
    window->show_form("APform_payment");
    EXPECT_EQ(window->desk().windows().size(), 2U);
    window->close_company();
    EXPECT_TRUE(window->desk().windows().empty());
    EXPECT_TRUE(window->area().subWindowList().isEmpty());
}

TEST_F(Host, GlLedgerReviewShowsTheLinesOfTheDocument) {
    save_invoice();
    window->desk().windows().back()->press(113);
    auto* const ledger = newest<desktop::LedgerWindow>();
    ASSERT_NE(ledger, nullptr);
    const QAbstractItemModel& lines = *ledger->lines().model();
    ASSERT_EQ(lines.rowCount(), 2);
    EXPECT_EQ(lines.index(0, 1).data().toString(), "2000");
    EXPECT_EQ(lines.index(0, 3).data().toString(), "100.00");
    EXPECT_EQ(lines.index(1, 1).data().toString(), "5000");
    EXPECT_EQ(lines.index(1, 2).data().toString(), "Purchases");
}

TEST_F(Host, VendorMasterStandsAtTheVendorAndCanBeSearched) {
    ask("Vendor Master", "V1003");
    auto* const list = newest<desktop::ListWindow>();
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->chosen_key(), "V1003");
    const int all = list->table().model()->rowCount();
    list->search().setText("chiang rai");
    EXPECT_LT(list->table().model()->rowCount(), all);
    EXPECT_EQ(list->table().model()->index(0, 0).data().toString(), "V3002");
}

TEST_F(Host, AccountMasterListsTheAccounts) {
    ask("Account Master", "5000");
    auto* const list = newest<desktop::ListWindow>();
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->windowTitle(), "Account Master");
    EXPECT_EQ(list->chosen_key(), "5000");
}

TEST_F(Host, PreviewPrintsTheDocumentOfTheQuery) {
    save_invoice();
    window->desk().windows().back()->press(103);
    auto* const report = newest<desktop::ReportWindow>();
    ASSERT_NE(report, nullptr);
    EXPECT_EQ(report->windowTitle(), "A/P Invoice IP-26-00001");
    const QString text = report->document().toPlainText();
    EXPECT_TRUE(text.contains("IP-26-00001"));
    EXPECT_TRUE(text.contains("Baywater Coffee Traders"));
    EXPECT_TRUE(text.contains("100.00"));
    const QString file = QString::fromStdString(folder.file("report.pdf"));
    EXPECT_TRUE(report->save_pdf(file));
    ask("pdf viewer", file.toStdString().c_str(), "The report");
    auto* const viewer = newest<desktop::PdfWindow>();
    ASSERT_NE(viewer, nullptr);
    EXPECT_EQ(viewer->windowTitle(), "The report");
    EXPECT_EQ(viewer->pages(), 1);
}

TEST_F(Host, PdfThatIsNotThereIsToldInItsWindow) {
    ask("pdf viewer", "/nowhere\\Help\\AP Invoice Entry Help.pdf", "Help");
    auto* const viewer = newest<desktop::PdfWindow>();
    ASSERT_NE(viewer, nullptr);
    EXPECT_EQ(viewer->findChild<QLabel*>()->text(),
              "/nowhere/Help/AP Invoice Entry Help.pdf cannot be shown.");
}

TEST_F(Host, PayThisInvoiceOpensThePaymentAtTheVendor) {
    save_invoice();
    window->desk().windows().back()->press(1006);
    ASSERT_NE(window->ap()->frm_payment, nullptr);
    EXPECT_EQ(window->ap()->frm_payment->cmbvendor.text(), "V1001");
    EXPECT_EQ(window->ap()->frm_payment->mode(), frame::Mode::new_entry);
    EXPECT_EQ(window->ap()->frm_payment->dbgrid1.cell(0, "AP document no"), "IP-26-00001");
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

TEST_F(Host, DocumentOfAnotherModuleIsTold) {
    ask("Receipt Entry", "RC-7");
    EXPECT_EQ(window->statusBar()->currentMessage(), "Receipt Entry RC-7 is a document of another module.");
}

TEST_F(Host, ExitClosesTheWindowOfTheForm) {
    window->show_form("APform_invoice");
    window->desk().windows().back()->press(100);
    EXPECT_TRUE(window->area().subWindowList().isEmpty());
}

}  // namespace brimley::testing
