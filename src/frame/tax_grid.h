// The taxes of a form's lines: the tax engine (kernel/tax_engine.h) on the grid of the lines, the panels that
// show the result, and the tax elements that a stored line holds.
//
//   the form's lines          tax_rows                     panels
//   amount, code     ----->   one row an authority  ----->  grid_tax: the current line, by authority
//   tax, net amount  <-----   of a line             ----->  grid_tax_summary: all lines, by authority
//                                   ^                           | a rate or a tax is changed by hand
//                                   +---------------------------+
//
// A form hands over its grid and what its columns, fields and texts are called (TaxedLines). It numbers its
// lines, because their tax rows are tied to them by the pay item, and says when a cell of a line has changed.
// Tax rows are written to the line's row and read from it inside the caller's transaction, if there is one;
// what the store refuses is thrown.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "controls/fields.h"
#include "controls/grid.h"
#include "frame/form_part.h"
#include "kernel/tax_engine.h"

namespace brimley::frame {

// The names of a form's columns, fields and texts for its taxes; one constant per form. Null: it has no such
// column.
struct TaxedLines {
    // --- captions of its grid ---
    const char* pay_item;
    const char* tax_code;
    const char* tax_amount;
    const char* amount;                   // of the line, the tax in it
    const char* net_amount;               // of the line, without its tax
    const char* open_amount = nullptr;    // follows the amount when that is computed
    const char* allocated_tax = nullptr;  // the part of the tax in the cost
    // A check box: whether the amount has the tax in it. Where it is off amount and net amount are the same,
    // and the tax comes on top. Without the column every amount has its tax in it.
    const char* tax_included = nullptr;

    // --- fields of a stored line: the amount from which its taxes were computed ---
    const char* stored_amount;      // if it includes the tax
    const char* stored_net_amount;  // if it does not

    // The words before the pay item of a line without tax elements.
    const char* no_element;
};

class TaxGrid : public FormPart {
  public:
    // `taxed` must outlive this: a constant.
    TaxGrid(Form& form, controls::Grid& lines, const TaxedLines& taxed);

    [[nodiscard]] const TaxedLines& names() const { return taxed_; }

    controls::Frame frame_tax;
    controls::Grid grid_tax;
    controls::Frame frame_tax_summary;
    controls::Grid grid_tax_summary;

    // All tax rows of the document on screen.
    kernel::TaxRows tax_rows;
    // After the amounts of a line were computed: the form's totals follow.
    std::function<void()> on_computed;

    // The list below the cells of the tax code; once the grid has its columns.
    void connect_drop_down();
    void clear();
    void set_editable(bool editable) { grid_tax.allow_update = editable; }

    // --- lines ---

    // What a change of this cell means to the line's taxes; empty when they do not depend on it.
    [[nodiscard]] std::optional<kernel::TaxMode> mode_of(std::string_view caption) const;
    // Computes the line's tax rows and cells after such a change.
    void tax_calculate_from_xarray(int row, kernel::TaxMode mode);
    // False, after its message, for a tax code that is not in the list. The list is the whole of
    // Tax_code_table, whatever the transaction type; no code at all is no fault.
    [[nodiscard]] bool accepts_tax_code(const std::string& tax_code) const;

    // --- stored lines ---

    // Adds the tax elements of a stored line. Lines without fields for them have none.
    void load(const store::Recordset& line);
    // Writes the first five tax elements of the pay item into a line that is being added. False, after its
    // message, when there is none.
    [[nodiscard]] bool store(store::Recordset& line, const std::string& pay_item);

    // --- panels ---

    void display_tax_details();
    void display_tax_summary();
    void mnutax_summary_click() { display_tax_summary(); }
    void get_tax_itemno(const std::string& pay_item);
    void get_tax_summary();
    // What the open panels show of the current line and of the document.
    void refresh_panels();
    // Another document is on screen.
    void document_changed();

  private:
    [[nodiscard]] static const char* check_text(bool flag) { return flag ? "True" : "False"; }
    // What a check cell may hold for "yes".
    [[nodiscard]] static bool is_checked(std::string_view text) { return store::Value(text).flag(); }
    [[nodiscard]] std::string cell(int row, const char* caption) const;
    void set_cell_money(int row, const char* caption, double amount);
    [[nodiscard]] bool amount_includes_tax(int row) const;
    [[nodiscard]] std::optional<kernel::TaxTotals> compute(int row, double amount, kernel::TaxMode formula);
    void write_line_amounts(int row, kernel::TaxMode mode, double amount, const kernel::TaxTotals& totals);
    [[nodiscard]] int row_of_item(const std::string& pay_item) const;

    void grid_tax_BeforeColUpdate(controls::CellEdit& edit);
    void grid_tax_AfterColUpdate(int column);
    void change_rate(int row);
    void change_tax(int row);
    void take_element_from_panel(int row, const std::string& changed_cell);

    controls::Grid& lines_;
    const TaxedLines& taxed_;
    controls::DropDown ddtax;
};

}  // namespace brimley::frame
