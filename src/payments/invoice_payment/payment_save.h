// The save of a new payment: its checks, header and lines, the items and prepayments paid, the vendor.
#pragma once

#include <string>
#include <vector>

#include "frame/document_save.h"
#include "payments/invoice_payment/item_list.h"
#include "payments/payment_dates.h"

namespace brimley::payments {

class APform_payment;

class PaymentSave : public frame::DocumentSave {
  public:
    explicit PaymentSave(APform_payment& form);

    // A number greater than zero, as a rate must be.
    [[nodiscard]] static bool is_rate(const std::string& text);

  protected:
    [[nodiscard]] bool validate() override;
    void set_doctype() override;
    [[nodiscard]] kernel::ModuleG3::TooLongMessage too_long_message() const override {
        return kernel::ModuleG3::TooLongMessage::number_first;
    }
    void fill_header(store::Recordset& header) override;
    [[nodiscard]] bool write_lines(store::Recordset& header) override;
    [[nodiscard]] bool post() override;
    void report_success() override;
    [[nodiscard]] std::string failure_message() const override { return "Add new payment failed"; }

  private:
    // What the validation has read, for the writing that follows.
    struct Checked {
        PaymentDates dates;
        std::string cash_accno;  // the account to credit; empty for "Pay Later"
    };
    [[nodiscard]] bool validate_amount();
    [[nodiscard]] bool validate_lines();
    [[nodiscard]] bool validate_rate();
    [[nodiscard]] bool validate_way_of_paying();
    [[nodiscard]] bool validate_check();
    [[nodiscard]] bool find_account_to_credit();
    void compute_payment_base();
    void fill_line(store::Recordset& lines, const store::Recordset& header, const ListedItem& item);

    APform_payment& form_;
    Checked checked_;
    std::vector<ListedItem> items_;  // what is paid
};

}  // namespace brimley::payments
