// The two-dimensional array of text behind a grid, owned by the form that shows it.
//
// Rows and columns count from 0. Only what was set takes room: one buffer per row, so that a list of a
// million rows fits in memory. Reading a cell that was never set gives an empty text; setting one makes the
// rows up to it.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace brimley::controls {

class TextArray {
  public:
    // Empties the array and gives it this many rows.
    void dimension(int rows);
    [[nodiscard]] int rows() const { return static_cast<int>(rows_.size()); }
    // One past the last row that holds any text.
    [[nodiscard]] int used_rows() const;

    [[nodiscard]] bool row_has_text(int row) const;

    // Valid until the row is next changed.
    [[nodiscard]] std::string_view get(int row, int column) const;
    // A column below 0 (a caption that the grid does not have) is ignored, as is one above 254.
    void set(int row, int column, std::string_view text);
    // The row holds these cells then and nothing else. Each column comes once.
    struct CellText {
        int column;
        std::string_view text;
    };
    void set_row(int row, std::span<const CellText> cells);
    void clear_row(int row);
    void insert_row(int row);  // an empty row; the ones from `row` on move down
    void delete_row(int row);  // the ones below move up

  private:
    // For each cell that is set: the column (one byte), the length (one byte, or five from 255 on), the text.
    std::vector<std::vector<char>> rows_;
};

}  // namespace brimley::controls
