// APform_void_check: the checks of one year, of payments of every kind, and the one place where any of them
// is voided.
//
//   apform_void_check.cpp  loading, picking a check, toolbar, requests to the host
//   check_list             the list of checks
//   check_void.cpp         the void of the check picked
//   check_kinds            what the kinds of payments do differently
//
// What a void does here differs from what the payment's own form does; docs/oddities.md names the
// differences.
#pragma once

#include <string>

#include "frame/fields/vendor_fields.h"
#include "frame/grid_form.h"
#include "payments/paid_items.h"
#include "payments/payment_list_report.h"
#include "payments/void_check/check_kinds.h"
#include "payments/void_check/check_list.h"

namespace brimley::payments {

class APform_void_check : public frame::GridForm {
  public:
    APform_void_check(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel,
                      frame::Desk& desk);

    // --- controls ---
    controls::ComboBox cmbvendor{controls_, "cmbvendor", "0;1500;^;Vendor no|1;3000;<;Name"};
    controls::ComboBox cmbvendor_name{controls_, "cmbvendor_name", "0;3000;<;Vendor name|1;1500;^;No"};
    // The check picked; read only, in a pane.
    controls::Frame frame_check{controls_, "frame_check", "Check Window"};
    controls::TextField txtremit{controls_, "txtremit"};
    controls::Label label_type{controls_, "label_type", ""};
    controls::TextField txtcheck{controls_, "txtcheck"};
    controls::DateField txtcheckdate{controls_, "txtcheckdate"};
    controls::TextField txtchkamt{controls_, "txtchkamt"};
    controls::ComboBox cmbbank{controls_, "cmbbank"};
    controls::ComboBox cmbcurrency{controls_, "cmbcurrency"};
    controls::TextField txtpaymentno{controls_, "txtpaymentno"};
    controls::ComboBox cmbperiod{controls_, "cmbperiod"};
    controls::ComboBox cmbfyear{controls_, "cmbfyear"};
    // Nothing reads it: the void is dated by the clock.
    controls::DateField txtvoiddate{controls_, "txtvoiddate"};
    // Of the payment that was last voided, or could not be.
    controls::TextField txtfkey{controls_, "txtfkey"};
    controls::TextField txtglfkey{controls_, "txtglfkey"};

    void list_vendor_check() { list.list_vendor_check(cmbvendor.text()); }
    // Empties the fields; the list stays.
    void clear_box();
    // Asks, and voids the check picked in a transaction of its own. After a failure everything is as it was.
    void void_check();

    // --- requests to the host, about the row that the user is on ---
    void find_payment();
    void findAP();
    // No command reaches it: this form has no Preview.
    void create_acrobat() { report_.print_lines(kPaymentListReport, dbgrid1, txtpaymentno.text()); }

    // Read at load, and used by nothing.
    std::string prepayment_accno;

    frame::VendorFields vendor_fields{*this, cmbvendor, cmbvendor_name,
                                      frame::VendorFields::Unknown::empties_the_other};

  protected:
    void Form_Load() override;
    void init_toolbar() override;
    [[nodiscard]] bool can_do(int id) const override {
        return id != frame::command::kSave || rights().Update;
    }
    void CommandBars1_Execute(int id) override;
    [[nodiscard]] std::string current_vendor() override { return cmbvendor.text(); }

  private:
    frame::ReportPrinting report_{*this};
    CheckList list{*this, dbgrid1};
    PaidItems paid_items{*this};

    void dbgrid1_DblClick(int row);
    // Whether the stored payment is the one that was picked, and still as it was then.
    [[nodiscard]] bool is_picked(const store::Recordset& header) const;
    // These run inside the transaction of the void; false when it must not be stored.
    [[nodiscard]] bool write_void(const CheckKind& kind);
    [[nodiscard]] bool insert_GL_reverse(const CheckKind& kind);
    void update_vendor_owing_balance(const std::string& vendor_no);
    [[nodiscard]] std::string current(const char* caption) const {
        return dbgrid1.cell(dbgrid1.row(), caption);
    }
};

}  // namespace brimley::payments
