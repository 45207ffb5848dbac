#include "desktop/new_company.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDate>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QSpinBox>
#include <algorithm>
#include <functional>

#include "desktop/model_view.h"

namespace brimley::desktop {

namespace {

constexpr int kWide = 620;
constexpr int kYearMin = 1990;
constexpr int kYearMax = 2030;
constexpr int kAddressLines = 4;

// A page whose fields stand below each other, each with its caption.
class FieldsPage : public QWizardPage {
  public:
    FieldsPage(const QString& title, const QString& what) {
        setTitle(title);
        setSubTitle(what);
    }
    template <class Field>
    Field* add(const QString& caption, const char* name) {
        auto* const field = new Field;
        field->setObjectName(name);
        fields_.addRow(caption, field);
        return field;
    }
    QFormLayout& fields() { return fields_; }
    // Why the page cannot be left; empty: it can.
    std::function<QString()> fault;
    std::function<bool()> is_last;

    bool validatePage() override {
        const QString why = fault ? fault() : QString();
        if (!why.isEmpty()) QMessageBox::warning(this, "New company", why);
        return why.isEmpty();
    }
    [[nodiscard]] int nextId() const override { return is_last && is_last() ? -1 : QWizardPage::nextId(); }

  private:
    QFormLayout fields_{this};
};

bool is_key(const QString& text) { return !text.contains('\''); }

}  // namespace

NewCompanyAssistant::NewCompanyAssistant(QWidget* parent, std::string user)
    : QWizard(parent), user_(std::move(user)) {
    setWindowTitle("New company");
    setWizardStyle(QWizard::ModernStyle);
    setOption(QWizard::NoBackButtonOnStartPage);
    setButtonText(QWizard::FinishButton, "&Make the company");
    setMinimumWidth(kWide);
    try {
        countries_ = company::countries();
    } catch (const std::exception& failure) {
        QMessageBox::warning(this, "New company", shown(std::string(failure.what())));
    }
    addPage(place_page());
    addPage(country_page());
    addPage(bank_page());
    addPage(vendor_page());
    suggest_place();
}

QString NewCompanyAssistant::place() const { return place_->text().trimmed(); }

// --- pages ---

QWizardPage* NewCompanyAssistant::place_page() {
    auto* const page =
        new FieldsPage("The company",
                       "What it is called, and where it is kept: in a file of this computer, or "
                       "on a PostgreSQL server.");
    name_ = page->add<QLineEdit>("N&ame", "name");
    name_->setPlaceholderText("Harbour Coffee");
    place_ = new QLineEdit;
    place_->setObjectName("place");
    auto* const choose = new QPushButton("&Browse...");
    auto* const line = new QHBoxLayout;
    line->addWidget(place_, 1);
    line->addWidget(choose);
    page->fields().addRow("File, or postgresql:// address", line);
    sample_ = new QCheckBox("With the documents of the &sample company, to try things out");
    sample_->setObjectName("sample");
    page->fields().addRow(sample_);
    connect(name_, &QLineEdit::textChanged, this, [this] { suggest_place(); });
    connect(place_, &QLineEdit::textEdited, this, [this] { place_is_own_ = true; });
    connect(choose, &QPushButton::clicked, this, [this] { browse(); });
    connect(sample_, &QCheckBox::toggled, page, [page] {
        page->setFinalPage(page->is_last());
        page->completeChanged();
    });
    page->is_last = [this] { return sample_->isChecked(); };
    page->fault = [this] {
        if (place().isEmpty()) return QString("Say where the company is to be kept.");
        const bool is_file = !place().startsWith("postgres");
        return is_file && !is_made_ && QFileInfo::exists(place()) ? place() + " already exists" : QString();
    };
    return page;
}

// Beside the other files of the user, until another place is chosen.
void NewCompanyAssistant::suggest_place() {
    if (place_is_own_) return;
    QString name = name_->text().trimmed();
    name.replace(QRegularExpression("[\\\\/:*?\"<>|]"), "-");
    place_->setText(QDir::home().filePath((name.isEmpty() ? "company" : name) + ".brimley"));
}

void NewCompanyAssistant::browse() {
    QFileDialog choice(this, "New company", QFileInfo(place()).path(), kCompanyFileKinds);
    choice.setAcceptMode(QFileDialog::AcceptSave);
    choice.setDefaultSuffix("brimley");
    choice.setOption(QFileDialog::DontConfirmOverwrite);
    if (choice.exec() != QDialog::Accepted) return;
    place_is_own_ = true;
    place_->setText(choice.selectedFiles().value(0));
}

QWizardPage* NewCompanyAssistant::country_page() {
    auto* const page = new FieldsPage(
        "Chart of accounts and taxes",
        "The taxes are those on purchases. All of this can be changed and added to later, except "
        "the base currency.");
    country_ = page->add<QComboBox>("&Country", "country");
    country_->addItem("Another country: the smallest chart, without taxes", QString());
    for (const company::Country& country : countries_)
        country_->addItem(shown(country.name), shown(country.folder));
    currency_ = page->add<QLineEdit>("Base curr&ency", "currency");
    currency_->setMaxLength(3);
    currency_->setText("EUR");
    year_ = page->add<QSpinBox>("First &fiscal year, by the year in which it begins", "year");
    year_->setRange(kYearMin, kYearMax);
    year_->setValue(QDate::currentDate().year());
    month_ = page->add<QComboBox>("It begins on the first day of", "month");
    for (int month = 1; month <= 12; ++month)
        month_->addItem(QLocale::c().monthName(month));
    connect(country_, &QComboBox::currentIndexChanged, this, [this](int index) {
        if (index > 0) currency_->setText(shown(countries_[static_cast<std::size_t>(index - 1)].currency));
    });
    // The one that this computer is set to.
    const QString here = QLocale::territoryToCode(QLocale::system().territory()).toLower();
    country_->setCurrentIndex(std::max(0, country_->findData(here)));
    page->fault = [this] {
        static const QRegularExpression kCode("^[A-Za-z]{3}$");
        return kCode.match(currency_->text()).hasMatch()
                   ? QString()
                   : QString("The base currency is a code of three letters, such as EUR.");
    };
    return page;
}

QWizardPage* NewCompanyAssistant::bank_page() {
    auto* const page = new FieldsPage(
        "First bank", "The bank that checks are drawn on. It can be left empty and entered later.");
    bank_code_ = page->add<QLineEdit>("&Short name", "bank_code");
    bank_code_->setPlaceholderText("MAIN");
    bank_name_ = page->add<QLineEdit>("N&ame", "bank_name");
    bank_branch_ = page->add<QLineEdit>("B&ranch", "bank_branch");
    page->fault = [this] {
        if (bank_code_->text().isEmpty() != bank_name_->text().isEmpty())
            return QString("A bank has a short name and a name.");
        return is_key(bank_code_->text()) ? QString() : QString("The short name must not hold a quote.");
    };
    return page;
}

QWizardPage* NewCompanyAssistant::vendor_page() {
    auto* const page =
        new FieldsPage("First vendor", "Whom an invoice came from. It can be left empty and entered later.");
    vendor_no_ = page->add<QLineEdit>("N&umber", "vendor_no");
    vendor_no_->setPlaceholderText("V1001");
    vendor_name_ = page->add<QLineEdit>("N&ame", "vendor_name");
    vendor_address_ = page->add<QPlainTextEdit>("A&ddress", "vendor_address");
    vendor_address_->setTabChangesFocus(true);
    vendor_address_->setMaximumHeight(fontMetrics().lineSpacing() * (kAddressLines + 1));
    page->fault = [this] {
        if (vendor_no_->text().isEmpty() != vendor_name_->text().isEmpty())
            return QString("A vendor has a number and a name.");
        return is_key(vendor_no_->text()) ? QString() : QString("The number must not hold a quote.");
    };
    return page;
}

// --- the company ---

company::CompanyContent NewCompanyAssistant::content() const {
    if (sample_->isChecked()) return company::HalfYearCompany{user_};
    company::StarterCompany starter{typed(currency_->text().toUpper()), std::to_string(year_->value()),
                                    user_};
    starter.first_month = month_->currentIndex() + 1;
    starter.country = typed(country_->currentData().toString());
    if (!bank_code_->text().isEmpty())
        starter.bank = {typed(bank_code_->text()), typed(bank_name_->text()), typed(bank_branch_->text())};
    if (!vendor_no_->text().isEmpty())
        starter.vendor = {typed(vendor_no_->text()), typed(vendor_name_->text()),
                          typed(vendor_address_->toPlainText())};
    return starter;
}

void NewCompanyAssistant::accept() {
    if (!validateCurrentPage()) return;
    try {
        company::create_company_file(typed(place()), content());
    } catch (const std::exception& failure) {
        QMessageBox::warning(this, "New company", shown(std::string(failure.what())));
        return;
    }
    is_made_ = true;
    QWizard::accept();
}

}  // namespace brimley::desktop
