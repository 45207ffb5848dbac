// An open recordset: its rows, and the row being added or edited.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <variant>
#include <vector>

#include "kernel/store/connection.h"
#include "kernel/store/database.h"
#include "kernel/store/keyset.h"
#include "kernel/store/record_source.h"
#include "kernel/store/recordset_memory.h"
#include "kernel/store/snapshot.h"

namespace brimley::store {

class Recordset::State {
  public:
    State(std::shared_ptr<Connection> connection, std::string_view query, RecordsetKind kind,
          const Pause& between);
    ~State();
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    // A move, a find or a bookmark: the row being added or edited is dropped first.
    [[nodiscard]] RecordSource& moving();
    [[nodiscard]] RecordSource& rows() { return *source_; }
    void go_to(std::int64_t place);
    bool no_match = false;

    [[nodiscard]] const SelectPlan& plan() const { return *plan_; }
    // Throws ErrorKind::name.
    [[nodiscard]] int column_of(std::string_view name) const;
    // As column_of(); after the columns come the fields of the table, which can be set although the query
    // does not name them.
    [[nodiscard]] int column_to_set(std::string_view name) const;
    void require_column(int column) const {
        if (column < 0 || column >= plan_->names.size()) refuse_column(column);
    }
    void require_column_to_set(int column) const {
        if (column < 0 || static_cast<std::size_t>(column) >= plan_->field_places.size())
            require_column(column);
    }
    [[nodiscard]] Value value(int column);
    // As value(column).text().
    [[nodiscard]] std::string text(int column);
    void read_text(int column, std::string& into);
    void numbers(std::span<const int> columns, std::span<std::optional<double>> into);

    void add_new();
    // False when another workspace is in the way.
    [[nodiscard]] bool edit();
    // The first row in which each field holds its value; no_match: there is none.
    [[nodiscard]] bool edit_first(FieldValues fields);
    void prefetch(FieldValues fields, Keyset::Purpose purpose);
    void set(int column, const Value& value);
    // As set(column, Value(text)).
    void set_text(int column, std::string_view text);
    void set_number(int column, double number);
    void set_numbers(std::span<const int> columns, std::span<const double> numbers);
    void update();
    void cancel();
    [[nodiscard]] std::int64_t last_modified() const { return last_modified_; }

  private:
    [[noreturn]] static void refuse_column(int column);
    [[nodiscard]] const Table& require_table() const;
    void require_buffer() const;
    [[nodiscard]] const Row& row_at_hand();
    // Of the field among those of the table; throws for a computed column.
    [[nodiscard]] std::size_t place_of_field(int column) const;
    [[nodiscard]] const Field& field_of(int column) const;
    void insert_row();
    [[nodiscard]] WriteResult write_new_row();
    void begin_hold();
    void begin_editing();
    void require_held();
    void note_added(const WatchedTable& watched);
    [[nodiscard]] const Row& whole_row();
    void note_witness(RowKey key, bool added);
    [[nodiscard]] bool knows_added_row(std::int64_t place) const;
    void show_added_row(Row& row) const;
    void update_row();
    void write_changes();
    void write_row();
    // Which fields are to be written, and from which column: none at first, then one after the other.
    void begin_fields();
    void write_field(int column);
    // Their values, in the order of the fields, after the parameters.
    void add_field_values();
    // The fields that are set to something else than the row holds. False when there are none.
    [[nodiscard]] bool collect_changes();
    void show_changes();

    // The plan goes before the connection that prepared its statements.
    std::shared_ptr<Connection> connection_;
    std::shared_ptr<SelectPlan> plan_;
    BorrowedMemory memory_;
    std::variant<std::monostate, Snapshot, Keyset> rows_;
    RecordSource* source_ = nullptr;
    Keyset* keyset_ = nullptr;  // the source, when its rows can be changed

    EditBuffer& buffer_;
    // On which connection and in which transaction the row being edited was taken: later ones do not hold it.
    int connection_of_edit_ = 0;
    std::uint64_t transaction_of_edit_ = 0;
    std::uint64_t hold_ = 0;  // of the row being edited, when it is held outside a transaction
    std::int64_t last_modified_ = -1;
    // The row that was added last, while the buffer still keeps what it was set to.
    struct Added {
        RowKey key = -1;
        std::uint64_t stamp = 0;  // Connection::stamp() when it was written
    } added_;
};

}  // namespace brimley::store
