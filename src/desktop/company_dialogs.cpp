#include "desktop/company_dialogs.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QStandardPaths>

#include "company/create.h"
#include "desktop/model_view.h"
#include "desktop/new_company.h"

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

QString sample_company(const std::string& user) {
    const QDir folder(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));
    folder.mkpath(".");
    const QString path = folder.filePath("sample.brimley");
    if (!QFileInfo::exists(path)) company::create_company_file(typed(path), company::HalfYearCompany{user});
    return path;
}

}  // namespace brimley::desktop
