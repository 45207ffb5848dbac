// What opens beside the forms: reviews, masters, reports and the pages that are printed.
#include <QDeadlineTimer>
#include <QDir>
#include <QDockWidget>
#include <QFileInfo>
#include <QHeaderView>
#include <QLineEdit>
#include <QProgressBar>
#include <QTableView>
#include <QTest>
#include <QTextDocument>
#include <QTimer>
#include <deque>
#include <filesystem>
#include <fstream>

#include "desktop/host_window.h"
#include "desktop/ledger_window.h"
#include "desktop/module_forms.h"
#include "desktop/paper_windows.h"
#include "desktop/review_windows.h"
#include "inquiries/apreport_aging.h"

namespace brimley::testing {

TEST_F(Host, GlLedgerReviewShowsTheLinesOfTheDocument) {
    save_invoice();
    window->desk().windows().back()->press(113);
    auto* const ledger = newest<desktop::LedgerWindow>();
    ASSERT_NE(ledger, nullptr);
    const QAbstractItemModel& lines = *ledger->lines().model();
    const auto cell = [&](int row, const QString& heading) {
        for (int column = 0; column < lines.columnCount(); ++column)
            if (lines.headerData(column, Qt::Horizontal).toString() == heading)
                return lines.index(row, column).data().toString().toStdString();
        return std::string("no such column");
    };
    ASSERT_EQ(lines.rowCount(), 2);
    EXPECT_EQ(cell(0, "Account"), "2000");
    EXPECT_EQ(cell(0, "Debit"), "");
    EXPECT_EQ(cell(0, "Credit"), "100.00");
    EXPECT_EQ(cell(1, "Account"), "5000");
    EXPECT_EQ(cell(1, "Name"), "Purchases");
    EXPECT_EQ(cell(1, "Debit"), "100.00");
    EXPECT_EQ(cell(1, "Base debit"), "100.00");
    EXPECT_EQ(cell(1, "Credit"), "");
    EXPECT_EQ(ledger->sums().text(), "Base debit 100.00   Base credit 100.00");
    EXPECT_EQ(ledger->windowTitle(), "G/L Ledger Review - GL-26-00001");
}

TEST_F(Host, GlLedgerReviewTellsWhenADocumentDoesNotBalance) {
    save_invoice();
    window->ap()->abcdb->Execute("UPDATE GL_transaction_table SET base_amount = 90 WHERE accno = '5000'");
    ask("G/L Ledger Review", "1gl-1");
    auto* const ledger = newest<desktop::LedgerWindow>();
    ASSERT_NE(ledger, nullptr);
    EXPECT_EQ(ledger->sums().text(), "Base debit 90.00   Base credit 100.00   NOT IN BALANCE");
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

TEST_F(Host, MasterIsSearchedAtOnceAndTheArrowsGoThroughWhatWasFound) {
    ask("Vendor Master");
    auto* const list = newest<desktop::ListWindow>();
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->focusProxy(), &list->search());
    QTest::keyClicks(&list->search(), "tea");
    ASSERT_GT(list->table().model()->rowCount(), 1);
    const QString first = list->chosen_key();
    QTest::keyClick(&list->search(), Qt::Key_Down);
    EXPECT_NE(list->chosen_key(), first);
}

TEST_F(Host, VendorMasterShowsAnAddressInOneLine) {
    ask("Vendor Master", "V1001");
    const QAbstractItemModel& vendors = *newest<desktop::ListWindow>()->table().model();
    const QString address = vendors.index(0, vendors.columnCount() - 1).data().toString();
    EXPECT_FALSE(address.isEmpty());
    EXPECT_FALSE(address.contains('\n'));
}

TEST_F(Host, AccountMasterListsTheAccounts) {
    ask("Account Master", "5000");
    auto* const list = newest<desktop::ListWindow>();
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->windowTitle(), "Account Master");
    EXPECT_EQ(list->chosen_key(), "5000");
}

TEST_F(Host, RowOfAMastersListIsOpenedInItsMaster) {
    const auto opened = [&] { return window->desk().windows().back()->form().document_shown(); };
    ask("Vendor Master", "V1003");
    newest<desktop::ListWindow>()->opener().click();
    EXPECT_EQ(opened(), "vendor V1003");
    ask("Account Master", "5000");
    QTest::keyClick(&newest<desktop::ListWindow>()->search(), Qt::Key_Return);
    EXPECT_EQ(opened(), "account 5000");
}

