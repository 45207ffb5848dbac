// The row being added or edited, as far as it differs from what it was based on.
#pragma once

#include <cstddef>
#include <vector>

#include "kernel/store/place_set.h"
#include "kernel/store/value.h"

namespace brimley::store {

class EditBuffer {
  public:
    enum class Mode { none, adding, editing };

    [[nodiscard]] Mode mode() const { return mode_; }
    [[nodiscard]] bool active() const { return mode_ != Mode::none; }

    // Columns from 0 up to `columns` can be set.
    void begin(Mode mode, std::size_t columns);
    void end();
    // As end(); until it begins anew, what was set can still be read by kept().
    void end_and_keep();
    // What the column was set to. Null when it was not set.
    [[nodiscard]] const Value* kept(int column) const {
        return kept_.contains(static_cast<std::size_t>(column)) ? &value(column) : nullptr;
    }

    // What the column held, or would hold if it had been set before: to be given its value, then marked as
    // set.
    [[nodiscard]] Value& slot(int column) { return values_[static_cast<std::size_t>(column)]; }
    void mark_set(int column) { set_.add(static_cast<std::size_t>(column)); }
    [[nodiscard]] bool is_set(int column) const { return set_.contains(static_cast<std::size_t>(column)); }
    // Only of a column that is set. The reference lasts until that column is set again or the buffer begins
    // anew.
    [[nodiscard]] const Value& value(int column) const { return values_[static_cast<std::size_t>(column)]; }
    // Calls it with each column that is set, in order.
    template <class Act>
    void each_set_column(const Act& act) const {
        set_.each([&](std::size_t column) { act(static_cast<int>(column)); });
    }

  private:
    Mode mode_ = Mode::none;
    std::vector<Value> values_;
    PlaceSet set_;
    PlaceSet kept_;
};

}  // namespace brimley::store
