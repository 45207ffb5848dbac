#include "desktop/settings.h"

#include <QFileInfo>

#include "kernel/store/database.h"

namespace brimley::desktop {

namespace {

constexpr const char* kRecent = "recent_companies";
constexpr const char* kTheme = "theme";
constexpr const char* kGeometry = "geometry";
const QString kColumnWidths = "column_widths/";

}  // namespace

QString company_shown(const QString& company) {
    const std::string named = company.toStdString();
    if (!store::is_on_server(named)) return QFileInfo(company).absoluteFilePath();
    return QString::fromStdString(store::without_password(named));
}

QStringList Settings::recent_companies() const { return store_.value(kRecent).toStringList(); }

void Settings::company_opened(const QString& company) {
    QStringList companies = recent_companies();
    companies.removeAll(company);
    companies.prepend(company);
    store_.setValue(kRecent, companies.mid(0, kRecentMax));
}

void Settings::company_gone(const QString& company) {
    QStringList companies = recent_companies();
    companies.removeAll(company);
    store_.setValue(kRecent, companies);
}

Theme Settings::theme() const {
    const QString name = store_.value(kTheme).toString();
    if (name == "dark") return Theme::dark;
    return name == "system" ? Theme::as_system : Theme::light;
}

void Settings::set_theme(Theme theme) {
    store_.setValue(kTheme, theme == Theme::dark ? "dark" : theme == Theme::light ? "light" : "system");
}

QList<int> Settings::column_widths(const QString& list) const {
    QList<int> widths;
    for (const QVariant& width : store_.value(kColumnWidths + list).toList())
        widths << width.toInt();
    return widths;
}

void Settings::set_column_widths(const QString& list, const QList<int>& widths) {
    store_.setValue(kColumnWidths + list, QVariantList(widths.begin(), widths.end()));
}

QString Settings::entries_folder() const { return QFileInfo(store_.fileName()).absolutePath() + "/entries"; }

QByteArray Settings::geometry() const { return store_.value(kGeometry).toByteArray(); }

void Settings::set_geometry(const QByteArray& geometry) { store_.setValue(kGeometry, geometry); }

}  // namespace brimley::desktop
