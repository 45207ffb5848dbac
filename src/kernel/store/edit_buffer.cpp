#include "kernel/store/edit_buffer.h"

#include <utility>

namespace brimley::store {

void EditBuffer::begin(Mode mode, std::size_t columns) {
    end();
    mode_ = mode;
    if (values_.size() < columns) values_.resize(columns);
}

void EditBuffer::end_and_keep() {
    std::swap(set_, kept_);
    end();
}

void EditBuffer::end() {
    if (mode_ != Mode::none) set_.clear(values_.size());
    mode_ = Mode::none;
}

}  // namespace brimley::store
