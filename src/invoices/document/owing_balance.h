// What the document on screen adds to what its vendor is owed (kernel/owing_balance.h). A credit note adds a
// negative amount. Inside the transaction of the save, the edit or the void.
#pragma once

#include "frame/document_part.h"

namespace brimley::invoices {

class APform_invoice;

class OwingBalance : public frame::DocumentPart {
  public:
    explicit OwingBalance(APform_invoice& form);

    // The total on screen is in the balance already; an empty one counts as 0.
    void document_shown();
    void document_begun() { old_total = 0; }
    // The balance moves from the total as it was shown to the total on screen.
    void update_vendor_owing_balance();
    void give_back();

  private:
    [[nodiscard]] double side() const;

    APform_invoice& form_;
    double old_total = 0;  // txttotal of the document as loaded; 0 for a new one
};

}  // namespace brimley::invoices
