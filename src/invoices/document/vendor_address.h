// The pane with the vendor's name and address.
#pragma once

#include "frame/document_part.h"

namespace brimley::invoices {

class APform_invoice;

class VendorAddress : public frame::DocumentPart {
  public:
    explicit VendorAddress(APform_invoice& form);

    // Opens the pane, or closes it.
    void vendor_address();
    // Another vendor is on screen; looked up only while the pane is open.
    void refresh();

  private:
    APform_invoice& form_;
};

}  // namespace brimley::invoices
