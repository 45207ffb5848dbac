#include "desktop/company_dialogs.h"

#include <QApplication>
#include <QDate>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QStandardPaths>

#include "company/create.h"
#include "desktop/model_view.h"

namespace brimley::desktop {

namespace {

constexpr const char* kFileKinds = "Brimley companies (*.brimley);;All files (*)";
constexpr int kWide = 560;  // room for a path or an address
constexpr int kYearMin = 1990;
constexpr int kYearMax = 2099;

// Where a new company is to be kept, and what it is to hold.
class NewCompanyDialog : public QDialog {
  public:
    explicit NewCompanyDialog(QWidget* parent) : QDialog(parent) {
        setWindowTitle("New company");
        add_place();
        add_content();
        auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
        layout_.addRow(buttons);
        connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
        connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
        setMinimumWidth(kWide);
    }

    [[nodiscard]] QString place() const { return place_.text().trimmed(); }
    [[nodiscard]] company::CompanyContent content(const std::string& user) const {
        if (sample_.isChecked()) return company::HalfYearCompany{user};
        return company::StarterCompany{typed(currency_.text().toUpper()),
                                       typed(QString::number(year_.value())), user};
    }

  private:
    void add_place() {
        place_.setText(QDir::home().filePath("company.brimley"));
        place_.setObjectName("place");
        auto* const browse = new QPushButton("&Browse...");
        auto* const line = new QHBoxLayout;
        line->addWidget(&place_, 1);
        line->addWidget(browse);
        layout_.addRow("File, or postgresql:// address", line);
        connect(browse, &QPushButton::clicked, this, [this] {
            QFileDialog choice(this, "New company", QFileInfo(place()).path(), kFileKinds);
            choice.setAcceptMode(QFileDialog::AcceptSave);
            choice.setDefaultSuffix("brimley");
            choice.setOption(QFileDialog::DontConfirmOverwrite);  // no file is ever overwritten
            if (choice.exec() == QDialog::Accepted) place_.setText(choice.selectedFiles().value(0));
        });
    }
    void add_content() {
        starter_.setChecked(true);
        currency_.setMaxLength(3);
        currency_.setText("EUR");
        year_.setRange(kYearMin, kYearMax);
        year_.setValue(QDate::currentDate().year());
        layout_.addRow(&starter_);
        layout_.addRow("Base currency", &currency_);
        layout_.addRow("First fiscal year", &year_);
        layout_.addRow(&sample_);
        connect(&sample_, &QRadioButton::toggled, this, [this](bool sample) {
            currency_.setEnabled(!sample);
            year_.setEnabled(!sample);
        });
    }

    QFormLayout layout_{this};
    QLineEdit place_;
    QRadioButton starter_{"A company of your &own, with a small chart of accounts"};
    QLineEdit currency_;
    QSpinBox year_;
    QRadioButton sample_{"The &sample company"};
};

}  // namespace

std::optional<QString> ask_for_company_file(QWidget* parent) {
    const QString path = QFileDialog::getOpenFileName(parent, "Open company", {}, kFileKinds);
    return path.isEmpty() ? std::nullopt : std::optional(path);
}

std::optional<QString> ask_for_server(QWidget* parent) {
    QInputDialog dialog(parent);
    dialog.setWindowTitle("Open company on a server");
    dialog.setLabelText("Address, such as postgresql://anna@server/books");
    dialog.setTextValue("postgresql://");
    dialog.resize(kWide, dialog.sizeHint().height());
    const bool good = dialog.exec() == QDialog::Accepted && !dialog.textValue().trimmed().isEmpty();
    return good ? std::optional(dialog.textValue().trimmed()) : std::nullopt;
}

std::optional<company::Secret> ask_for_password(const std::string& user) {
    QInputDialog dialog(QApplication::activeWindow());
    dialog.setWindowTitle("Open company");
    dialog.setLabelText("Password of " + shown(user));
    dialog.setTextEchoMode(QLineEdit::Password);
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    return company::Secret(typed(dialog.textValue()));
}

// What is wrong is shown over the dialog, which then appears again as it was filled in.
std::optional<QString> make_new_company(QWidget* parent, const std::string& user) {
    NewCompanyDialog dialog(parent);
    while (dialog.exec() == QDialog::Accepted) {
        try {
            company::create_company_file(typed(dialog.place()), dialog.content(user));
            return dialog.place();
        } catch (const std::exception& failure) {
            QMessageBox::warning(parent, "New company", shown(std::string(failure.what())));
        }
    }
    return std::nullopt;
}

QString sample_company(const std::string& user) {
    const QDir folder(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));
    folder.mkpath(".");
    const QString path = folder.filePath("sample.brimley");
    if (!QFileInfo::exists(path)) company::create_company_file(typed(path), company::HalfYearCompany{user});
    return path;
}

}  // namespace brimley::desktop
