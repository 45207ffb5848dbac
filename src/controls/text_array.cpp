#include "controls/text_array.h"

#include <cstdint>
#include <cstring>
#include <optional>

namespace brimley::controls {

namespace {

constexpr int kColumnMax = 254;
// Lengths from here on do not fit into one byte: this byte stands there, and the length in four more.
constexpr unsigned kLongLength = 255;
// Rows grow by steps of this size, so that little of what they hold is reserve.
constexpr std::size_t kGrowth = 32;

// Where a cell stands in its row.
struct Cell {
    std::size_t at;    // of its head
    std::size_t text;  // of its text
    std::size_t length;
    [[nodiscard]] std::size_t end() const { return text + length; }
};

unsigned byte_at(const std::vector<char>& row, std::size_t at) { return static_cast<unsigned char>(row[at]); }

Cell cell_at(const std::vector<char>& row, std::size_t at) {
    const unsigned length = byte_at(row, at + 1);
    if (length < kLongLength) return {at, at + 2, length};
    std::uint32_t long_length = 0;
    std::memcpy(&long_length, row.data() + at + 2, sizeof long_length);
    return {at, at + 2 + sizeof long_length, long_length};
}

std::optional<Cell> find_cell(const std::vector<char>& row, int column) {
    for (std::size_t at = 0; at < row.size();) {
        const Cell cell = cell_at(row, at);
        if (byte_at(row, at) == static_cast<unsigned>(column)) return cell;
        at = cell.end();
    }
    return std::nullopt;
}

std::size_t size_of_cell(std::string_view text) {
    return 2 + (text.size() >= kLongLength ? sizeof(std::uint32_t) : 0) + text.size();
}

// Writes the cell where there is room for it, and returns what comes after it.
char* write_cell(char* at, int column, std::string_view text) {
    const bool is_long = text.size() >= kLongLength;
    const auto length = static_cast<std::uint32_t>(text.size());
    *at++ = static_cast<char>(column);
    *at++ = static_cast<char>(is_long ? kLongLength : length);
    if (is_long) {
        std::memcpy(at, &length, sizeof length);
        at += sizeof length;
    }
    std::memcpy(at, text.data(), text.size());
    return at + text.size();
}

void append_cell(std::vector<char>& row, int column, std::string_view text) {
    const std::size_t before = row.size();
    const std::size_t needed = before + size_of_cell(text);
    if (needed > row.capacity()) row.reserve((needed + kGrowth - 1) / kGrowth * kGrowth);
    row.resize(needed);
    write_cell(row.data() + before, column, text);
}

}  // namespace

void TextArray::dimension(int rows) { rows_.assign(static_cast<std::size_t>(rows), {}); }

int TextArray::used_rows() const {
    for (std::size_t row = rows_.size(); row > 0; --row) {
        if (!rows_[row - 1].empty()) return static_cast<int>(row);
    }
    return 0;
}

bool TextArray::row_has_text(int row) const {
    return row >= 0 && row < rows() && !rows_[static_cast<std::size_t>(row)].empty();
}

std::string_view TextArray::get(int row, int column) const {
    if (row < 0 || row >= rows()) return {};
    const std::vector<char>& cells = rows_[static_cast<std::size_t>(row)];
    const auto cell = find_cell(cells, column);
    return cell ? std::string_view(cells.data() + cell->text, cell->length) : std::string_view{};
}

void TextArray::set(int row, int column, std::string_view text) {
    if (row < 0 || column < 0 || column > kColumnMax) return;
    if (row >= rows()) rows_.resize(static_cast<std::size_t>(row) + 1);
    std::vector<char>& cells = rows_[static_cast<std::size_t>(row)];
    const std::string copy(text);  // may lie in the buffer that is about to change
    if (const auto cell = find_cell(cells, column)) {
        const auto begin = cells.begin();
        cells.erase(begin + static_cast<std::ptrdiff_t>(cell->at),
                    begin + static_cast<std::ptrdiff_t>(cell->end()));
    }
    if (!copy.empty()) append_cell(cells, column, copy);
}

void TextArray::set_row(int row, std::span<const CellText> cells) {
    if (row < 0) return;
    if (row >= rows()) rows_.resize(static_cast<std::size_t>(row) + 1);
    const auto is_kept = [](const CellText& cell) {
        return cell.column >= 0 && cell.column <= kColumnMax && !cell.text.empty();
    };
    std::size_t size = 0;
    for (const CellText& cell : cells)
        if (is_kept(cell)) size += size_of_cell(cell.text);
    std::vector<char> filled(size);  // the texts may lie in what the row holds now
    char* at = filled.data();
    for (const CellText& cell : cells)
        if (is_kept(cell)) at = write_cell(at, cell.column, cell.text);
    rows_[static_cast<std::size_t>(row)] = std::move(filled);
}

void TextArray::clear_row(int row) {
    if (row >= 0 && row < rows()) rows_[static_cast<std::size_t>(row)].clear();
}

void TextArray::insert_row(int row) {
    if (row >= 0 && row <= rows()) rows_.insert(rows_.begin() + row, std::vector<char>{});
}

void TextArray::delete_row(int row) {
    if (row >= 0 && row < rows()) rows_.erase(rows_.begin() + row);
}

}  // namespace brimley::controls
