// The windows that answer a form's requests for something to look at: a GL document, and the lists of
// accounts and vendors. They read once when they open, and change nothing.
#pragma once

#include <QWidget>
#include <string>
#include <vector>

#include "desktop/records_model.h"

class QLineEdit;
class QSortFilterProxyModel;
class QTableView;

namespace brimley::desktop {

// A list with a search line: rows that hold the words typed, in any column.
class ListWindow : public QWidget {
  public:
    // Throws store::Error when the table cannot be read. The row whose first column is `key` is chosen, if
    // there is one.
    ListWindow(const QString& title, store::Database& database, const std::string& query,
               const std::vector<RecordColumn>& columns, const std::string& date_format, const QString& key);

    [[nodiscard]] QTableView& table() { return *table_; }
    [[nodiscard]] QLineEdit& search() { return *search_; }
    [[nodiscard]] QString chosen_key() const;

  private:
    void choose(const QString& key);

    QLineEdit* search_;
    QSortFilterProxyModel* filter_;
    QTableView* table_;
};

[[nodiscard]] ListWindow* account_master(store::Database& database, const std::string& date_format,
                                         const QString& accno);
[[nodiscard]] ListWindow* vendor_master(store::Database& database, const std::string& date_format,
                                        const QString& vendor_no);

// A GL document: its header, its lines, and whether it balances.
class LedgerWindow : public QWidget {
  public:
    // Throws store::Error when the ledger cannot be read. A key that names no document shows none.
    LedgerWindow(store::Database& database, const std::string& date_format, const std::string& fkey);

    [[nodiscard]] QTableView& lines() { return *lines_; }

  private:
    void add_header(store::Database& database, const std::string& date_format, const std::string& fkey);

    QTableView* lines_;
};

}  // namespace brimley::desktop
