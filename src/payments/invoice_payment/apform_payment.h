// APform_payment: payments of a vendor's open items by check, cash or card.
//
//   apform_payment.cpp  loading, a new payment, showing a stored one, and what its void gives back
//   item_list           the vendor's open items: the list and its totals
//   item_cells.cpp      what is typed into a row of the list, and what follows in its other cells
//   payment_save        the checks, and the save in one transaction
//   payment_posting     what a payment posts
//   matching.cpp        matching of prepayments and invoices, never called
//   commands.cpp        toolbar, and requests to the host
//
// Modes, void and edit are those of every payment (payments/payment_form.h), and so is the reversal
// (payments/payment_ledger.h). What a payment does to the items that it pays is in payments/paid_items.h.
// Each row of the grid is one item of the vendor, in the item's own currency.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "frame/fields/vendor_fields.h"
#include "payments/invoice_payment/item_list.h"
#include "payments/invoice_payment/payment_posting.h"
#include "payments/invoice_payment/payment_save.h"
#include "payments/paid_items.h"
#include "payments/payment_form.h"

namespace brimley::payments {

class APform_payment : public PaymentForm {
  public:
    APform_payment(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel, frame::Desk& desk);

    // --- controls ---
    controls::TextField txtid{controls_, "txtid"};
    controls::ComboBox cmbvendor{controls_, "cmbvendor", "0;1500;^;Vendor no|1;3000;<;Name"};
    controls::ComboBox cmbvendor_name{controls_, "cmbvendor_name", "0;3000;<;Vendor name|1;1500;^;No"};
    controls::TextField txtpayment{controls_, "txtpayment"};
    controls::TextField txtpayment_base{controls_, "txtpayment_base"};
    controls::TextField txttotal{controls_, "txttotal"};
    controls::TextField txttotal_base{controls_, "txttotal_base"};
    controls::Label label_total_currency{controls_, "label_total_currency", ""};

    // --- what hosts steer ---

    // The invoice that the user came from: it stands first in the list. Stays until the next call.
    std::string selected_docno;
    void gencode_new() override;
    // Lists the open items of the vendor afresh.
    void list_vendor_invoice(const std::string& vendor_no);

    // The colour of the credits of the vendor, which stand out in the list.
    controls::Colour Deposit_style = 0;
    std::string default_discount_accno, default_writeoff_accno;

    // --- the save ---

    // True when the payment was saved. Every failure has had its message, and nothing of it is left.
    [[nodiscard]] bool insert_new_record() override { return save.insert_new_record(); }
    // What is paid lowers what the vendor is owed; a void brings it back.
    // Inside the caller's transaction.
    void update_vendor_owing_balance(bool is_void);
    // The vendor's payable account; empty when there is none.
    [[nodiscard]] std::string get_apaccno(const std::string& vendor_no);

    // --- requests to the host ---
    void findAP();
    void payment_history();

    // --- never called ---

    // Pairs the prepayments in the list, and this payment after them, with the invoices, in
    // AP_matching_table. True when it ran to its end; without a transaction of its own.
    [[nodiscard]] bool matching();
    // Sets three receivables back to the amounts that they were once tried out with.
    void set_invoice();
    // Leaves only the rows that are "on due" in the list, or lists everything again.
    void chkselect_click(bool on_due_only);
    // Adds the discount of a payment's line to its item.
    void update_discount_taken(const std::string& ap_docno, const std::string& pay_item, double discount);

    frame::VendorFields vendor_fields{*this, cmbvendor, cmbvendor_name,
                                      frame::VendorFields::Unknown::empties_the_other};
    ItemList items{*this};
    PaidItems paid_items{*this};
    PaymentPosting posting{*this};
    PaymentSave save{*this};

  protected:
    void Form_Load() override;
    void init_toolbar() override;
    void initform_control() override;
    void init_grid() override;
    void execute_own(int id) override;
    void clear_box() override;
    void assign2control(store::Recordset& header) override;
    void assign2_dbgrid1(store::Recordset& lines) override { items.show_stored(lines); }
    [[nodiscard]] bool entry_has_data() override { return !dbgrid1.cell(0, "gross amount").empty(); }
    [[nodiscard]] std::vector<controls::Control*> computed_fields() override {
        return {&txtpayment_base, &txttotal, &txttotal_base};
    }
    [[nodiscard]] std::vector<controls::ComboBox*> kept_fields() override {
        return {&cmbvendor, &cmbvendor_name};
    }
    void begin_entry() override;
    void give_back(const store::Recordset& header) override;
    void give_back_balances(const store::Recordset& header) override;
    // An unknown vendor must not keep the payment from being printed.
    [[nodiscard]] bool prints_vendor() override { return !cmbvendor_name.empty(); }
    void insert_line() override { items.insert_line(); }
    void delete_line() override { items.delete_line(); }
    [[nodiscard]] std::string account_of_current_line() override;
    [[nodiscard]] std::string current_vendor() override { return cmbvendor.text(); }

  private:
    void vendor_chosen();
};

}  // namespace brimley::payments
