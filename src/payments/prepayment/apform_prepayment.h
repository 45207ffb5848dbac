// APform_prepayment: money paid to a vendor before there is an invoice.
//
//   apform_prepayment.cpp  loading, showing, the checks of a save, the GL document, void, requests to the
//   host prepayment_save        the save in one transaction prepayment_edit        the edit of a saved
//   prepayment
//
// A prepayment stands as an item with a negative amount among the vendor's open items, where a payment
// applies it to invoices (payments/paid_items.h). Until then it may wait for the bill of a purchase order
// (Prepayment_waiting_PO_table).
#pragma once

#include <optional>
#include <string>

#include "frame/fields/vendor_fields.h"
#include "frame/line_columns.h"
#include "payments/payment_form.h"
#include "payments/prepayment/prepayment_edit.h"
#include "payments/prepayment/prepayment_save.h"

namespace brimley::payments {

// Why an applied prepayment can be neither edited nor voided.
inline constexpr const char* kPrepaymentWasApplied = "Prepayment was applied to invoiced.";

class APform_prepayment : public PaymentForm {
  public:
    APform_prepayment(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel,
                      frame::Desk& desk);

    // --- controls ---
    controls::ComboBox cmbvendor{controls_, "cmbvendor", "0;1500;^;Vendor no|1;3000;<;Name"};
    controls::ComboBox cmbvendor_name{controls_, "cmbvendor_name", "0;3000;<;Vendor name|1;1500;^;No"};
    controls::TextField txtprepay{controls_, "txtprepay"};
    controls::ComboBox cmbpono{controls_, "cmbpono"};
    controls::CheckBox chkinvoiced{controls_, "chkinvoiced", "Applied to Bill"};

    // --- what hosts steer ---
    void grid_newmode() override;
    void grid_editmode() override;

    // The open purchase orders of the vendor on screen, newest first, below a blank.
    void list_open_po();
    // The order that was chosen; empty for the blank.
    [[nodiscard]] std::string purchase_order() const;
    // As on screen, in the prepayment's currency, to the cent.
    [[nodiscard]] double amount() const;

    // --- the save ---

    // True when the prepayment was saved. Every failure has had its message, and nothing of it is left.
    [[nodiscard]] bool insert_new_record() override { return save.insert_new_record(); }
    [[nodiscard]] bool Update_record() override { return edit.Update_record(); }
    // The checks of a save; false after their message.
    [[nodiscard]] bool check_entry(PaymentChecks& checks, const WayOfPayingRules& rules);

    // The four below run inside the caller's transaction.

    // The GL document of what is on screen, from or onto the account of the way of paying; afterwards
    // txtglfkey is its key. False after its message, if there is one.
    [[nodiscard]] bool insert_GL_record(const std::string& vendor_no, const std::string& cash_accno);
    // Writes anew for which order the prepayment waits; without an order it waits for none.
    void insert_Prepayment_waiting_PO(const std::string& po_no, double amount);
    // A prepayment lowers what the vendor is owed; its void brings that back.
    void update_vendor_owing_balance(const std::string& vendor_no, double change);
    // The vendor's own account for prepayments, or else the company's. Empty when there is no such vendor.
    [[nodiscard]] std::optional<std::string> get_prepayment_accno(const std::string& vendor_no);
    // The one that the checks have found.
    [[nodiscard]] const std::string& prepayment_accno() const { return prepayment_accno_; }

    // --- requests to the host ---
    void findAP();
    using DocumentForm::origin_doc;

    frame::VendorFields vendor_fields{*this, cmbvendor, cmbvendor_name,
                                      frame::VendorFields::Unknown::empties_the_other};
    PrepaymentSave save{*this};
    PrepaymentEdit edit{*this};

  protected:
    void Form_Load() override;
    void init_toolbar() override;
    void initform_control() override;
    void execute_own(int id) override;
    void clear_box() override;
    void assign2control(store::Recordset& header) override;
    void assign2_dbgrid1(store::Recordset& payments) override;
    [[nodiscard]] std::optional<store::Recordset> other_lines() override;
    [[nodiscard]] bool entry_has_data() override { return !cmbvendor.empty() || amount() != 0; }
    [[nodiscard]] std::vector<controls::ComboBox*> kept_fields() override {
        return {&cmbvendor, &cmbvendor_name};
    }
    void begin_entry() override;
    [[nodiscard]] std::string edit_refusal() override;
    [[nodiscard]] bool may_be_voided() override;
    [[nodiscard]] bool may_still_be_voided(const store::Recordset& header) override;
    [[nodiscard]] bool may_still_be_edited(const store::Recordset& header) override;
    void give_back_balances(const store::Recordset& header) override;
    [[nodiscard]] bool prints_vendor() override { return !cmbvendor_name.empty(); }

  private:
    void vendor_chosen();
    [[nodiscard]] bool is_applied_in_part(const std::string& fkey);

    std::string default_prepayment_accno_, prepayment_accno_;
    frame::LineColumns applied_by_;
};

}  // namespace brimley::payments
