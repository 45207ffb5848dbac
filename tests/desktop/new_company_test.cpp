// The assistant that makes a new company, and the first day in it: nobody needs a terminal.
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
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
#include "invoices/apform_invoice.h"

namespace brimley::testing {

class NewCompany : public Host {
  protected:
    NewCompany() : assistant(window.get(), "anna") {
        QObject::connect(&person_, &QTimer::timeout, [this] {
            if (auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                told.append(box->text());
                box->button(QMessageBox::Ok)->click();
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

    std::string place = folder.file("new.brimley");
    desktop::NewCompanyAssistant assistant;
    QStringList told;

  private:
    QTimer person_;
};

TEST_F(NewCompany, OfACountryIsReadyForItsFirstInvoice) {
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
    EXPECT_EQ(company::check_books(*window->ap()->abcdb), company::Findings{});
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
