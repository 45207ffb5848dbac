// The tax engine: expands a line's tax code into its authorities and computes and splits the tax of each.
//
// One algorithm for every document that carries tax. It works on the rows of a document in memory (TaxRows);
// nothing reaches the tables here. Amounts are in the document's currency. Round is half-to-even at two
// places and happens exactly where a step says so.
//
// Entering the gross amount divides the tax out of it, entering the taxable amount adds the tax on top. With
// tax on tax the two are not inverses of each other, on purpose, and no correction is attempted.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kernel/module_g3.h"

namespace brimley::kernel {

// One authority's tax on one line. Amounts are texts by "#,##0.00", as the grids show them and the save reads
// them.
struct TaxRow {
    std::string sequence;  // "1" to "5" and beyond, within the line
    std::string authority;
    std::string taxable_amount;
    double rate = 0;  // percent
    std::string tax_amount;
    bool taxable = false;  // its tax joins the base of the authorities after it
    std::string pay_item;  // the tie to the line
    std::string tax_code;
    std::string include_tax;        // of a stored line; empty on rows built by the engine
    double percent_refund = 0;      // percent of the tax that is recoverable
    bool include_itemcost = false;  // the rest goes into the item's cost instead of the expense account
    std::string allocated;
    std::string recoverable;
    std::string expensed;
    std::string line_amount;  // the amount of the line from which the row was computed
};

// The cell of the line that changed.
enum class TaxMode { gross_amount, taxable_amount, tax_code };

struct TaxTotals {
    double tax = 0;
    double allocated = 0;
};

// How one authority's tax divides.
struct TaxSplit {
    double recoverable = 0;
    double allocated = 0;
    double expensed = 0;
};
[[nodiscard]] TaxSplit split_tax(double tax, double percent_refund, bool include_itemcost);

// The tax of one authority. `base` is the tax of earlier authorities that this one taxes too. In mode
// tax_code it is 0.
[[nodiscard]] double compute_tax(TaxMode mode, double amount, double base, double rate);

// The authorities of a purchase tax code in the order of their items: how each divides its tax, with the
// rate, limits and accounts of the authority.
[[nodiscard]] store::Recordset authorities_of(ModuleG3& kernel, std::string_view tax_code);
// The tax as the limits of the authority's row leave it. Null and 0 mean that there is no limit.
[[nodiscard]] double within_limits(double tax, const store::Recordset& authority);

// Divides a later tax of the row as its code and authority say today. A code that is gone changes nothing.
void take_shares_of_code(ModuleG3& kernel, TaxRow& row);

// All authority rows of one document, the rows of a line together in the order of their sequence.
class TaxRows {
  public:
    [[nodiscard]] const std::vector<TaxRow>& all() const { return rows_; }
    [[nodiscard]] std::vector<TaxRow>& all() { return rows_; }
    [[nodiscard]] std::vector<TaxRow*> of_item(std::string_view pay_item);
    // The row of a line with this sequence, or null.
    [[nodiscard]] TaxRow* find(std::string_view pay_item, std::string_view sequence);
    void clear() { rows_.clear(); }
    void remove_item(std::string_view pay_item);
    // After the lines were numbered afresh: `new_number` gives a line's new number for its old one, empty
    // when the line has none now.
    template <class NewNumber>
    void renumber(NewNumber new_number) {
        for (TaxRow& row : rows_)
            row.pay_item = new_number(row.pay_item);
        remove_item("");
    }

    // Computes the line's rows afresh from what they hold. Limits are not applied here.
    [[nodiscard]] TaxTotals recompute(std::string_view pay_item, double amount, TaxMode mode);
    // Builds the line's rows from the code's authorities. Limits apply.
    [[nodiscard]] TaxTotals rebuild(ModuleG3& kernel, std::string_view pay_item, std::string_view tax_code,
                                    double amount, TaxMode mode);

  private:
    std::vector<TaxRow> rows_;
};

// The default purchase tax code; empty, after its message, when none is set.
[[nodiscard]] std::optional<std::string> default_purchase_tax_code(ModuleG3& kernel);

// The totals of a document by authority, in order of first appearance.
struct AuthorityTotals {
    std::string authority;
    double tax = 0;
    double tax_of_new_rows = 0;     // rows built by the engine
    double tax_of_stored_rows = 0;  // rows of stored lines
    TaxSplit split;
};
void store_tax(std::vector<AuthorityTotals>& totals, const TaxRow& row);

}  // namespace brimley::kernel
