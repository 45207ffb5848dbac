// The assistant that makes a new company, and the first day in it: nobody needs a terminal.
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QTest>
#include <QTimer>
#include <QWizard>

#include "company/check.h"
#include "desktop/host_window.h"
#include "desktop/new_company.h"
#include "desktop/paper_windows.h"
#include "inquiries/apreport_aging.h"
#include "invoices/apform_invoice.h"
#include "payments/invoice_payment/apform_payment.h"

namespace brimley::testing {

class NewCompany : public Host {
  protected:
    NewCompany() : assistant(window.get(), "anna") {
        QObject::connect(&person_, &QTimer::timeout, [this] {
            QWidget* const dialog = QApplication::activeModalWidget();
            if (auto* const box = qobject_cast<QMessageBox*>(dialog)) {
                told.append(box->text());
                box->button(QMessageBox::Ok)->click();
            } else if (qobject_cast<QFileDialog*>(dialog) != nullptr) {
                dialog->findChild<QLineEdit*>("fileNameEdit")->setText(QString::fromStdString(backup));
                QMetaObject::invokeMethod(dialog, "accept");
            }
        });
        person_.start(10);
        assistant.show();
        type("place", QString::fromStdString(place));
    }
    void type(const char* field, const QString& text) {
        assistant.findChild<QLineEdit*>(field)->setText(text);
    }
    void next() { assistant.button(QWizard::NextButton)->click(); }
    [[nodiscard]] QString page() const { return assistant.currentPage()->title(); }

    void choose(const QString& caption) {
        for (QAction* const action : window->findChildren<QAction*>())
            if (action->text().remove('&') == caption) return action->trigger();
        ADD_FAILURE() << "no entry " << caption.toStdString();
    }

    std::string place = folder.file("new.brimley");
    std::string backup = folder.file("backup.brimley");
    desktop::NewCompanyAssistant assistant;
    QStringList told;

