// The checks that a new document and an edited one have in common: one message at a time, and nothing is
// written before they end.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "frame/document_part.h"
#include "invoices/document/lines.h"

namespace brimley::invoices {

class APform_invoice;

// What the checks have read, for the writing that follows.
struct CheckedEntry {
    std::vector<InvoiceLine> lines;  // all rows of the grid
    double period = 0;               // as typed; not always a whole number
    std::string ap_accno;
    std::optional<store::DateTime> due_date, discount_date;
};

class EntryChecks : public frame::DocumentPart {
  public:
    explicit EntryChecks(APform_invoice& form);

    // Lines, period, payable account and the dates that may be left out. Empty after its message.
    [[nodiscard]] std::optional<CheckedEntry> check();

  private:
    [[nodiscard]] bool read_date(const controls::DateField& field,
                                 std::optional<store::DateTime>& date) const;

    APform_invoice& form_;
};

}  // namespace brimley::invoices
