// The row being added or edited, as far as it differs from what it was based on.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

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

    // What the column held, or would hold if it had been set before: to be given its value, then marked as
    // set.
    [[nodiscard]] Value& slot(int column) { return values_[static_cast<std::size_t>(column)]; }
    void mark_set(int column) { marks_[word_of(column)] |= bit_of(column); }
    [[nodiscard]] bool is_set(int column) const {
        return word_of(column) < marks_.size() && (marks_[word_of(column)] & bit_of(column)) != 0;
    }
    // Only of a column that is set. The reference lasts until that column is set again or the buffer begins
    // anew.
    [[nodiscard]] const Value& value(int column) const { return values_[static_cast<std::size_t>(column)]; }
    // Calls it with each column that is set, in order.
    template <class Act>
    void each_set_column(const Act& act) const {
        for (std::size_t word = 0; word < marks_.size(); ++word)
            for (std::uint64_t bits = marks_[word]; bits != 0; bits &= bits - 1)
                act(static_cast<int>(word * kBits) + std::countr_zero(bits));
    }

  private:
    static constexpr std::size_t kBits = 64;
    static std::size_t word_of(int column) { return static_cast<std::size_t>(column) / kBits; }
    static std::uint64_t bit_of(int column) {
        return std::uint64_t{1} << (static_cast<std::size_t>(column) % kBits);
    }

    Mode mode_ = Mode::none;
    std::vector<Value> values_;
    std::vector<std::uint64_t> marks_;  // a bit for each column that is set
};

}  // namespace brimley::store
