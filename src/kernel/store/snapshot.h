// The rows of a query as they were when it was opened.
#pragma once

#include <memory>
#include <span>

#include "kernel/store/connection.h"
#include "kernel/store/database.h"
#include "kernel/store/record_source.h"

namespace brimley::store {

class Snapshot final : public RecordSource {
  public:
    // Reads all rows, or none when `empty`, and calls `between` after each thousand. The plan and the memory
    // for the current row must outlive it.
    Snapshot(Connection& connection, SelectPlan& plan, Row& row, std::span<const Parameter> parameters,
             bool empty, const Pause& between);

    [[nodiscard]] bool at_eof() override { return at_ >= count_; }
    [[nodiscard]] std::int64_t count() override { return count_; }
    void move_first() override { go(0); }
    void move_last() override { go(count_ - 1); }
    void move_next() override { go(at_ + 1); }
    [[nodiscard]] bool find(std::string_view criteria, bool onward) override;
    [[nodiscard]] bool find_equal(FieldValues fields) override { return find(all_equal(fields), false); }
    [[nodiscard]] const Row* current() override { return at_eof() ? nullptr : &row_; }
    [[nodiscard]] std::int64_t place() override { return at_eof() ? -1 : at_; }
    void go_to(std::int64_t place) override;

  private:
    void go(std::int64_t row);
    void load(std::int64_t row, Row& into) const;

    Connection& connection_;
    SelectPlan& plan_;
    std::int64_t count_ = 0;
    PackedRows rows_;  // none when there is only one, which stays where it was read
    std::int64_t at_ = 0;
    Row& row_;
};

}  // namespace brimley::store
