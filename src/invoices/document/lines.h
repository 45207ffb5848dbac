// The lines of the document on screen: dbgrid1 with its numbering, its totals and what is typed into it.
//
// Columns are found by caption. Amounts in cells are texts by "#,##0.00" in the document's currency. The tax
// rows of a line are tied to it by its pay item (frame/tax_grid.h), so they follow when lines are numbered.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "controls/grid.h"
#include "frame/document_part.h"
#include "frame/line_columns.h"

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

class InvoiceLines : public frame::DocumentPart {
  public:
    explicit InvoiceLines(APform_invoice& form);

    // The list of accounts below the cells; once the grid has its columns.
    void connect_drop_downs();
    void clear();
    // The lines of a stored document.
    void show(store::Recordset& lines);

    // Numbers the lines that hold an amount from 1, without gaps; their tax rows follow them.
    void get_itemno();
    void totalamt_calculate();
    void insert_line();
    void delete_line();

    [[nodiscard]] int get_column(std::string_view caption) const { return dbgrid1_.get_column(caption); }
    void get_columnx(std::string_view caption, int row, std::string_view text) {
        dbgrid1_.set_cell(row, caption, text);
    }

    // The first row is a line.
    [[nodiscard]] bool has_any() const { return !dbgrid1_.cell(0, "pay item").empty(); }
    [[nodiscard]] InvoiceLine read_line(int row) const;
    // All rows that editing has reached, lines or not.
    [[nodiscard]] std::vector<InvoiceLine> read() const;

  private:
    void dbgrid1_BeforeColEdit(const controls::CellEdit& edit);
    void dbgrid1_BeforeColUpdate(controls::CellEdit& edit);
    void dbgrid1_AfterColUpdate(int column);
    void dbgrid1_RowColChange(int old_row, int old_column);
    void ddacc_rowchange();
    [[nodiscard]] bool accepts_amount(controls::CellEdit& edit);
    [[nodiscard]] double cell_money(int row, const char* caption) const;
    [[nodiscard]] std::optional<double> money_if_given(int row, const char* caption) const;
    [[nodiscard]] bool counts_as_line(int row) const;
    // Lines were inserted or taken out: numbers, tax rows, totals and open panels follow.
    void lines_moved();

    APform_invoice& form_;
    controls::Grid& dbgrid1_;
    frame::LineColumns stored_columns_;
    int line_rows = 0;  // the highest row that editing has reached
    controls::DropDown ddacc;
};

}  // namespace brimley::invoices
