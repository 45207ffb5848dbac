#include "desktop/company_dialogs.h"

#include <QApplication>
#include <QDate>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMessageBox>
#include <QStandardPaths>

#include "company/backup.h"
#include "company/check.h"
#include "company/create.h"
#include "company/transaction.h"
#include "desktop/model_view.h"
#include "desktop/new_company.h"
#include "kernel/visible_text.h"

namespace brimley::desktop {

namespace {

constexpr int kWide = 560;  // room for a path or an address

}  // namespace

std::optional<QString> ask_for_company_file(QWidget* parent) {
    const QString path = QFileDialog::getOpenFileName(parent, "Open company", {}, kCompanyFileKinds);
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

std::optional<QString> make_new_company(QWidget* parent, const std::string& user) {
    NewCompanyAssistant assistant(parent, user);
    return assistant.exec() == QDialog::Accepted ? std::optional(assistant.place()) : std::nullopt;
}

namespace {

// While it lives, the pointer says that the program is at work.
class BusyPointer {
  public:
    BusyPointer() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~BusyPointer() { QApplication::restoreOverrideCursor(); }
    BusyPointer(const BusyPointer&) = delete;
    BusyPointer& operator=(const BusyPointer&) = delete;
};

QString all_of(const company::Findings& findings) {
    QStringList lines;
    for (const std::string& finding : findings)
        lines.append(shown(kernel::visible_text(finding)));
    return lines.join('\n');
}

void tell_findings(QWidget* parent, const QString& title, const QString& done,
                   const company::Findings& findings) {
    QMessageBox box(QMessageBox::Information, title, done + " The books agree.", QMessageBox::Ok, parent);
    if (!findings.empty()) {
        box.setIcon(QMessageBox::Warning);
        box.setText(QString("%1 In its books the check found: %2").arg(done).arg(findings.size()));
        box.setDetailedText(all_of(findings));
    }
    box.exec();
}

void tell_failure(QWidget* parent, const QString& title, const std::exception& failure) {
    QMessageBox::warning(parent, title, shown(kernel::visible_text(failure.what())));
}

}  // namespace

void back_up_company(QWidget* parent, const std::string& company) {
    const QString title = "Back up the company";
    const QString name =
        store::is_on_server(company) ? "company" : QFileInfo(shown(company)).completeBaseName();
    const QString today = QDate::currentDate().toString(Qt::ISODate);
    QFileDialog choice(parent, title, QDir::homePath(), kCompanyFileKinds);
    choice.setAcceptMode(QFileDialog::AcceptSave);
    choice.setDefaultSuffix("brimley");
    choice.setOption(QFileDialog::DontConfirmOverwrite);  // no file is ever overwritten
    choice.selectFile(QString("%1-%2.brimley").arg(name, today));
    if (choice.exec() != QDialog::Accepted) return;
    const QString to = choice.selectedFiles().value(0);
    try {
        company::Findings findings;
        {
            const BusyPointer busy;
            findings = company::back_up(company, typed(to));
        }
        tell_findings(parent, title, to + " is made.", findings);
    } catch (const std::exception& failure) {
        tell_failure(parent, title, failure);
    }
}

void check_company(QWidget* parent, const store::OpenCompany& company) {
    const QString title = "Check the books";
    try {
        company::Findings findings;
        {
            const BusyPointer busy;
            const company::ReadingMoment moment(company);
            findings = company::check_company(*company.database);
        }
        tell_findings(parent, title, "The company was checked.", findings);
    } catch (const std::exception& failure) {
        tell_failure(parent, title, failure);
    }
}

QString sample_company(const std::string& user) {
    const QDir folder(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));
    folder.mkpath(".");
    const QString path = folder.filePath("sample.brimley");
    if (!QFileInfo::exists(path)) company::create_company_file(typed(path), company::HalfYearCompany{user});
    return path;
}

}  // namespace brimley::desktop
