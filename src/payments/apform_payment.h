// APform_payment: payments of a vendor's open items by check, cash or card.
//
//   show.cpp          loading, modes, showing a stored payment
//   entry.cpp         defaults of a new payment; vendor, currency and rate, ways of paying
//   items.cpp         the list of the vendor's open items
//   cells.cpp         what the cells of the list do to each other, and the totals
//   save.cpp          validation, and the save in one transaction
//   lines_save.cpp    the rows of a payment's lines, and what they do to the items paid
//   posting.cpp       the GL document of a payment, and its reversal
//   void_payment.cpp  the void, and the small edit
//   matching.cpp      matching of prepayments and invoices, connected to nothing
//   commands.cpp      toolbar, and requests to the host
//
// Each row of the grid is one item of the vendor, in the item's own currency; columns are found by caption.
// An item takes pay, discount and write-off together; what they leave is its net balance. Credits of the
// vendor (prepayments) stand in the list with negative amounts.
#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "frame/document_form.h"
#include "kernel/gl_posting.h"

namespace brimley::payments {

class APform_payment : public frame::DocumentForm {
  public:
    APform_payment(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel, frame::Desk& desk);

    // --- controls ---
    controls::TextField txtid{controls_, "txtid"};
    controls::ComboBox cmbvendor{controls_, "cmbvendor", "0;1500;^;Vendor no|1;3000;<;Name"};
    controls::ComboBox cmbvendor_name{controls_, "cmbvendor_name", "0;3000;<;Vendor name|1;1500;^;No"};
    controls::TextField txtremit{controls_, "txtremit"};
    controls::DateField txtpaydate{controls_, "txtpaydate"};
    controls::ComboBox cmbpayby{controls_, "cmbpayby"};
    controls::ComboBox cmbcash{controls_, "cmbcash", "0;1500;<;Account|1;3000;<;Name"};
    controls::ComboBox cmbbank{controls_, "cmbbank", "0;1500;<;Bank code|1;3000;<;Name"};
    controls::TextField txtcheck{controls_, "txtcheck"};
    controls::DateField txtcheckdate{controls_, "txtcheckdate"};
    controls::TextField txtpayment{controls_, "txtpayment"};
    controls::TextField txtpayment_base{controls_, "txtpayment_base"};
    controls::TextField txttotal{controls_, "txttotal"};
    controls::TextField txttotal_base{controls_, "txttotal_base"};
    controls::Label label_total_currency{controls_, "label_total_currency", ""};

    // --- what hosts steer ---

    // The invoice that the user came from: it stands first in the list. Stays until the next call.
    std::string selected_docno;
    void gencode_new() override;
    void grid_newmode() override;
    void grid_editmode() override;
    // Lists the open items of the vendor afresh.
    void list_vendor_invoice(const std::string& vendor_no);

    // --- the lines ---
    void update_total_payment();
    [[nodiscard]] bool check_ifany_pay() const;
    // The colour of a row's text: credits of the vendor stand out. Nothing for the column's own.
    [[nodiscard]] std::optional<controls::Colour> dbgrid1_FetchRowStyle(int row) const;
    controls::Colour Deposit_style = 0;

    // --- the save ---

    // True when the payment was saved. Every failure has had its message, and nothing of it is left.
    [[nodiscard]] bool insert_new_record() override;
    [[nodiscard]] bool Update_record() override;
    // The GL document of what is on screen, paid from `cash_accno`; txtglfkey is its key then. This and the
    // four below run inside the caller's transaction.
    [[nodiscard]] bool insert_GL_record(const std::string& vendor_no, const std::string& cash_accno);
    [[nodiscard]] bool insert_GL_reverse();
    // Marks the prepayments among the payment's lines as applied, or as not applied again.
    void update_prepayment_status(bool is_void);
    void update_vendor_owing_balance(bool is_void);
    // The vendor's payable account; empty when there is none.
    [[nodiscard]] std::string get_apaccno(const std::string& vendor_no);

    // Tests, asks, and runs its own transaction.
    void void_payment();

    // --- requests to the host ---
    void findAP();
    void payment_history();

    // --- connected to nothing ---

    // Pairs the prepayments in the list, and this payment behind them, with the invoices, in
    // AP_matching_table. True when it ran to its end; without a transaction of its own.
    [[nodiscard]] bool matching();
    // Sets three receivables back to the amounts that they were once tried out with.
    void set_invoice();
    // Leaves only what is on due in the list, or lists everything again.
    void chkselect_click(bool on_due_only);
    // Adds the discount of a payment's line to its item.
    void update_discount_taken(const std::string& ap_docno, const std::string& pay_item, double discount);

  protected:
    void Form_Load() override;
    void init_toolbar() override;
    void initform_control() override;
    void init_grid() override;
    void execute_own(int id) override;
    [[nodiscard]] std::string doctype_of_walk() override;
    void clear_box() override;
    void assign2control(store::Recordset& header) override;
    void assign2_dbgrid1(store::Recordset& lines) override;
    [[nodiscard]] std::string edit_refusal() override;
    [[nodiscard]] bool entry_has_data() override { return !dbgrid1.cell(0, "gross amount").empty(); }
    void preview() override;
    void insert_line() override;
    void delete_line() override;
    [[nodiscard]] std::string account_of_current_line() override;
    [[nodiscard]] std::string current_vendor() override { return cmbvendor.text(); }

