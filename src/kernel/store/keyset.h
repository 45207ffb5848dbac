// The rows of one table as a keyset: which rows, and in which order, is fixed; what they hold is read afresh
// at every move.
//
// A keyset without a WHERE starts without its keys. As long as nobody walks it, its current row is known by
// its key alone, and a find is one look-up in the table. The keys are fetched when a move or a count needs
// them, and before a row of an ordered keyset is changed, which might move it elsewhere in the order.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <unordered_map>
#include <vector>

#include "kernel/store/connection.h"
#include "kernel/store/dialect/parameters.h"
#include "kernel/store/record_source.h"

namespace brimley::store {

class Keyset final : public RecordSource {
  public:
    // outer: the values of the literals outside the conditions. Reads nothing when empty, and nothing yet
    // when there is no WHERE.
    // The plan and the memory for the current row must outlive it.
    Keyset(Connection& connection, SelectPlan& plan, Row& row, std::span<const Parameter> parameters,
           std::vector<Value> outer, bool empty);

    [[nodiscard]] bool at_eof() override { return current() == nullptr; }
    [[nodiscard]] std::int64_t count() override;
    void move_first() override;
    void move_last() override;
    void move_next() override;
    [[nodiscard]] bool find(std::string_view criteria, bool onward) override;
    [[nodiscard]] bool find_equal(FieldValues fields) override;
    [[nodiscard]] const Row* current() override;
    [[nodiscard]] std::int64_t place() override;
    void go_to(std::int64_t place) override;

    // Only with a current row:
    [[nodiscard]] RowKey current_key() const { return key_; }
    // Takes the current row for writing and reads it again, unless nothing can have changed it. hold: for
    // Connection::release().
    enum class Taken { yes, somebody_has_it, row_is_gone };
    [[nodiscard]] Taken take(std::uint64_t& hold);
    // find_equal() and take() in one look at the table; row_is_gone: there is none. The row that somebody
    // else has is the current one.
    [[nodiscard]] Taken take_equal(FieldValues fields, std::uint64_t& hold);
    // find_equal(), or take_equal(), will follow with these fields.
    enum class Purpose { reading, taking };
    void prefetch(FieldValues fields, Purpose purpose);
    // The current row is about to be written.
    void fix_order();
    // The current row has just been written: for the caller to put in what it holds now.
    [[nodiscard]] Row& written();

    // A row that was added through the recordset: the last one from now on.
    void append(RowKey key);

  private:
    enum class Place { first_unread, on_row, past_end };

    void open(std::span<const Parameter> parameters);
    void read_first();
    void require_keys();
    // The key's place among the keys, -1 when it is none of them.
    [[nodiscard]] std::ptrdiff_t index_of(RowKey key);
    // The place behind the key; the end when nobody knows where the key stood.
    [[nodiscard]] std::ptrdiff_t index_behind(RowKey key);
    // To the first row at or behind the place, or at or before it, that still exists.
    void walk_from(std::ptrdiff_t index, int step);
    [[nodiscard]] bool read_row(RowKey key);
    [[nodiscard]] bool read_match(PlannedStatement& statement, std::span<const Parameter> parameters);
    [[nodiscard]] bool lock_current();
    [[nodiscard]] bool lock_match(FieldValues fields);
    void note_held();
    // Whether the current row is known to be what the table holds.
    [[nodiscard]] bool is_fresh() const {
        return connection_.still_true(row_stamp_, key_ == held_key_ ? held_in_ : 0);
    }
    [[nodiscard]] dialect::BoundParameters parameters_of(RowKey key) const;

    struct Search;
    [[nodiscard]] Search search_for(std::shared_ptr<FindPlan> plan) const;
    // Whether a find goes to the table, whatever was added.
    [[nodiscard]] bool finds_in_table() const { return !has_keys_ && !plan_.translation.ordered; }
    [[nodiscard]] bool find_planned(std::shared_ptr<FindPlan> plan, bool onward);
    [[nodiscard]] bool find_in_table(Search& search, bool onward);
    [[nodiscard]] bool find_key_by_key(Search& search, std::ptrdiff_t from);
    [[nodiscard]] bool find_among_matches(Search& search, std::ptrdiff_t from);

    Connection& connection_;
    SelectPlan& plan_;
    std::vector<Value> outer_;

    bool has_keys_ = false;
    std::vector<RowKey> keys_;
    std::vector<RowKey> added_;  // while there are no keys yet
    bool ascending_ = true;      // the keys are; then there is no need of indexes_
    std::optional<std::unordered_map<RowKey, std::ptrdiff_t>> indexes_;

    Place place_ = Place::first_unread;
    RowKey key_ = 0;
    Row& row_;
    std::uint64_t row_stamp_ = 0;
    // The transaction that holds the row of held_key_.
    RowKey held_key_ = 0;
    std::uint64_t held_in_ = 0;
};

}  // namespace brimley::store
