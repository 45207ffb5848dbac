// Walking the stored documents of a kind by the running number in their keys ("1ip-57"), from the counter
// downwards or step by step over gaps, never by docno and never by a sorted query: a step costs the same
// however many documents are stored.
//
// It reads and shows nothing: a form takes the header that is found and shows it. Reading throws
// store::Error.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "frame/form_part.h"

namespace brimley::frame {

// The tables and the number field of the documents that are walked.
struct WalkTables {
    const char* header = "AP_header_table";
    const char* lines = "AP_transaction_table";
    const char* number_field = "docno";
    // Of the lines of a document. By value, so that line 10 comes after line 9.
    const char* line_order = "VAL(pay_item)";
    // A further condition on documents found by their number, where a table holds several kinds.
    const char* own_kind = "";
    // Whether the header table says in `doctype` which kind its rows are. A table without that field holds a
    // single kind.
    bool has_doctype = true;
    // What a missing number means on the way up: the way down always skips it. A way up that a gap ends has
    // no other end: it reaches what was saved since the walk began.
    enum class GapUpwards { is_jumped, ends_the_way } gap_upwards = GapUpwards::is_jumped;
};

class DocumentWalk : public FormPart {
  public:
    DocumentWalk(Form& form, const WalkTables& tables) : FormPart(form), tables_(tables) {}

    [[nodiscard]] const WalkTables& tables() const { return tables_; }

    // --- single documents: a recordset on the header, at its end when there is none ---
    [[nodiscard]] store::Recordset header_where(std::string_view criteria) const;
    [[nodiscard]] store::Recordset header_by_fkey(std::string_view fkey) const;
    // Of several documents with this number the first in table order.
    [[nodiscard]] store::Recordset header_by_number(std::string_view number) const;
    // What finds a document by its number, as criteria.
    [[nodiscard]] std::string named(std::string_view number) const;
    [[nodiscard]] store::Recordset lines_of(std::string_view fkey) const;

    // --- the walk ---

    // The number last given to a document of the kind; 0 when none was given yet, or when the counter has no
    // row.
    [[nodiscard]] std::int64_t last_number_issued(const std::string& doctype) const;
    // The newest stored header of the kind, looked for from last_no down; from then on the way up ends at
    // last_no. Empty when none of the numbers is stored.
    [[nodiscard]] std::optional<store::Recordset> newest(const std::string& doctype, std::int64_t last_no);
    // The header after (1) or before (-1) the document with this key, within its own kind. Empty at the end,
    // and for a key without a number.
    [[nodiscard]] std::optional<store::Recordset> beside(const std::string& fkey, int direction) const;
    // Keys made elsewhere may have no number after a "-".
    [[nodiscard]] static bool has_number(std::string_view fkey);

    // Where the way up ends; set by newest.
    std::int64_t fkey_last_no = 0;

  private:
    [[nodiscard]] std::optional<store::Recordset> nearest(const std::string& prefix, std::int64_t n,
                                                          int direction, std::int64_t last_no) const;
    [[nodiscard]] std::optional<std::int64_t> stored_number_beyond(const std::string& prefix, std::int64_t n,
                                                                   int direction) const;

    [[nodiscard]] bool gap_ends_way_up() const {
        return tables_.gap_upwards == WalkTables::GapUpwards::ends_the_way;
    }

    WalkTables tables_;
    std::string doctype_of_last_no_;  // the kind that fkey_last_no belongs to
};

}  // namespace brimley::frame
