#include "kernel/store/edit_buffer.h"

namespace brimley::store {

void EditBuffer::begin(Mode mode, int columns) {
    end();
    mode_ = mode;
    const auto size = static_cast<std::size_t>(columns);
    if (values_.size() >= size) return;
    values_.resize(size);
    set_.assign(size, 0);
}

void EditBuffer::make_room(int column) {
    const std::size_t size = static_cast<std::size_t>(column) + 1;
    values_.resize(size);
    set_.resize(size, 0);
}

void EditBuffer::end() {
    for (const int column : order_)
        set_[static_cast<std::size_t>(column)] = 0;
    order_.clear();
    mode_ = Mode::none;
}

}  // namespace brimley::store
