// The GL document of a payment, from what is paid on screen.
#pragma once

#include <string>
#include <vector>

#include "frame/document_part.h"
#include "payments/invoice_payment/item_list.h"

namespace brimley::payments {

class APform_payment;

class PaymentPosting : public frame::DocumentPart {
  public:
    explicit PaymentPosting(APform_payment& form);

    // The GL document of what is paid of the items, from `cash_accno`; afterwards txtglfkey is its key.
    // Inside the caller's transaction; false after its message, if there is one.
    [[nodiscard]] bool insert_GL_record(const std::string& vendor_no, const std::string& cash_accno,
                                        const std::vector<ListedItem>& items);

  private:
    [[nodiscard]] bool gather(kernel::GlPosting& posting, const ListedItem& item, const std::string& ap_accno,
                              const std::string& cash_accno);
    [[nodiscard]] bool account_given(const std::string& accno, const char* what);

    APform_payment& form_;
};

}  // namespace brimley::payments
