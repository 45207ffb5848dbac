// The rows of one table as a keyset: which rows, and in which order, is fixed; what they hold is read afresh
// at every move.
//
// Two things change, each for itself.
//
// The keys:         not fetched --- move_last, move_next, count ---> fetched
//
//   A keyset without a WHERE starts without its keys, and as long as nobody walks it a find is one look-up in
//   the table; rows that are added meanwhile wait in added_. Before a row of an ordered keyset is changed the
//   keys are fetched, too, since the change might move the row elsewhere in the order.
//
// The current row:  first_unread --- current() ---> on_row; past_end when there is none
//                   on_row --- move_next, from the last row ---> past_end
//                   any --- find, go_to, move_last ---> on_row
//                   any --- move_first ---> on_row, or first_unread while the keys are not fetched
//
//   The row on_row is in memory. It is read again before it is changed, unless nobody else can have written
//   it since: this transaction holds it, or keeps everybody from writing.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "kernel/store/connection.h"
#include "kernel/store/dialect/parameters.h"
#include "kernel/store/key_list.h"
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
    [[nodiscard]] RowKey current_key() const { return current_.key; }
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
    // The current row, which is held, is about to be written.
    void prepare_to_write();
    // From then on: whether the current row is what the table holds. It is not when another recordset of the
    // same transaction has written it since it was taken.
    [[nodiscard]] bool knows_row() const { return knows_row_; }
    // The current row has just been written: for the caller to put in what it holds now.
    [[nodiscard]] Row& written();

    // A row that was added through the recordset: the last one from now on.
    void append(RowKey key);
    // It becomes the current row, which nobody has to read: for the caller to put in what it holds.
    [[nodiscard]] Row& go_to_added(RowKey key);

  private:
    enum class Place { first_unread, on_row, past_end };

    void open(std::span<const Parameter> parameters);
    void read_first();
    [[nodiscard]] KeyList& fetched_keys();
    [[nodiscard]] KeyList fetch_keys();
    // To the first row from this index on, upwards or downwards by the step, that still exists.
    void walk_from(std::ptrdiff_t index, int step);
    [[nodiscard]] bool read_row(RowKey key);
    [[nodiscard]] bool read_match(PlannedStatement& statement, std::span<const Parameter> parameters);
    void note_read(RowKey key);
    [[nodiscard]] bool lock_current();
    [[nodiscard]] bool lock_match(FieldValues fields);
    void note_held(RowKey key) { held_ = {key, connection_.transaction_number()}; }
    // Whether the current row is known to be what the table holds.
    [[nodiscard]] bool is_fresh() const {
        return connection_.still_true(current_.stamp, current_.key == held_.key ? held_.transaction : 0);
    }
    [[nodiscard]] dialect::BoundParameters parameters_of(RowKey key) const;

    struct Search;
    [[nodiscard]] Search search_for(std::shared_ptr<FindPlan> plan) const;
    // Whether a find goes to the table, whatever was added.
    [[nodiscard]] bool finds_in_table() const { return !keys_ && !plan_.translation.ordered; }
    [[nodiscard]] bool find_planned(std::shared_ptr<FindPlan> plan, bool onward);
    [[nodiscard]] bool find_in_table(Search& search, bool onward);
    [[nodiscard]] bool find_key_by_key(Search& search, std::ptrdiff_t from);
    [[nodiscard]] bool find_among_matches(Search& search, std::ptrdiff_t from);

    Connection& connection_;
    SelectPlan& plan_;
    std::vector<Value> outer_;

    std::optional<KeyList> keys_;  // empty: not fetched
    std::vector<RowKey> added_;    // until they are

    struct Current {
        Place place = Place::first_unread;
        RowKey key = 0;
        std::uint64_t stamp = 0;  // Connection::stamp() when it was read
    } current_;
    Row& row_;  // the current one, while it is on_row
    bool knows_row_ = false;

    // The row held last, and the transaction that holds it.
    struct Held {
        RowKey key = 0;
        std::uint64_t transaction = 0;
    } held_;
};

}  // namespace brimley::store
