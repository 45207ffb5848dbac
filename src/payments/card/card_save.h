// The save of a card payment: its header and its one line.
#pragma once

#include "payments/new_payment.h"

namespace brimley::payments {

class APform_creditcard_payment;

class CardSave : public NewPayment {
  public:
    explicit CardSave(APform_creditcard_payment& form);

  protected:
    [[nodiscard]] bool validate() override;
    void fill_header(store::Recordset& header) override;
    [[nodiscard]] bool write_lines(store::Recordset& header) override;
    [[nodiscard]] bool post() override;

  private:
    APform_creditcard_payment& form_;
};

}  // namespace brimley::payments