  private:
    QTimer person_;
};

// From nothing to an invoice, its payment, the aging on paper and a backup.
TEST_F(NewCompany, FirstDayNeedsNoTerminal) {
    next();
    auto* const country = assistant.findChild<QComboBox*>("country");
    country->setCurrentText("Germany");
    EXPECT_EQ(assistant.findChild<QLineEdit*>("currency")->text(), "EUR");
    assistant.findChild<QSpinBox*>("year")->setValue(2026);
    next();
    type("bank_code", "MAIN");
    type("bank_name", "Hanse Kontor Bank");
    next();
    type("vendor_no", "V1");
    type("vendor_name", "Baywater Coffee Traders");
    assistant.findChild<QPlainTextEdit*>("vendor_address")->setPlainText("14 Quay Road");
    assistant.button(QWizard::FinishButton)->click();
    EXPECT_EQ(told, QStringList());
    EXPECT_EQ(assistant.result(), QDialog::Accepted);
    EXPECT_EQ(assistant.place().toStdString(), place);

    window->open_company(assistant.place());
    window->desk().clock = [] { return *store::DateTime::from_ymd(2026, 3, 16); };
    window->ap()->showform_APform_invoice();
    auto& form = *window->ap()->frm_invoice;
    using controls::Refusal;
    ASSERT_EQ(form.press(105), Refusal::none);
    EXPECT_EQ(form.cmbdoctype.type("Invoice"), Refusal::none);
    EXPECT_EQ(form.cmbvendor.type("V1"), Refusal::none);
    EXPECT_EQ(form.dbgrid1.edit_cell(0, form.dbgrid1.get_column("purchase account"), "6100"), Refusal::none);
    EXPECT_EQ(form.dbgrid1.edit_cell(0, form.dbgrid1.get_column("gross amount"), "119"), Refusal::none);
    EXPECT_EQ(form.press(101), Refusal::none);
    const auto tax = window->ap()->abcdb->OpenRecordset(
        "SELECT base_amount FROM GL_transaction_table WHERE accno = '1300'", store::RecordsetKind::snapshot);
    ASSERT_FALSE(tax.at_eof());
    EXPECT_EQ(tax.number("base_amount"), 19);

    // It is paid, in part.
    window->ap()->showform_APform_payment();
    auto& payment = *window->ap()->frm_payment;
    ASSERT_EQ(payment.press(105), Refusal::none);
    EXPECT_EQ(payment.cmbvendor.type("V1"), Refusal::none);
    EXPECT_EQ(payment.cmbpayby.type("Check"), Refusal::none);
    EXPECT_EQ(payment.cmbbank.type("MAIN"), Refusal::none);
    EXPECT_EQ(payment.txtcheck.type("1"), Refusal::none);
    EXPECT_EQ(payment.txtcheckdate.type("16/03/2026"), Refusal::none);
    EXPECT_EQ(payment.dbgrid1.edit_cell(0, payment.dbgrid1.get_column("pay amount"), "100"), Refusal::none);
    EXPECT_EQ(payment.txtpayment.type("100"), Refusal::none);
    EXPECT_EQ(payment.press(101), Refusal::none);
    EXPECT_EQ(boxes.back(), "Add new Payment PY-26-00001 complete");

    // What is left is on the aging, also on paper.
    window->ap()->showform_APform_aging();
    auto& aging = *window->ap()->frm_aging;
    EXPECT_EQ(aging.press(frame::command::kFind), Refusal::none);
    EXPECT_EQ(aging.dbgrid1.cell(0, "open amount"), "19.00");
    EXPECT_EQ(aging.press(frame::command::kPageSetup), Refusal::none);
    ASSERT_NE(aging.child(), nullptr);
    for (const auto& [field, text] : {std::pair("cmbpaper", "A4 (210x297 mm)"),
                                      {"cmborient", "Landscape"},
                                      {"cmbfont_size_print", "8"},
                                      {"cmbrow_hi", "12"}})
        EXPECT_EQ(dynamic_cast<controls::ComboBox&>(*aging.child()->controls().find(field)).type(text),
                  Refusal::none);
    EXPECT_EQ(dynamic_cast<controls::PushButton&>(*aging.child()->controls().find("cmdsave")).click(),
              Refusal::none);
    EXPECT_EQ(aging.press(frame::command::kPreview), Refusal::none);
    auto* const paper = newest<desktop::PdfWindow>();
    ASSERT_NE(paper, nullptr);
    EXPECT_EQ(paper->pages(), 1);

    choose("Check the books");
    choose("Back up...");
    EXPECT_EQ(told, QStringList({"The company was checked. The books agree.",
                                 QString::fromStdString(backup) + " is made. The books agree."}));
    const auto copied = store::open_company(backup, kernel::company_tables());
    EXPECT_EQ(
        copied.database->OpenRecordset("SELECT * FROM Payment_header_table", store::RecordsetKind::snapshot)
            .RecordCount(),
        1);
}

TEST_F(NewCompany, BackupNeverComesOverAFileThatIsThere) {
    assistant.reject();
    backup = path;
    choose("Back up...");
    EXPECT_EQ(told, QStringList(QString::fromStdString(path) + " already exists"));
}

TEST_F(NewCompany, CheckTellsWhatItFinds) {
    assistant.reject();
    window->ap()->abcdb->Execute("UPDATE Balance_table SET amount = 1 WHERE accno = '2000'");
    choose("Check the books");
    ASSERT_EQ(told.size(), 1);
    EXPECT_TRUE(told[0].startsWith("The company was checked. In its books the check found: "))
        << told[0].toStdString();
}

TEST_F(NewCompany, SaysWhatIsMissingAndStaysAsItWasFilledIn) {
    next();
    type("currency", "E1");
    next();
    EXPECT_EQ(page(), "Chart of accounts and taxes");
    type("currency", "eur");
    next();
    type("bank_code", "MAIN");
    next();
    EXPECT_EQ(page(), "First bank");
    type("bank_name", "Hanse Kontor Bank");
    next();
    type("vendor_name", "Baywater Coffee Traders");
    assistant.button(QWizard::FinishButton)->click();
    EXPECT_EQ(page(), "First vendor");
    // Somebody else was faster.
    type("vendor_no", "V1");
    QFile taken(assistant.place());
    ASSERT_TRUE(taken.open(QIODevice::WriteOnly));
    taken.write("something else");
    taken.close();
    assistant.button(QWizard::FinishButton)->click();
    EXPECT_EQ(told, QStringList({"The base currency is a code of three letters, such as EUR.",
                                 "A bank has a short name and a name.", "A vendor has a number and a name.",
                                 QString::fromStdString(place) + " already exists"}));
    EXPECT_TRUE(assistant.isVisible());
    EXPECT_EQ(assistant.findChild<QLineEdit*>("bank_name")->text(), "Hanse Kontor Bank");
    ASSERT_TRUE(taken.open(QIODevice::ReadOnly));
    EXPECT_EQ(taken.readAll(), "something else");
}

TEST_F(NewCompany, OfTheSampleNeedsItsPlaceOnly) {
    assistant.findChild<QCheckBox*>("sample")->setChecked(true);
    EXPECT_EQ(assistant.nextId(), -1);
    EXPECT_TRUE(assistant.button(QWizard::FinishButton)->isEnabled());
    assistant.button(QWizard::FinishButton)->click();
    EXPECT_EQ(told.join(" ").toStdString(), "");
    EXPECT_EQ(assistant.result(), QDialog::Accepted);
    window->open_company(assistant.place());
    EXPECT_EQ(window->ap()->BASE_CURRENCY, "USD");
}

TEST_F(NewCompany, IsKeptUnderItsNameUntilAPlaceIsChosen) {
    desktop::NewCompanyAssistant other(window.get(), "anna");
    other.findChild<QLineEdit*>("name")->setText("Harbour: Coffee");
    EXPECT_EQ(other.place(), QDir::home().filePath("Harbour- Coffee.brimley"));
    QTest::keyClicks(other.findChild<QLineEdit*>("place"), "x");
    other.findChild<QLineEdit*>("name")->setText("Tea");
    EXPECT_EQ(other.place(), QDir::home().filePath("Harbour- Coffee.brimleyx"));
}

}  // namespace brimley::testing
