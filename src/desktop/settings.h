// What the desktop remembers from one time to the next: companies opened recently, light or dark, its place
// on the screen. The forms' own settings are in the company.
#pragma once

#include <QByteArray>
#include <QSettings>
#include <QStringList>

#include "desktop/theme.h"

namespace brimley::desktop {

// A company as it is remembered and shown: a file by its whole path, a server without the password.
[[nodiscard]] QString company_shown(const QString& company);

class Settings {
  public:
    // Newest first, at most kRecentMax.
    [[nodiscard]] QStringList recent_companies() const;
    void company_opened(const QString& company);
    void company_gone(const QString& company);

    [[nodiscard]] Theme theme() const;
    void set_theme(Theme theme);
    [[nodiscard]] QByteArray geometry() const;
    void set_geometry(const QByteArray& geometry);

    // Of a list, in pixels; empty when nothing is remembered.
    [[nodiscard]] QList<int> column_widths(const QString& list) const;
    void set_column_widths(const QString& list, const QList<int>& widths);

    // The folder of what was entered and not saved (entries/), beside the settings.
    [[nodiscard]] QString entries_folder() const;

    static constexpr int kRecentMax = 8;

  private:
    QSettings store_{"Brimley", "Brimley AP"};
};

}  // namespace brimley::desktop
