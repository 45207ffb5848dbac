// Rows in memory: one row with quick access to its cells, and many rows packed tightly.
//
// An engine fills a Row cell by cell, from the first column to the last. A cell costs a byte when it is null
// or a flag, nine bytes when it is a number or a date, and two bytes more than its length when it is a short
// text, so that a list of a million rows stays in memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "kernel/store/value.h"

namespace brimley::store {

class Row {
  public:
    void clear();
    // Makes room for a row of so many columns, so that filling it seldom has to.
    void expect(std::size_t columns);
    void add_null() { *extend(1) = kNull; }
    void add_flag(bool flag) { *extend(1) = flag ? kTrue : kFalse; }
    void add_number(double number) { add_as(kNumber, number); }
    void add_date(DateTime date) { add_as(kDate, date); }
    void add_text(std::string_view text);
    void add(const Value& value);
    // The cell of another row.
    void add_cell(const Row& from, int column);

    [[nodiscard]] int size() const { return static_cast<int>(starts_.size()); }
    [[nodiscard]] Value value(int column) const;
    // Empty unless the cell holds a number.
    [[nodiscard]] std::optional<double> number(int column) const {
        const char* const at = cell(column);
        double number = 0;
        if (*at != kNumber) return {};
        std::memcpy(&number, at + 1, sizeof number);
        return number;
    }
    // Empty unless the cell holds a text. Lasts as long as the row holds it.
    [[nodiscard]] std::optional<std::string_view> text(int column) const;
    // Puts the value into the cell when it takes the same room as what stands there. False, and nothing has
    // changed, when it does not.
    [[nodiscard]] bool put(int column, const Value& value);
    // Without a copy: whether the cell is exactly this value.
    [[nodiscard]] bool holds(int column, const Value& value) const;

  private:
    friend class PackedRows;

    // The first byte of a cell: what it holds.
    enum Kind : char { kNull, kFalse, kTrue, kNumber, kDate, kShortText, kLongText };
    static std::size_t cell_size(const char* cell);
    static std::string_view text_at(const char* cell);
    // Becomes the row with these cells.
    void take(std::span<const char> cells);

    template <class T>
    void add_as(Kind kind, T value) {
        char* const cell = extend(1 + sizeof value);
        *cell = kind;
        std::memcpy(cell + 1, &value, sizeof value);
    }

    // Room for one more cell.
    [[nodiscard]] char* extend(std::size_t size) {
        starts_.push_back(static_cast<std::uint32_t>(used_));
        if (used_ + size > bytes_.size()) bytes_.resize((used_ + size) * 2);
        used_ += size;
        return bytes_.data() + used_ - size;
    }
    [[nodiscard]] const char* cell(int column) const {
        return bytes_.data() + starts_[static_cast<std::size_t>(column)];
    }
    [[nodiscard]] char* cell(int column) { return bytes_.data() + starts_[static_cast<std::size_t>(column)]; }

    // Only ever grows; used_ is how much of it counts.
    std::vector<char> bytes_;
    std::size_t used_ = 0;
    std::vector<std::uint32_t> starts_;
};

// The rows lie in blocks that stay where they are: a long list is never copied to make room.
class PackedRows {
  public:
    void append(const Row& row);
    [[nodiscard]] std::int64_t size() const { return static_cast<std::int64_t>(rows_.size()); }
    void load(std::int64_t row, Row& into) const;

  private:
    using RowSize = std::uint32_t;  // stands before the cells of a row, in bytes
    [[nodiscard]] char* room_for(std::size_t size);

    std::vector<std::vector<char>> blocks_;
    std::vector<const char*> rows_;
};

}  // namespace brimley::store
