// The list that opens below a combo or a cell: rows of several columns to pick one from.
//
// It shows the rows that it was given and is gone when something was picked or the user looked elsewhere.
#pragma once

#include <QFrame>
#include <QIcon>
#include <QString>
#include <functional>
#include <string>
#include <vector>

#include "controls/combo_box.h"

class QLineEdit;
class QTreeView;

namespace brimley::desktop {

struct ListColumn {
    QString caption;
    int width = 0;       // pixels; 0: as wide as its texts
    bool exact = false;  // not wider, where its texts would be
    Qt::Alignment alignment = Qt::AlignLeft;
};

struct ListContent {
    std::vector<ListColumn> columns;
    std::vector<std::vector<std::string>> rows;
    controls::ItemLook look = controls::ItemLook::text;
};

class ListPopup : public QFrame {
  public:
    // Opens below `anchor` with the row `chosen` (-1: none) in view. `on_pick` gets the row that was picked.
    // The popup deletes itself.
    static ListPopup* open(QWidget& anchor, ListContent content, int chosen,
                           std::function<void(int row)> on_pick);

    [[nodiscard]] QTreeView& list() { return *list_; }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    ListPopup(QWidget& anchor, ListContent content, std::function<void(int row)> on_pick);
    void lay_out_columns(const std::vector<ListColumn>& columns);
    void place_below(const QWidget& anchor);
    void pick(int row);

    QTreeView* list_;
    std::function<void(int row)> on_pick_;
};

// The arrow of a field that a list opens from.
[[nodiscard]] QIcon arrow_icon(const QPalette& palette);

// The row that a list opens at for the text that stands in its field: the one with that text, else the first
// that begins with it, else none (-1).
[[nodiscard]] int row_for_text(const std::vector<std::vector<std::string>>& rows, const QString& text,
                               std::size_t column = 0);

// Type-ahead: the rest of the first row that begins with what was typed follows it, selected,
// to be typed over. False when nothing was added; a text that is a row by itself stays.
bool complete_inline(QLineEdit& line, const std::vector<std::vector<std::string>>& rows,
                     std::size_t column = 0);

}  // namespace brimley::desktop
