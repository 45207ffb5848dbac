#include "desktop/company_dialogs.h"

#include <QDate>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QRadioButton>
#include <QSpinBox>
#include <QStandardPaths>

#include "company/create.h"
#include "desktop/model_view.h"

namespace brimley::desktop {

namespace {

constexpr const char* kFileKinds = "Brimley companies (*.brimley);;All files (*)";
constexpr int kYearMin = 1990;
constexpr int kYearMax = 2099;

// What a new company is to hold.
class ContentDialog : public QDialog {
  public:
    explicit ContentDialog(QWidget* parent) : QDialog(parent) {
        setWindowTitle("New company");
        starter_.setChecked(true);
        currency_.setMaxLength(3);
        currency_.setText("EUR");
        year_.setRange(kYearMin, kYearMax);
        year_.setValue(QDate::currentDate().year());
        buttons_.setStandardButtons(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
        auto* const layout = new QFormLayout(this);
        layout->addRow(&starter_);
        layout->addRow("Base currency", &currency_);
        layout->addRow("First fiscal year", &year_);
        layout->addRow(&sample_);
        layout->addRow(&buttons_);
        connect(&buttons_, &QDialogButtonBox::accepted, this, &QDialog::accept);
        connect(&buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
    }

    [[nodiscard]] company::CompanyContent content(const std::string& user) const {
        if (sample_.isChecked()) return company::SampleCompany{user};
        return company::StarterCompany{typed(currency_.text().toUpper()),
                                       typed(QString::number(year_.value())), user};
    }

  private:
    QRadioButton starter_{"A company of your own, with a small chart of accounts"};
    QLineEdit currency_;
    QSpinBox year_;
    QRadioButton sample_{"The sample company"};
    QDialogButtonBox buttons_;
};

}  // namespace

std::optional<QString> ask_for_company_file(QWidget* parent) {
    const QString path = QFileDialog::getOpenFileName(parent, "Open company", {}, kFileKinds);
    return path.isEmpty() ? std::nullopt : std::optional(path);
}

std::optional<QString> ask_for_server(QWidget* parent) {
    bool good = false;
    const QString uri = QInputDialog::getText(parent, "Open company on a server", "Address",
                                              QLineEdit::Normal, "postgresql://", &good);
    return good && !uri.isEmpty() ? std::optional(uri) : std::nullopt;
}

std::optional<QString> make_new_company(QWidget* parent, const std::string& user) {
    ContentDialog dialog(parent);
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    QString path = QFileDialog::getSaveFileName(parent, "New company", "company.brimley", kFileKinds);
    if (path.isEmpty()) return std::nullopt;
    if (QFileInfo(path).suffix().isEmpty()) path += ".brimley";
    try {
        company::create_company_file(typed(path), dialog.content(user));
    } catch (const std::exception& failure) {
        QMessageBox::warning(parent, "New company", shown(std::string(failure.what())));
        return std::nullopt;
    }
    return path;
}

QString sample_company(const std::string& user) {
    const QDir folder(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));
    folder.mkpath(".");
    const QString path = folder.filePath("sample.brimley");
    if (!QFileInfo::exists(path)) company::create_company_file(typed(path), company::SampleCompany{user});
    return path;
}

}  // namespace brimley::desktop
