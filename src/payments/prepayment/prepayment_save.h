// The save of a new prepayment: its header, its open item, its line, the order it waits for, the vendor.
#pragma once

#include "payments/new_payment.h"

namespace brimley::payments {

class APform_prepayment;

class PrepaymentSave : public NewPayment {
  public:
    explicit PrepaymentSave(APform_prepayment& form);

  protected:
    [[nodiscard]] bool validate() override;
    void fill_header(store::Recordset& header) override;
    [[nodiscard]] bool write_lines(store::Recordset& header) override;
    [[nodiscard]] bool post() override;

  private:
    void write_item(const store::Recordset& header);

    APform_prepayment& form_;
};

}  // namespace brimley::payments
