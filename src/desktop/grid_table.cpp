#include "desktop/grid_table.h"

#include <QPalette>

#include "desktop/model_view.h"
#include "kernel/store/value.h"

namespace brimley::desktop {

using controls::Alignment;
using controls::GridColumn;

namespace {

QFont font_of(const controls::FontStyle& style) {
    QFont font(shown(style.name));
    if (style.size > 0) font.setPointSizeF(style.size);
    font.setBold(style.bold);
    font.setItalic(style.italic);
    font.setUnderline(style.underline);
    return font;
}

Qt::Alignment alignment_of(Alignment alignment) {
    switch (alignment) {
        case Alignment::right:
            return Qt::AlignRight | Qt::AlignVCenter;
        case Alignment::centre:
            return Qt::AlignCenter;
        case Alignment::left:
            break;
    }
    return Qt::AlignLeft | Qt::AlignVCenter;
}

}  // namespace

bool GridTable::follow(const QWidget& view) {
    palette_ = view.palette();
    fonts_.clear();
    for (const GridColumn& column : grid_.columns)
        fonts_.push_back(font_of(column.font));
    const std::vector<int> seen = grid_.column_order();
    places_.assign(seen.size(), 0);
    for (std::size_t place = 0; place < seen.size(); ++place)
        places_[static_cast<std::size_t>(seen[place])] = static_cast<int>(place);
    const int columns = static_cast<int>(grid_.columns.size());
    if (rows_ == rows_of_model() && columns_ == columns) return false;
    beginResetModel();
    rows_ = rows_of_model();
    columns_ = columns;
    endResetModel();
    return true;
}

bool GridTable::take_marks(CellMarks marks) {
    if (marks == marks_) return false;
    marks_ = std::move(marks);
    return true;
}

int GridTable::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

int GridTable::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : columns_; }

bool GridTable::is_check_cell(const QModelIndex& index) const {
    return index.isValid() && index.column() < static_cast<int>(grid_.columns.size()) &&
           column(index.column()).check_box;
}

bool GridTable::is_ticked(const QModelIndex& index) const {
    return store::Value(std::string(grid_.array.get(index.row(), index.column()))).flag();
}

bool GridTable::is_selected(int column) const {
    const auto range = grid_.selected_columns();
    const int place = places_.at(static_cast<std::size_t>(column));
    return range && place >= range->from && place <= range->to;
}

QVariant GridTable::text_colour_of(const QModelIndex& index) const {
    const GridColumn& shown_column = column(index.column());
    std::optional<controls::Colour> of_row;
    if (shown_column.fetch_style && grid_.on_fetch_row_style) of_row = grid_.on_fetch_row_style(index.row());
    const QVariant back = back_colour_of(index);
    const controls::Colour colour = of_row.value_or(shown_column.font_colour);
    if (colour == 0 && back.isValid()) return readable_on(back.value<QColor>());
    return text_colour(colour, palette_);
}

QVariant GridTable::back_colour_of(const QModelIndex& index) const {
    if (marks_.contains({index.row(), index.column()})) return mark_back_colour(palette_);
    if (is_selected(index.column())) {
        QColor tint = palette_.color(QPalette::Highlight);
        return is_dark(palette_) ? tint.darker(180) : tint.lighter(175);
    }
    const bool even = index.row() % 2 == 1;
    if (!even || grid_.even_row_colour == controls::kWhite) return {};
    return back_colour(grid_.even_row_colour, palette_);
}

QVariant GridTable::said_of(const QModelIndex& index) const {
    const auto found = marks_.find({index.row(), index.column()});
    return found == marks_.end() ? QVariant() : found->second;
}

QVariant GridTable::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.column() >= static_cast<int>(grid_.columns.size())) return {};
    switch (role) {
        case Qt::DisplayRole:
        case Qt::EditRole:
            if (is_check_cell(index)) return {};
            return shown(grid_.array.get(index.row(), index.column()));
        case Qt::FontRole:
            return fonts_.at(static_cast<std::size_t>(index.column()));
        case Qt::TextAlignmentRole:
            return QVariant(alignment_of(column(index.column()).alignment));
        case Qt::ForegroundRole:
            return text_colour_of(index);
        case Qt::BackgroundRole:
            return back_colour_of(index);
        case Qt::ToolTipRole:
            return said_of(index);
        default:
            return {};
    }
}

QVariant GridTable::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section >= static_cast<int>(grid_.columns.size())) return {};
    if (role == Qt::DisplayRole) return shown(column(section).caption);
    if (role == Qt::ToolTipRole) return shown(column(section).caption);
    return {};
}

Qt::ItemFlags GridTable::flags(const QModelIndex& index) const {
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (!index.isValid() || index.column() >= static_cast<int>(grid_.columns.size())) return flags;
    const bool may_type = grid_.edit_refusal(index.row(), index.column()) == controls::Refusal::none;
    return may_type ? flags | Qt::ItemIsEditable : flags;
}

}  // namespace brimley::desktop
