// A document of the general ledger: its header, its lines on their sides, and what the sides come to. Read
// once when it opens; it changes nothing.
#pragma once

#include <QWidget>
#include <string>

#include "kernel/store/database.h"

class QLabel;
class QTableView;

namespace brimley::desktop {

class LedgerWindow : public QWidget {
  public:
    // Throws store::Error when the ledger cannot be read. A key that names no document shows none.
    LedgerWindow(store::Database& database, const std::string& date_format, const std::string& fkey);

    [[nodiscard]] QTableView& lines() { return *lines_; }
    [[nodiscard]] QLabel& sums() { return *sums_; }

  private:
    void add_header(store::Database& database, const std::string& date_format, const std::string& fkey);

    QTableView* lines_;
    QLabel* sums_;
};

}  // namespace brimley::desktop
