// The save of a new payment: its checks, header and lines, the items and prepayments paid, the vendor.
#pragma once

#include <string>
#include <vector>

#include "payments/invoice_payment/item_list.h"
#include "payments/new_payment.h"

namespace brimley::payments {

class APform_payment;

class PaymentSave : public NewPayment {
  public:
    explicit PaymentSave(APform_payment& form);

  protected:
    [[nodiscard]] bool validate() override;
    void fill_header(store::Recordset& header) override;
    [[nodiscard]] bool write_lines(store::Recordset& header) override;
    [[nodiscard]] bool post() override;

  private:
    [[nodiscard]] bool validate_amount();
    [[nodiscard]] bool validate_lines();
    [[nodiscard]] bool validate_way_of_paying();
    [[nodiscard]] bool validate_check();
    [[nodiscard]] bool find_account_to_credit();
    void compute_payment_base();
    void fill_line(store::Recordset& lines, const store::Recordset& header, const ListedItem& item);

    APform_payment& form_;
    std::vector<ListedItem> items_;  // what is paid
};

}  // namespace brimley::payments
