// The columns of a result by name, without regard to case. A name that several columns have is the first of
// them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brimley::store {

class ColumnNames {
  public:
    ColumnNames() = default;
    explicit ColumnNames(std::vector<std::string> names);

    // -1 when there is none.
    [[nodiscard]] int find(std::string_view name) const;
    [[nodiscard]] const std::string& name(int column) const {
        return names_[static_cast<std::size_t>(column)];
    }
    [[nodiscard]] int size() const { return static_cast<int>(names_.size()); }

  private:
    // Open addressing over a power of two; a slot holds a column plus one, 0 is empty.
    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t column_plus_one = 0;
    };
    [[nodiscard]] int look_up(std::string_view name) const;

    std::vector<std::string> names_;
    std::vector<Slot> slots_;
    // Row after row the same fields are asked for in the same order: which column came after which, -1 none
    // yet, and the one that was found last.
    mutable std::vector<int> next_;
    mutable int last_ = 0;
};

}  // namespace brimley::store
