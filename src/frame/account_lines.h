// The lines of a document that charge an account each and carry taxes: dbgrid1 with its numbering, its lists
// of accounts and tax codes, and what happens when a cell was typed.
//
// Columns are found by caption. Amounts in cells are texts by "#,##0.00" in the document's currency. The tax
// rows of a line are tied to it by its pay item (frame/tax_grid.h), so they follow when lines are numbered.
// What a form accepts in a cell, adds up and reads of a line is its own class, derived from this one.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "controls/grid.h"
#include "frame/document_part.h"
#include "frame/line_columns.h"
#include "frame/tax_grid.h"

namespace brimley::frame {

class AccountLines : public DocumentPart {
  public:
    virtual ~AccountLines() = default;

    // The lists of accounts and tax codes below the cells; once the grid has its columns.
    void connect_drop_downs();
    void clear();
    // The lines of a stored document.
    void show(store::Recordset& lines);

    // Numbers the lines that hold an amount from 1, without gaps; their tax rows follow them.
    void get_itemno();
    void insert_line();
    void delete_line();
    virtual void totalamt_calculate() = 0;

    [[nodiscard]] int get_column(std::string_view caption) const { return dbgrid1_.get_column(caption); }
    void get_columnx(std::string_view caption, int row, std::string_view text) {
        dbgrid1_.set_cell(row, caption, text);
    }

    // The first row is a line.
    [[nodiscard]] bool has_any() const { return !cell(0, taxed_.pay_item).empty(); }

  protected:
    // The caption of the column with the account, and its field in a stored line.
    struct AccountColumn {
        const char* caption;
        const char* field;
    };
    // `columns` must outlive this: a table of constants.
    AccountLines(DocumentForm& form, TaxGrid& taxes, const AccountColumn& account,
                 std::span<const LineColumn> columns);

    // --- variable points ---

    // May cancel what was typed, or write it in another way.
    virtual void dbgrid1_BeforeColUpdate(controls::CellEdit& edit) = 0;
    // After a change was computed.
    virtual void cell_was_changed(int /*row*/, std::string_view /*caption*/) {}
    // A stored line was put into the row: columns that are not stored follow from the others.
    virtual void line_was_shown(int /*row*/) {}

    // --- reading and writing cells ---

    [[nodiscard]] std::string cell(int row, const char* caption) const { return dbgrid1_.cell(row, caption); }
    void set_cell(int row, const char* caption, std::string_view text) {
        dbgrid1_.set_cell(row, caption, text);
    }
    [[nodiscard]] double cell_money(int row, const char* caption) const;
    // Empty when the cell is.
    [[nodiscard]] std::optional<double> money_if_given(int row, const char* caption) const;
    // The highest row that editing has reached.
    [[nodiscard]] int last_row() const { return line_rows; }
    // False, after its message, for a text that is no number. A number is written as money, unless that would
    // lose digits that were typed.
    [[nodiscard]] bool accepts_amount(controls::CellEdit& edit);

  private:
    void dbgrid1_BeforeColEdit(const controls::CellEdit& edit);
    void dbgrid1_AfterColUpdate(int column);
    void dbgrid1_RowColChange(int old_row, int old_column);
    void ddacc_rowchange();
    [[nodiscard]] bool counts_as_line(int row) const;
    // Lines were inserted or taken out: numbers, tax rows, totals and open panels follow.
    void lines_moved();

    DocumentForm& form_;
    controls::Grid& dbgrid1_;
    TaxGrid& taxes_;
    const TaxedLines& taxed_;
    const AccountColumn account_;
    LineColumns stored_columns_;
    int line_rows = 0;
    controls::DropDown ddacc;
};

}  // namespace brimley::frame
