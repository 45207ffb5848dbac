// The edit of a saved prepayment: payee, amount, way of paying, purchase order and remark, while it was not
// applied yet. What the vendor is owed and the payment's line stay as they were saved.
#pragma once

#include "payments/reposting_edit.h"

namespace brimley::payments {

class APform_prepayment;

class PrepaymentEdit : public RepostingEdit {
  public:
    explicit PrepaymentEdit(APform_prepayment& form);

  protected:
    [[nodiscard]] bool validate() override;
    [[nodiscard]] double payment_amount() const override;
    [[nodiscard]] bool moves_money(const store::Recordset& header) const override;
    void follow_change(const store::Recordset& header) override;
    void fill_header(store::Recordset& header, bool moves) override;
    void write_items() override;
    [[nodiscard]] bool post() override;

  private:
    APform_prepayment& form_;
};

}  // namespace brimley::payments
