// The memory that an open recordset works in. It goes back to the plan of the query, so that the next
// recordset on the same query finds it there, already as large as its rows need.
#pragma once

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

// Takes what is spare, and leaves it there again; two recordsets open at a time have one each.
class BorrowedMemory {
  public:
    explicit BorrowedMemory(std::unique_ptr<RecordsetMemory>& spare)
        : spare_(spare), memory_(spare ? std::move(spare) : std::make_unique<RecordsetMemory>()) {}
    ~BorrowedMemory() {
        memory_->buffer.end();
        spare_ = std::move(memory_);
    }
    BorrowedMemory(const BorrowedMemory&) = delete;
    BorrowedMemory& operator=(const BorrowedMemory&) = delete;

    RecordsetMemory* operator->() const { return memory_.get(); }

  private:
    std::unique_ptr<RecordsetMemory>& spare_;
    std::unique_ptr<RecordsetMemory> memory_;
};

}  // namespace brimley::store
