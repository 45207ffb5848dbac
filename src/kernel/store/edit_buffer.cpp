#include "kernel/store/edit_buffer.h"

#include <algorithm>

namespace brimley::store {

void EditBuffer::begin(Mode mode, std::size_t columns) {
    end();
    mode_ = mode;
    if (values_.size() >= columns) return;
    values_.resize(columns);
    marks_.resize((columns + kBits - 1) / kBits, 0);
}

void EditBuffer::end() {
    if (mode_ != Mode::none) std::ranges::fill(marks_, 0);
    mode_ = Mode::none;
}

}  // namespace brimley::store
