#include "controls/text_array.h"

#include <cstdint>
#include <cstring>

namespace brimley::controls {

namespace {

constexpr std::size_t kHeadSize = 1 + sizeof(std::uint32_t);
constexpr int kColumnMax = 254;

struct Cell {
    std::size_t at;  // of its head; npos when the row has no such cell
    std::uint32_t length;
};

Cell find_cell(const std::string& row, int column) {
    for (std::size_t at = 0; at < row.size();) {
        std::uint32_t length = 0;
        std::memcpy(&length, row.data() + at + 1, sizeof length);
        if (static_cast<unsigned char>(row[at]) == column) return {at, length};
        at += kHeadSize + length;
    }
    return {std::string::npos, 0};
}

}  // namespace

void TextArray::dimension(int rows) { rows_.assign(static_cast<std::size_t>(rows), {}); }

int TextArray::used_rows() const {
    for (std::size_t row = rows_.size(); row > 0; --row) {
        if (!rows_[row - 1].empty()) return static_cast<int>(row);
    }
    return 0;
}

std::string_view TextArray::get(int row, int column) const {
    if (row < 0 || row >= rows()) return {};
    const std::string& cells = rows_[static_cast<std::size_t>(row)];
    const Cell cell = find_cell(cells, column);
    if (cell.at == std::string::npos) return {};
    return std::string_view(cells).substr(cell.at + kHeadSize, cell.length);
}

void TextArray::set(int row, int column, std::string_view text) {
    if (row < 0 || column < 0 || column > kColumnMax) return;
    if (row >= rows()) rows_.resize(static_cast<std::size_t>(row) + 1);
    std::string& cells = rows_[static_cast<std::size_t>(row)];
    const std::string copy(text);  // may lie in the buffer that is about to change
    const Cell cell = find_cell(cells, column);
    if (cell.at != std::string::npos) cells.erase(cell.at, kHeadSize + cell.length);
    if (copy.empty()) return;
    const auto length = static_cast<std::uint32_t>(copy.size());
    cells += static_cast<char>(column);
    cells.append(reinterpret_cast<const char*>(&length), sizeof length);
    cells += copy;
}

void TextArray::clear_row(int row) {
    if (row >= 0 && row < rows()) rows_[static_cast<std::size_t>(row)].clear();
}

void TextArray::insert_row(int row) {
    if (row >= 0 && row <= rows()) rows_.insert(rows_.begin() + row, std::string{});
}

void TextArray::delete_row(int row) {
    if (row >= 0 && row < rows()) rows_.erase(rows_.begin() + row);
}

}  // namespace brimley::controls
