// The edit of a saved card payment. No command reaches it. It rewrites the check, the remark and, empty, the
// order; another way of paying or amount is posted anew, and not written into the header.
#pragma once

#include "payments/reposting_edit.h"

namespace brimley::payments {

class APform_creditcard_payment;

class CardEdit : public RepostingEdit {
  public:
    explicit CardEdit(APform_creditcard_payment& form);

  protected:
    [[nodiscard]] bool validate() override;
    [[nodiscard]] double payment_amount() const override;
    void fill_header(store::Recordset& header, bool moves) override;
    [[nodiscard]] bool post() override;

  private:
    APform_creditcard_payment& form_;
};

}  // namespace brimley::payments
