// APform_misc_payment: expenses that are paid directly, without an invoice and without a vendor.
//
//   apform_misc_payment.cpp  loading, a new payment, showing a stored one, toolbar
//   misc_lines               the lines in the grid: what is typed, numbers, taxes, total
//   misc_save                validation and the save in one transaction
//   misc_posting             the GL document of a payment
//
// The panels of the taxes are there and stay out of sight: the form has no command for them. What all kinds
// of payments share is in payments/payment_form.h.
#pragma once

#include <string>
#include <vector>

#include "frame/tax_grid.h"
#include "payments/misc/misc_lines.h"
#include "payments/misc/misc_posting.h"
#include "payments/misc/misc_save.h"
#include "payments/payment_form.h"

namespace brimley::payments {

class APform_misc_payment : public PaymentForm {
  public:
    APform_misc_payment(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel,
                        frame::Desk& desk);

    // --- controls ---
    controls::TextField txttotal{controls_, "txttotal"};

    // Read while the form loads, and not used.
    std::string default_discount_accno;

    // --- parts ---
    frame::TaxGrid taxes;
    MiscLines lines{*this};
    MiscPosting posting{*this};
    MiscSave save{*this};

    // True when the payment was saved. Every failure has had its message, and nothing of it is left.
    [[nodiscard]] bool insert_new_record() override { return save.insert_new_record(); }

  protected:
    void Form_Load() override;
    void init_toolbar() override;
    void initform_control() override;
    void init_grid() override;
    [[nodiscard]] std::vector<controls::Grid*> grids() override {
        return {&dbgrid1, &taxes.grid_tax, &taxes.grid_tax_summary};
    }
    void clear_box() override;
    void assign2control(store::Recordset& header) override;
    void assign2_dbgrid1(store::Recordset& rows) override { lines.show(rows); }
    [[nodiscard]] bool entry_has_data() override { return !dbgrid1.cell(0, "amount").empty(); }
    [[nodiscard]] std::vector<controls::Control*> computed_fields() override { return {&txttotal}; }
    void begin_entry() override { txttotal.set("0.00"); }
};

}  // namespace brimley::payments
