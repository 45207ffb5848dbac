// The row being added or edited, as far as it differs from what it was based on.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "kernel/store/value.h"

namespace brimley::store {

class EditBuffer {
  public:
    enum class Mode { none, adding, editing };

    [[nodiscard]] Mode mode() const { return mode_; }
    [[nodiscard]] bool active() const { return mode_ != Mode::none; }

    void begin(Mode mode, int columns);
    void end();

    // What the column held, or would hold if it had been set before: to be given its value, then marked as
    // set.
    [[nodiscard]] Value& slot(int column) {
        if (static_cast<std::size_t>(column) >= values_.size()) make_room(column);
        return values_[static_cast<std::size_t>(column)];
    }
    void mark_set(int column) {
        char& mark = set_[static_cast<std::size_t>(column)];
        if (!mark) order_.push_back(column);
        mark = 1;
    }
    [[nodiscard]] bool is_set(int column) const {
        return static_cast<std::size_t>(column) < set_.size() && set_[static_cast<std::size_t>(column)] != 0;
    }
    // Only of a column that is set. The reference lasts until that column is set again or the buffer begins
    // anew.
    [[nodiscard]] const Value& value(int column) const { return values_[static_cast<std::size_t>(column)]; }
    // In the order in which they were first set.
    [[nodiscard]] std::span<const int> set_columns() const { return order_; }

  private:
    void make_room(int column);

    Mode mode_ = Mode::none;
    std::vector<Value> values_;
    std::vector<char> set_;
    std::vector<int> order_;
};

}  // namespace brimley::store