TEST_F(Host, ListIsSortedByAClickAndKeepsItsWidths) {
    ask("Vendor Master");
    auto* list = newest<desktop::ListWindow>();
    ASSERT_NE(list, nullptr);
    const auto first = [&](int column) { return list->table().model()->index(0, column).data().toString(); };
    EXPECT_EQ(first(0), "V1001");
    constexpr int kName = 1;
    list->table().horizontalHeader()->setSortIndicator(kName, Qt::AscendingOrder);
    EXPECT_EQ(first(kName), "Acciaio Brera S.p.A.");
    list->table().setColumnWidth(kName, 333);
    delete list;
    ask("Vendor Master");
    list = newest<desktop::ListWindow>();
    EXPECT_EQ(first(0), "V1001");
    EXPECT_EQ(list->table().columnWidth(kName), 333);
}

TEST_F(Host, MoneyIsSortedAsNumbers) {
    store::open_company(path, kernel::company_tables())
        .database->Execute("UPDATE Vendor_table SET owing_balance = 900 WHERE vendor_no = 'V1002'");
    store::open_company(path, kernel::company_tables())
        .database->Execute("UPDATE Vendor_table SET owing_balance = 1000 WHERE vendor_no = 'V1003'");
    ask("Vendor Master");
    auto* const list = newest<desktop::ListWindow>();
    constexpr int kOwing = 4;
    list->table().horizontalHeader()->setSortIndicator(kOwing, Qt::DescendingOrder);
    const auto vendor = [&](int row) { return list->table().model()->index(row, 0).data().toString(); };
    EXPECT_EQ(vendor(0), "V1003");
    EXPECT_EQ(vendor(1), "V1002");
}

TEST_F(Host, WhatADocumentIsStandsInLargeLetters) {
    save_invoice();
    auto& form = *window->desk().windows().back();
    const auto stamp = [&] {
        form.settle();
        return form.stamp_shown();
    };
    EXPECT_EQ(stamp(), "");
    form.press(1009);
    EXPECT_EQ(stamp(), "HOLD");
    form.press(1010);
    EXPECT_EQ(stamp(), "");
    form.press(1008);
    EXPECT_EQ(stamp(), "VOID");
    form.press(105);
    EXPECT_EQ(stamp(), "");
}

TEST_F(Host, PaperNamesTheCompanyByItsFileUntilItIsGivenAName) {
    const auto paper = [this] {
        save_invoice();
        window->desk().windows().back()->press(103);
        return newest<desktop::ReportWindow>()->document().toPlainText().toStdString();
    };
    EXPECT_THAT(paper(), ::testing::StartsWith("company\n"));
    options.company_name = "Pier Street Coffee & Tea";
    open_window();
    EXPECT_THAT(paper(), ::testing::StartsWith("Pier Street Coffee & Tea\n"));
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
    EXPECT_TRUE(text.contains("Total"));
    for (const char* const raw : {"Docno", "Duedays", "fkey", "Source form", "authority"})
        EXPECT_FALSE(text.contains(raw)) << raw;
    const QString file = QString::fromStdString(folder.file("report.pdf"));
    EXPECT_TRUE(text.contains("14 Quay Road\nSuite 200\nSeattle WA 98101"));
    EXPECT_EQ(report->save_pdf(file), "");
    EXPECT_EQ(report->file_name(), "A-P Invoice IP-26-00001.pdf");
    EXPECT_NE(report->save_pdf("/nowhere/report.pdf"), "");
    ask("pdf viewer", file.toStdString().c_str(), "The report");
    auto* const viewer = newest<desktop::PdfWindow>();
    ASSERT_NE(viewer, nullptr);
    EXPECT_EQ(viewer->windowTitle(), "The report");
    EXPECT_EQ(viewer->pages(), 1);
}

TEST_F(Host, PdfThatIsNotThereIsToldInItsWindow) {
    ask("pdf viewer", "/nowhere\\Help\\Sales Help.pdf", "Help");
    auto* const viewer = newest<desktop::PdfWindow>();
    ASSERT_NE(viewer, nullptr);
    EXPECT_EQ(viewer->findChild<QLabel*>()->text(), "/nowhere/Help/Sales Help.pdf was not found.");
    ask("pdf viewer", "/nowhere\\AP Invoice Entry Help.pdf", "No help");
    EXPECT_EQ(newest<desktop::PdfWindow>()->pages(), 0);
}

// Every form of the module that names a help file has it, and the program has its own.
TEST_F(Host, HelpOfEachFormIsThere) {
    int with_help = 0;
    for (const desktop::ModuleForm& form : desktop::module_forms()) {
        if (form.menu != desktop::ModuleForm::Menu::forms) continue;
        ASSERT_TRUE(window->show_form(form.class_name)) << form.class_name;
        auto& shown = window->desk().windows().back()->form();
        if (*shown.identity().help_file == '\0') continue;
        ++with_help;
        for (const int command : {frame::command::kFormHelp, frame::command::kSystemHelp}) {
            ASSERT_EQ(shown.press(command), controls::Refusal::none) << form.class_name;
            EXPECT_GE(newest<desktop::PdfWindow>()->pages(), 1) << form.class_name << ' ' << command;
        }
    }
    EXPECT_EQ(with_help, 7);
}

