// The rows of REVALUATION RESULT: items by vendor, the sums after each vendor's items, and the summary below.
//
// One object serves one list of items, those of a selection row or those of a stored run. Rows count on from
// one selection row to the next.
#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>

#include "frame/line_columns.h"

namespace brimley::revaluation {

// Of an item, or of several added up.
struct ItemAmounts {
    double invoice = 0;        // what is open, in the item's currency
    double original_base = 0;  // base currency, as the three below
    double gain = 0;           // a loss is negative
    double new_base = 0;

    void add(const ItemAmounts& item);
};

class ResultRows : public frame::FormPart {
  public:
    static constexpr std::size_t kCurrencyColumn = 3;
    // `columns`: those of the items that are shown as they are stored, the currency at kCurrencyColumn; must
    // outlive this. The amounts of items in `currency` are added to `totals` as they are shown.
    ResultRows(frame::Form& form, controls::Grid& grid, std::span<const frame::LineColumn> columns,
               const store::Recordset& items, int first_row, std::string currency, ItemAmounts& totals);

    // The next free row.
    [[nodiscard]] int row() const { return row_; }
    // Ends the vendor before, and writes number and name into the row of this vendor's first item.
    void begin_vendor(const std::string& vendor_no, const std::string& vendor_name);
    // The vendor of the rows at the moment; empty before the first.
    [[nodiscard]] const std::string& vendor_no() const { return vendor_no_; }
    // The current item.
    void add(const store::Recordset& item, const ItemAmounts& amounts);
    // The row "Total", whose sums are those of the last vendor alone.
    void end(const std::string& rate);

  private:
    static constexpr std::size_t kSums = 4;

    void show_sums();
    void set(int column, std::string_view text) { grid_.array.set(row_, column, text); }

    controls::Grid& grid_;
    frame::LineColumns columns_;
    int vendor_no_column_;
    int vendor_name_column_;
    int currency_column_;
    std::array<int, kSums> sum_columns_;
    std::array<std::string, kSums> texts_;  // of the row that is being shown
    int row_;
    bool first_of_vendor_ = false;
    std::string vendor_no_;
    std::string vendor_name_;
    ItemAmounts sums_;  // of the vendor
    const std::string currency_;
    ItemAmounts& totals_;
};

// The summary below the items, which end before `row`: after an empty row its heading and a row with the
// totals in the currency; without a currency the heading alone.
void show_summary(controls::Grid& grid, int row, std::string_view currency, const ItemAmounts& totals);

}  // namespace brimley::revaluation
