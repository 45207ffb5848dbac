// The memory that an open recordset works in. It goes back to the plan of the query, so that the next
// recordset on the same query finds it there, already as large as its rows need.
#pragma once

#include <array>
#include <memory>
#include <utility>
#include <vector>

#include "kernel/store/edit_buffer.h"
#include "kernel/store/engine.h"
#include "kernel/store/place_set.h"
#include "kernel/store/row.h"

namespace brimley::store {

struct RecordsetMemory {
    Row row;  // the current one
    EditBuffer buffer;
    Row changed_row;
    // For writing: the values, the fields that are written, and the column that each comes from.
    std::vector<Parameter> parameters;
    PlaceSet written_fields;
    std::vector<int> column_of_field;
};

// Where a plan keeps what is spare: for as many recordsets of a query as a posting has open at a time.
using SpareMemory = std::array<std::unique_ptr<RecordsetMemory>, 2>;

// Takes what is spare, and leaves it there again; two recordsets open at a time have one each.
class BorrowedMemory {
  public:
    explicit BorrowedMemory(SpareMemory& spare) : spare_(spare), memory_(std::move(place(true))) {
        if (!memory_) memory_ = std::make_unique<RecordsetMemory>();
    }
    ~BorrowedMemory() {
        memory_->buffer.end();
        place(false) = std::move(memory_);
    }
    BorrowedMemory(const BorrowedMemory&) = delete;
    BorrowedMemory& operator=(const BorrowedMemory&) = delete;

    RecordsetMemory* operator->() const { return memory_.get(); }

  private:
    // One that is filled, or empty; the last one when there is none.
    [[nodiscard]] std::unique_ptr<RecordsetMemory>& place(bool filled) const {
        auto* found = spare_.begin();
        while (found != &spare_.back() && (*found != nullptr) != filled)
            ++found;
        return *found;
    }

    SpareMemory& spare_;
    std::unique_ptr<RecordsetMemory> memory_;
};

}  // namespace brimley::store
