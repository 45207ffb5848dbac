// The currency of the document on screen and its rate: cmbcurrency, cmbexrate and txtratedate. A document in
// base currency has no rate, and its fields are locked.
#pragma once

#include "frame/document_part.h"

namespace brimley::invoices {

class APform_invoice;

class RateFields : public frame::DocumentPart {
  public:
    explicit RateFields(APform_invoice& form);

    // Lists the oldest rates of the currency, up to the rate date if there is one, and takes the newest.
    void cmbcurrency_itemselect();
    void cmbexrate_itemselect();
    void txtratedate_change() { cmbcurrency_itemselect(); }
    void close();

  private:
    void list_rates();

    APform_invoice& form_;
};

}  // namespace brimley::invoices
