// The lists of accounts and vendors that answer a form's requests. They read once when they open, and change
// nothing; the chosen row is opened in its master.
#pragma once

#include <QWidget>
#include <functional>
#include <string>
#include <vector>

#include "desktop/records_model.h"

class QAbstractItemModel;
class QLineEdit;
class QPushButton;
class QSortFilterProxyModel;
class QTableView;

namespace brimley::desktop {

// A table to look at, with lines to choose, that is sorted by a click on a heading; until then the rows stand
// as they were read. The model is the caller's.
[[nodiscard]] QTableView* read_only_table(QSortFilterProxyModel& model);

// A list with a search line: rows that hold the words typed, in any column.
class ListWindow : public QWidget {
  public:
    // Throws store::Error when the table cannot be read. The row whose first column is `key` is chosen, if
    // there is one.
    ListWindow(const QString& title, store::Database& database, const std::string& query,
               const std::vector<RecordColumn>& columns, const std::string& date_format, const QString& key);
    // Remembers the widths of its columns for the next time.
    ~ListWindow() override;

    [[nodiscard]] QTableView& table() { return *table_; }
    [[nodiscard]] QLineEdit& search() { return *search_; }
    [[nodiscard]] QString chosen_key() const;
    // By a double click, Return, or the button beside the search line. The key may be empty.
    std::function<void(const QString& key)> on_open;
    [[nodiscard]] QPushButton& opener() { return *opener_; }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void choose(const QString& key);
    void open();

    QLineEdit* search_;
    QPushButton* opener_;
    QSortFilterProxyModel* filter_;
    QTableView* table_;
};

[[nodiscard]] ListWindow* account_master(store::Database& database, const std::string& date_format,
                                         const QString& accno);
[[nodiscard]] ListWindow* vendor_master(store::Database& database, const std::string& date_format,
                                        const QString& vendor_no);

}  // namespace brimley::desktop
