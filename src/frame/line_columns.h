// The columns of a grid of lines that are stored: caption, field of the line's row, and how the value is
// shown.
//
// A form names them once in a table; showing a stored document's lines reads the table. Columns that the user
// has moved are found by their captions, once per list, not once per cell.
#pragma once

#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "controls/grid.h"
#include "frame/form_part.h"

namespace brimley::frame {

// A grid of lines has at least so many rows, and when it is full so many more than lines.
inline constexpr int kRowsMin = 21;
inline constexpr int kRowsSpare = 5;
// The rows of a grid that lists so many lines.
[[nodiscard]] constexpr int rows_for(int lines) {
    return lines >= kRowsMin - 1 ? lines + kRowsSpare : kRowsMin;
}

enum class Shown { text, money, money_without_sign, date, flag };

struct LineColumn {
    const char* caption;
    const char* field;
    Shown shown;
};

class LineColumns : public FormPart {
  public:
    // `columns` must outlive this: a table of constants.
    LineColumns(Form& form, controls::Grid& grid, std::span<const LineColumn> columns)
        : FormPart(form), grid_(grid), columns_(columns) {}

    // Finds captions and fields; before the first row of each list.
    void begin(const store::Recordset& lines);
    // Puts the current row of the lines into a row of the grid. A null is shown as an empty text, a flag as
    // "True" or "False"; a field that the lines do not have is null.
    void show(const store::Recordset& line, int row) {
        read(line);
        put(row);
    }
    // The same in two steps, for rows that have more cells than the lines have fields: the texts of the
    // current row, and then the cells of a row of the grid. The columns of `more` are none of these.
    void read(const store::Recordset& line);
    [[nodiscard]] std::string_view text(std::size_t column) const { return texts_[column]; }
    void put(int row, std::span<const controls::TextArray::CellText> more = {});

  private:
    void read_cell(const store::Recordset& line, int field, Shown shown, std::string& text);
    [[nodiscard]] std::string text_of(const store::Value& value, Shown shown);
    // Many lines share their days.
    [[nodiscard]] const std::string& date_text_of(const store::Value& value);

    controls::Grid& grid_;
    std::span<const LineColumn> columns_;
    std::vector<int> fields_;  // -1: the lines have no such field
    std::vector<std::string> texts_;
    std::vector<controls::TextArray::CellText> cells_;
    std::unordered_map<std::int32_t, std::string> dates_;  // by day
};

}  // namespace brimley::frame
