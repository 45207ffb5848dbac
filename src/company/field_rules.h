// What stands in the fields of a stored document, as data: which fields repeat what another row says, which
// are never written, and which name something.
//
// The rules come from what the forms write and are written down a second time here, so that a fault of a form
// shows as well as a foreign hand. A kind of rows has its rules in one table; several tables may apply to the
// same rows, each with another row to compare with.
#pragma once

#include <span>
#include <string>

#include "company/table_rows.h"

namespace brimley::company {

// A row and, if the rules compare with one, the row that it belongs to.
class RowInRules {
  public:
    RowInRules(const TableRows& rows, std::int64_t row) : rows_(rows), row_(row) {}
    [[nodiscard]] std::string text(const char* field) const { return rows_.text(row_, field); }
    [[nodiscard]] bool is(const char* field, std::string_view text) const {
        return this->text(field) == text;
    }
    [[nodiscard]] bool flag(const char* field) const { return is(field, "TRUE"); }

  private:
    const TableRows& rows_;
    std::int64_t row_;
};

enum class MustBe {
    empty,
    filled,
    one_of,    // of the texts in `what`, parted by "|"
    as_there,  // as the field of this name, or of the name `what`, in the row that it belongs to
    // Made at the same time as the row that it belongs to, which may take up to an hour: date_created and
    // time_created.
    made_with_it,
    amount_above_or_0,
    percent,
};

struct FieldRule {
    const char* fields;  // parted by blanks
    MustBe rule;
    const char* what = nullptr;
};

struct RowRules {
    const char* table;
    const char* noun;  // "Invoice": how findings name a row, by its key
    const char* item;  // the field that tells the lines of a document apart; null for headers
    // Whether the rules are meant for this row. `owner` is the row that it belongs to.
    bool (*apply)(const RowInRules& row, const RowInRules* owner);
    const char* key;  // the fields whose texts find the owner; null when there is nothing to compare with
    const char* owner_table;
    const char* owner_key;
    const char* owner;  // "its header", for findings
    std::span<const FieldRule> rules;
};

namespace invoice_fields {
[[nodiscard]] std::span<const RowRules> rules();
}
namespace payment_fields {
[[nodiscard]] std::span<const RowRules> rules();
}
namespace ledger_fields {
[[nodiscard]] std::span<const RowRules> rules();
}
namespace revaluation_fields {
[[nodiscard]] std::span<const RowRules> rules();
}

}  // namespace brimley::company
