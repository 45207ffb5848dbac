// The lines of the document on screen (frame/account_lines.h): their columns, what is typed into them, and
// the totals.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "frame/account_lines.h"

namespace brimley::invoices {

class APform_invoice;

// A row of the grid, read once for the save and the ledger. Amounts are in the document's currency.
struct InvoiceLine {
    std::string pay_item;  // empty: the row is no line, but may have a description
    std::string description, tax_code, po_accno;
    std::optional<double> gross, taxable;  // empty when the cell is
    double open = 0, tax = 0;

    // As shown: a cent that was lost on the way to the screen is no amount.
    [[nodiscard]] bool holds_amount() const { return !pay_item.empty() && gross.value_or(0) != 0; }
};

class InvoiceLines : public frame::AccountLines {
  public:
    explicit InvoiceLines(APform_invoice& form);

    void totalamt_calculate() override;

    [[nodiscard]] InvoiceLine read_line(int row) const;
    // All rows that editing has reached, lines or not.
    [[nodiscard]] std::vector<InvoiceLine> read() const;

  private:
    void dbgrid1_BeforeColUpdate(controls::CellEdit& edit) override;

    APform_invoice& form_;
};

}  // namespace brimley::invoices