  private:
    // What the validation of a save has read, for the writing that follows.
    struct CheckedPayment {
        store::DateTime payment_date;
        std::optional<store::DateTime> check_date;
        std::optional<store::DateTime> rate_date;
        std::string cash_accno;  // the account to credit; empty for "Pay Later"
    };
    // What is paid of one row, in its currency.
    struct RowAmounts {
        double pay = 0, discount = 0, writeoff = 0;
        [[nodiscard]] double sum() const { return pay + discount + writeoff; }
        [[nodiscard]] bool any() const { return pay != 0 || discount != 0 || writeoff != 0; }
    };
    struct PaidRow {
        int row;
        RowAmounts amounts;
    };
    struct Listing;

    // entry.cpp
    void connect_handlers();
    [[nodiscard]] controls::ComboBox::Source rows_of(const char* query, const char* first,
                                                     const char* second);
    [[nodiscard]] std::vector<controls::ComboBox::Row> ways_of_paying();
    void cmbvendor_ItemSelect();
    void cmbvendor_name_ItemSelect();
    void vendor_chosen();
    void txtpaydate_change() { take_period_of(txtpaydate); }
    void cmbpayby_ItemSelect();
    void cmbcurrency_itemselect();
    void cmbexrate_itemselect();
    void show_bank_for_payby();
    void take_vendor_name_and_currency();

    // items.cpp
    void clear_lines();
    void take_out_row(int row);
    void add_open_items(store::Recordset& items);
    void add_open_item(const store::Recordset& item, Listing& listing, bool came_from);
    [[nodiscard]] double discount_offer(const store::Recordset& item, bool came_from, store::DateTime today);
    [[nodiscard]] std::string prepay_account(const std::string& fkey);

    // cells.cpp
    void dbgrid1_BeforeColUpdate(controls::CellEdit& edit);
    void dbgrid1_AfterColUpdate(int column);
    void empty_pay_amount(int row);
    void enter_pay_amount(int row);
    void take_payment_rate(int row);
    enum class Ties { to_even, as_shown };
    void update_base_amount(int row, Ties ties);
    [[nodiscard]] double cell_money(int row, const char* caption) const;
    void set_cell_money(int row, const char* caption, double amount);
    [[nodiscard]] bool row_is_foreign(int row) const;
    [[nodiscard]] RowAmounts amounts_of(int row) const;
    // The rows of which anything is paid, discounted or written off, in the order of the list.
    [[nodiscard]] std::vector<PaidRow> paid_rows() const;
    void touch(int row);
    [[nodiscard]] bool touched(int row) const {
        return row < static_cast<int>(touched_rows.size()) && touched_rows[static_cast<std::size_t>(row)];
    }

    // save.cpp
    [[nodiscard]] std::optional<CheckedPayment> validate_new();
    [[nodiscard]] bool validate_amount();
    [[nodiscard]] bool validate_lines();
    [[nodiscard]] bool validate_rate(CheckedPayment& payment);
    // A number above nothing, as a rate must be.
    [[nodiscard]] static bool is_rate(const std::string& text);
    [[nodiscard]] bool validate_way_of_paying(CheckedPayment& payment);
    [[nodiscard]] bool validate_check(CheckedPayment& payment);
    [[nodiscard]] bool find_account_to_credit(CheckedPayment& payment);
    [[nodiscard]] bool validate_period();
    void compute_payment_base();
    [[nodiscard]] bool write_new_payment(const CheckedPayment& payment);
    void fill_header(store::Recordset& header, const CheckedPayment& payment);

    // lines_save.cpp
    [[nodiscard]] bool write_lines(const store::Recordset& header);
    void fill_line(store::Recordset& lines, const store::Recordset& header, const PaidRow& paid);
    [[nodiscard]] bool is_as_listed(const store::Recordset& item, int row) const;
    [[nodiscard]] bool pay_item(const PaidRow& paid);
    void mark_paid_document(const store::Recordset& item);

    // posting.cpp
    [[nodiscard]] bool gather_row(kernel::GlPosting& posting, const PaidRow& paid,
                                  const std::string& ap_accno, const std::string& cash_accno);
    [[nodiscard]] bool account_given(const std::string& accno, const char* what);

    // void_payment.cpp
    [[nodiscard]] bool may_void();
    [[nodiscard]] bool write_void();
    void give_back_lines();
    struct PaidDocument {
        std::string fkey, source_docno;
    };
    void give_back_line(const store::Recordset& line, PaidDocument& document);
    void reopen_document(const PaidDocument& document);
    [[nodiscard]] bool write_edit(const std::optional<store::DateTime>& check_date);
    [[nodiscard]] store::Recordset stored_header();

    // matching.cpp
    class Matching;

    int last_row = -1;  // of the list
    // The rows in which anything was entered: of a long list few are paid, and only these are looked at.
    std::vector<bool> touched_rows;
    controls::DropDown dd1, dd2;
    std::string default_discount_accno, default_writeoff_accno;
};

}  // namespace brimley::payments