TEST_F(Host, HelpBesideTheCompanyTakesThePlaceOfTheProgramsOwn) {
    std::filesystem::create_directory(folder.file("Help"));
    const std::string own = folder.file("Help/AP Invoice Entry Help.pdf");
    std::ofstream(own) << "no PDF file";
    ask("pdf viewer", own.c_str(), "Help");
    EXPECT_TRUE(newest<desktop::PdfWindow>()->findChild<QLabel*>()->text().endsWith("it is not a PDF file."));
}

// Whether something dark appears in the window within some seconds: pages are drawn beside the event loop.
bool shows_ink(QWidget& window) {
    const QDeadlineTimer deadline(10'000);
    while (!deadline.hasExpired()) {
        QApplication::processEvents(QEventLoop::AllEvents, 20);
        const QImage picture = window.grab().toImage();
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                if (qGray(picture.pixel(x, y)) < 60) return true;
    }
    return false;
}

TEST_F(Host, ReportIsWrittenIntoTheUsersFolderAndOpensInAWindow) {
    save_invoice();
    ASSERT_TRUE(window->show_form("APreport_aging"));
    auto& list = *window->desk().windows().back();
    list.press(104);
    list.press(103);
    EXPECT_EQ(newest<desktop::PdfWindow>(), nullptr);  // nobody has set up the page
    list.press(102);
    auto& save = dynamic_cast<controls::PushButton&>(*list.form().child()->controls().find("cmdsave"));
    ASSERT_EQ(save.click(), controls::Refusal::none);
    list.press(103);
    EXPECT_EQ(boxes, std::vector<std::string>{"Save format complete"});
    auto* const viewer = newest<desktop::PdfWindow>();
    ASSERT_NE(viewer, nullptr);
    EXPECT_EQ(viewer->windowTitle(), "Preview Vendor Aging");
    EXPECT_EQ(viewer->pages(), 1);
    EXPECT_TRUE(shows_ink(*viewer));
    // A page that nobody has turned is a landscape one, and has its twin.
    const QDir reports(QString::fromStdString(folder.file("User report/anna")));
    const QStringList files = reports.entryList(QDir::Files, QDir::Name);
    ASSERT_EQ(files.size(), 2);
    EXPECT_TRUE(files[0].startsWith("vendor_aging"));
    EXPECT_TRUE(files[1].endsWith("_L.pdf"));
}

TEST_F(Host, PaneOfTheColumnsToPrintHasItsTitles) {
    ASSERT_TRUE(window->show_form("APreport_aging"));
    auto& list = *window->desk().windows().back();
    list.press(124);
    list.settle();
    auto& columns = window->ap()->frm_aging->print_columns;
    QDockWidget* const pane = list.pane(columns.Frame_printcol);
    ASSERT_NE(pane, nullptr);
    EXPECT_TRUE(pane->isVisible());
    EXPECT_EQ(pane->windowTitle(), "Print Column");
    const auto labels = pane->widget()->findChildren<QLabel*>();
    EXPECT_TRUE(std::any_of(labels.begin(), labels.end(),
                            [](const QLabel* label) { return label->text() == "PRINT COLUMNS"; }));
}

// Watches a bar at every moment in which the window is let go on.
class ProgressSeen {
  public:
    explicit ProgressSeen(const QProgressBar& bar) : bar_(bar) {
        timer_.callOnTimeout([this] {
            if (bar_.isVisible()) values_.insert(bar_.value());
        });
        timer_.start(0);
    }
    [[nodiscard]] const std::set<int>& values() const { return values_; }

  private:
    const QProgressBar& bar_;
    QTimer timer_;
    std::set<int> values_;
};

TEST_F(Host, ProgressIsSeenWhileAListFills) {
    window->ap()->dbe->BeginTrans();
    auto items = window->ap()->abcdb->OpenRecordset("SELECT * FROM AP_transaction_table WHERE 1 = 2",
                                                    store::RecordsetKind::dynaset);
    for (int i = 0; i < 3'000; ++i) {
        items.AddNew();
        items.set("vendor_no", "V1001");
        items.set("docno", std::to_string(i));
        items.Update();
    }
    window->ap()->dbe->CommitTrans();
    ASSERT_TRUE(window->show_form("APreport_aging"));
    auto& list = *window->desk().windows().back();
    auto& form = *window->ap()->frm_aging;
    const auto& bar = dynamic_cast<QProgressBar&>(*list.widget(form.Progress1));
    EXPECT_FALSE(bar.isVisible());
    const ProgressSeen seen(bar);
    list.press(104);
    list.settle();
    EXPECT_EQ(form.dbgrid1.array.used_rows(), 3'001);
    EXPECT_GE(seen.values().size(), 4U);
    EXPECT_FALSE(bar.isVisible());
}

}  // namespace brimley::testing
