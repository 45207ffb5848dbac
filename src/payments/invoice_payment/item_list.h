// The list of a payment: the vendor's open items, or the lines of a stored payment, in dbgrid1.
//
// Each row is one item, in the item's own currency; columns are found by caption. What is typed into a row
// moves its other cells and the totals of the form. An item takes pay, discount and write-off together; what
// they leave is its net balance. Credits of the vendor (prepayments) stand in the list with negative amounts.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "controls/grid.h"
#include "frame/document_part.h"
#include "frame/line_columns.h"
#include "payments/paid_items.h"

namespace brimley::payments {

class APform_payment;

// A row of which something is paid, read once for the save and the ledger. Amounts are in `currency`,
// "#,##0.00" texts of cells no more.
struct ListedItem {
    std::string docno, pay_item, doctype, invoice_no;
    std::optional<store::DateTime> invoice_date;
    double gross = 0, open = 0;
    ItemAmounts amounts;
    double discount_available = 0, net_balance = 0;
    std::string discount_accno, writeoff_accno, prepay_accno;
    std::string currency;
    bool in_base = true;
    double invoice_rate = 1;
    std::string payment_rate_text;  // as it stands in the cell
    double pay_base = 0;

    [[nodiscard]] bool is_prepayment() const { return doctype == "pp"; }
};

class ItemList : public frame::DocumentPart {
  public:
    explicit ItemList(APform_payment& form);

    // The lists of accounts below the cells; once the grid has its columns.
    void connect_drop_downs();
    void clear();
    void list_vendor_invoice(const std::string& vendor_no);
    void show_stored(store::Recordset& lines);
    void insert_line();
    void delete_line();
    void keep_what_is_on_due();

    void update_total_payment();
    // Anything is paid, discounted or written off.
    [[nodiscard]] bool check_ifany_pay() const;
    // The rows of which anything is, in the order of the list.
    [[nodiscard]] std::vector<ListedItem> paid() const;
    // Whose items are listed: another vendor may have been typed over them since.
    [[nodiscard]] const std::string& vendor_no() const { return vendor_no_; }
    // All rows' pay, discount and write-off, in their own currencies, added up as they are.
    [[nodiscard]] double sum_paid() const;
    // The row that the user is on, as it stands.
    [[nodiscard]] std::string current(const char* caption) const;
    // The colour of a row's text: credits of the vendor stand out. Empty for the column's own.
    [[nodiscard]] std::optional<controls::Colour> dbgrid1_FetchRowStyle(int row) const;

  private:
    struct Listing;

    // item_list.cpp
    void take_out_row(int row);
    void add_open_items(store::Recordset& items);
    void add_open_item(const store::Recordset& item, Listing& listing, bool came_from);
    [[nodiscard]] static double discount_offer(const store::Recordset& item, bool came_from,
                                               store::DateTime today);
    [[nodiscard]] std::string prepay_account(const std::string& fkey);

    // item_cells.cpp
    void dbgrid1_BeforeColUpdate(controls::CellEdit& edit);
    void dbgrid1_AfterColUpdate(int column);
    void dbgrid1_RowColChange(int old_column);
    void empty_pay_amount(int row);
    void enter_pay_amount(int row);
    void take_payment_rate(int row);
    enum class Ties { to_even, as_shown };
    void update_base_amount(int row, Ties ties);
    [[nodiscard]] double cell_money(int row, const char* caption) const;
    void set_cell_money(int row, const char* caption, double amount);
    [[nodiscard]] bool row_is_foreign(int row) const;
    [[nodiscard]] ItemAmounts amounts_of(int row) const;
    [[nodiscard]] ListedItem read_row(int row, const ItemAmounts& amounts) const;
    void touch(int row);
    [[nodiscard]] bool touched(int row) const {
        return row < static_cast<int>(touched_rows_.size()) && touched_rows_[static_cast<std::size_t>(row)];
    }

    APform_payment& form_;
    controls::Grid& dbgrid1_;
    frame::LineColumns stored_columns_;
    std::string vendor_no_;  // whose items are listed
    int last_row_ = -1;      // of the list
    // The rows in which anything was entered: of a long list few are paid, and only these are looked at.
    std::vector<bool> touched_rows_;
    controls::DropDown dd1, dd2;
};

}  // namespace brimley::payments
